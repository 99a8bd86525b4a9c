/// Any text as a list of frames: it is refused with one line, or its frames are sane and can be
/// written and read again.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "Expect.h"
#include "sequence/FrameList.h"
#include "terminal/ExitCode.h"

namespace {

using drevinfuzz::expect;

void expectSane(std::vector<int> frames) {
  expect(!frames.empty(), "a list has frames");
  expect(frames.size() <= drevintool::kMostFrames, "a list has no more frames than it may");
  std::sort(frames.begin(), frames.end());
  expect(std::adjacent_find(frames.begin(), frames.end()) == frames.end(), "a frame comes once");
  expect(std::abs(frames.front()) <= drevintool::kFarthestFrame &&
             std::abs(frames.back()) <= drevintool::kFarthestFrame,
         "no frame is too far away");
  const std::string text = drevintool::frameListText(frames);
  expect(drevintool::parseFrameList(text) == frames, "a list that is written reads the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const std::string text(reinterpret_cast<const char*>(bytes), count);
  std::vector<int> frames;
  try {
    frames = drevintool::parseFrameList(text);
  } catch (const drevintool::ToolError& error) {
    expect(error.code() == drevintool::ExitCode::Usage, "the command line is at fault");
    drevinfuzz::expectOneLine(error.what(), "--frames");
    return 0;
  }
  expectSane(frames);
  return 0;
}

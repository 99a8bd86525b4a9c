/// Any bytes as a flat OpenEXR file: it is refused with one line, or the picture is whole.

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <variant>

#include "Expect.h"
#include "MemoryFile.h"
#include "picture/ExrReader.h"
#include "picture/MemoryBudget.h"
#include "terminal/ExitCode.h"

namespace {

using drevinfuzz::expect;
using drevinfuzz::expectOneLine;
using drevinfuzz::MemoryFile;
using drevintool::Picture;
using drevintool::PictureChannel;

/// Sizes that lie must be seen before memory is taken for them.
constexpr std::uint64_t kMemory = std::uint64_t{2} << 30;

std::size_t samplesOf(const PictureChannel& channel) {
  return std::visit([](const auto& samples) { return samples->size(); }, channel.samples);
}

void expectWhole(const Picture& picture) {
  expect(picture.width > 0 && picture.height > 0, "a picture has a size");
  expect(!picture.box.empty(), "a picture has pixels");
  std::set<std::string> names;
  for (const PictureChannel& channel : picture.channels) {
    expect(samplesOf(channel) == picture.box.area(), "a channel has a sample for each pixel");
    expect(names.insert(channel.hostName).second, "no two channels have one name");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  static const MemoryFile file("flat");
  file.fill(bytes, count);
  drevintool::limitMemory({kMemory, "for fuzzing"});
  try {
    expectWhole(drevintool::readExr(file.path()));
  } catch (const drevintool::ToolError& error) {
    expect(error.code() == drevintool::ExitCode::InputUnreadable, "the input is at fault");
    expectOneLine(error.what(), file.path());
  }
  return 0;
}

/// Any bytes as a camera's file: it is refused with one line, or its curves have sane keys.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>

#include "Expect.h"
#include "MemoryFile.h"
#include "controls/CameraFile.h"
#include "controls/CameraKeys.h"
#include "sequence/FrameList.h"
#include "terminal/ExitCode.h"

namespace {

using drevinfuzz::expect;

void expectSane(const std::string& name, const drevintool::ControlCurve& curve) {
  expect(drevintool::findCameraKey(name) != nullptr, "a camera has its own keys only");
  expect(!curve.keys().empty(), "a curve has keys");
  double before = -std::numeric_limits<double>::infinity();
  for (const drevintool::CurveKey& key : curve.keys()) {
    expect(key.frame > before, "keys come in the order of their frames");
    expect(std::abs(key.frame) <= drevintool::kFarthestFrame, "no frame is too far away");
    expect(std::isfinite(key.value), "values are finite");
    expect(curve.at(key.frame) == key.value, "a curve goes through its keys");
    before = key.frame;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  static const drevinfuzz::MemoryFile file("camera");
  file.fill(bytes, count);
  try {
    const auto curves = drevintool::readCameraFile(file.path());
    expect(!curves.empty(), "a camera has a value");
    for (const auto& [name, curve] : curves)
      expectSane(name, curve);
  } catch (const drevintool::ToolError& error) {
    expect(error.code() == drevintool::ExitCode::InputUnreadable, "the input is at fault");
    drevinfuzz::expectOneLine(error.what(), file.path());
    expect(std::string(error.what()).size() < 1000, "an error is short");
  }
  return 0;
}

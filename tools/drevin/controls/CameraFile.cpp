#include "controls/CameraFile.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "controls/CameraKeys.h"
#include "picture/FileBytes.h"
#include "sequence/FrameList.h"
#include "terminal/ExitCode.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

using Json = nlohmann::json;

constexpr std::uint64_t kMostBytes = std::uint64_t{64} << 20;

class CameraReader {
 public:
  explicit CameraReader(const std::string& file) : file_(file) {}

  std::map<std::string, ControlCurve> read() const {
    const Json json = parsed();
    if (!json.is_object()) fail("is no JSON object, such as {\"focalLength\": 50}");
    std::map<std::string, ControlCurve> curves;
    for (const auto& [name, value] : json.items()) {
      if (findCameraKey(name) == nullptr) fail(unknownCameraKey(name));
      curves.emplace(name, curveOf(name, value));
    }
    if (curves.empty()) fail("has none of the keys of a camera");
    return curves;
  }

 private:
  [[noreturn]] void fail(const std::string& reason) const {
    throw ToolError(ExitCode::InputUnreadable, oneLine("--camera " + file_ + ": " + reason));
  }

  Json parsed() const {
    FileBytes bytes(file_);
    if (bytes.size() > kMostBytes) fail("is larger than 64 MiB");
    try {
      return Json::parse(bytes.take(bytes.size()));
    } catch (const Json::exception& error) {
      fail(std::string("is no JSON: ") + error.what());
    }
  }

  double numberOf(const std::string& name, const Json& value) const {
    constexpr auto kMost = static_cast<double>(std::numeric_limits<float>::max());
    if (!value.is_number()) fail(name + ": " + value.dump().substr(0, 40) + " is no number");
    const auto number = value.get<double>();
    if (!std::isfinite(number) || std::abs(number) > kMost) fail(name + ": is too large");
    return number;
  }

  double frameOf(const std::string& name, std::optional<double> frame) const {
    if (!frame || std::abs(*frame) > kFarthestFrame) fail(name + ": has a key at no frame");
    return *frame;
  }

  ControlCurve curveOf(const std::string& name, const Json& value) const {
    if (value.is_number()) return ControlCurve(numberOf(name, value));
    std::map<double, double> keys;
    const auto add = [&](double frame, const Json& number) {
      if (keys.emplace(frame, numberOf(name, number)).second) return;
      fail(name + ": has two keys at frame " + numberText(frame));
    };
    if (value.is_object()) {
      for (const auto& [frame, number] : value.items())
        add(frameOf(name, parseNumber(frame)), number);
    } else if (value.is_array()) {
      for (const Json& pair : value) {
        if (!pair.is_array() || pair.size() != 2) fail(name + ": a key is [FRAME, VALUE]");
        add(frameOf(name, numberOf(name, pair[0])), pair[1]);
      }
    }
    if (keys.empty()) fail(name + ": give a number, {\"FRAME\": NUMBER} or [[FRAME, NUMBER]]");
    std::vector<CurveKey> ordered;
    ordered.reserve(keys.size());
    for (const auto& [frame, number] : keys)
      ordered.push_back({frame, number, false});
    return ControlCurve(std::move(ordered));
  }

  const std::string& file_;
};

}  // namespace

std::map<std::string, ControlCurve> readCameraFile(const std::string& file) {
  return CameraReader(file).read();
}

}  // namespace drevintool

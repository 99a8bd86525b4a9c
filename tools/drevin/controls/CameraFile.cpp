#include "controls/CameraFile.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "controls/CameraKeys.h"
#include "picture/FileBytes.h"
#include "sequence/FrameList.h"
#include "terminal/ExitCode.h"
#include "terminal/NameList.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

using Json = nlohmann::json;
using Curves = std::map<std::string, ControlCurve>;

// Takes the values as the parser comes to them: no tree is built, and what nests deeper than a
// camera does is refused where it begins.
class CameraEvents : public nlohmann::json_sax<Json> {
 public:
  CameraEvents(const std::string& file, const std::string& text) : file_(file), text_(text) {}

  Curves take() { return std::move(curves_); }

  [[noreturn]] void fail(const std::string& reason) const {
    throw ToolError(ExitCode::InputUnreadable, oneLine("--camera " + file_ + ": " + reason));
  }

  bool null() override { return notANumber("null"); }
  bool boolean(bool value) override { return notANumber(value ? "true" : "false"); }
  bool string(std::string& value) override { return notANumber("\"" + shortName(value) + "\""); }
  bool binary(Json::binary_t& /*value*/) override { return notANumber("a value"); }
  bool number_integer(std::int64_t value) override { return number(static_cast<double>(value)); }
  bool number_unsigned(std::uint64_t value) override { return number(static_cast<double>(value)); }
  bool number_float(double value, const std::string& /*text*/) override { return number(value); }

  bool start_object(std::size_t /*size*/) override {
    if (place_ == Place::Outside) {
      place_ = Place::Camera;
    } else if (place_ == Place::Camera) {
      place_ = Place::KeysByFrame;
    } else {
      notANumber("an object");
    }
    return true;
  }

  bool key(std::string& name) override {
    if (place_ == Place::KeysByFrame) {
      frame_ = frameOf(parseNumber(name));
      return true;
    }
    if (findCameraKey(name) == nullptr) fail(unknownCameraKey(shortName(name)));
    if (curves_.count(name) != 0) fail(name + " is given twice");
    name_ = name;
    return true;
  }

  bool end_object() override {
    if (place_ == Place::KeysByFrame) {
      endCurve();
    } else if (curves_.empty()) {
      fail("has none of the keys of a camera");
    }
    return true;
  }

  bool start_array(std::size_t /*size*/) override {
    if (place_ == Place::Camera) {
      place_ = Place::ListOfKeys;
    } else if (place_ == Place::ListOfKeys) {
      place_ = Place::Pair;
      pair_.clear();
    } else {
      notANumber("a list");
    }
    return true;
  }

  bool end_array() override {
    if (place_ == Place::ListOfKeys) {
      endCurve();
      return true;
    }
    if (pair_.size() != 2) failPair();
    frame_ = frameOf(pair_[0]);
    addKey(pair_[1]);
    place_ = Place::ListOfKeys;
    return true;
  }

  bool parse_error(std::size_t position, const std::string& /*token*/,
                   const Json::exception& /*error*/) override {
    const std::string before = text_.substr(0, position);
    const std::size_t column = before.size() - (before.rfind('\n') + 1);
    fail("is no JSON from line " +
         std::to_string(1 + std::count(before.begin(), before.end(), '\n')) + ", character " +
         std::to_string(column) + " on");
  }

 private:
  // Where the next value stands.
  enum class Place { Outside, Camera, KeysByFrame, ListOfKeys, Pair };

  [[noreturn]] void failPair() const { fail(name_ + ": a key is [FRAME, VALUE]"); }
  [[noreturn]] void failForm() const {
    fail(name_ + ": give a number, {\"FRAME\": NUMBER} or [[FRAME, NUMBER]]");
  }

  // Ends with the message about something that stands where a number should.
  bool notANumber(const std::string& what) const {
    if (place_ == Place::Outside) fail("is no JSON object, such as {\"focalLength\": 50}");
    if (place_ == Place::Camera) failForm();
    if (place_ == Place::ListOfKeys) failPair();
    fail(name_ + ": " + what + " is no number");
  }

  bool number(double value) {
    constexpr auto kMost = static_cast<double>(std::numeric_limits<float>::max());
    if (place_ == Place::Outside || place_ == Place::ListOfKeys) return notANumber("");
    if (!std::isfinite(value) || std::abs(value) > kMost) fail(name_ + ": is too large");
    if (place_ == Place::Camera) {
      curves_.emplace(name_, ControlCurve(value));
    } else if (place_ == Place::KeysByFrame) {
      addKey(value);
    } else {
      if (pair_.size() == 2) failPair();
      pair_.push_back(value);
    }
    return true;
  }

  double frameOf(std::optional<double> frame) const {
    if (!frame || std::abs(*frame) > kFarthestFrame) fail(name_ + ": has a key at no frame");
    return *frame;
  }

  void addKey(double value) {
    if (keys_.emplace(frame_, value).second) return;
    fail(name_ + ": has two keys at frame " + numberText(frame_));
  }

  void endCurve() {
    if (keys_.empty()) failForm();
    std::vector<CurveKey> ordered;
    ordered.reserve(keys_.size());
    for (const auto& [frame, value] : keys_)
      ordered.push_back({frame, value, false});
    curves_.emplace(name_, ControlCurve(std::move(ordered)));
    keys_.clear();
    place_ = Place::Camera;
  }

  const std::string& file_;
  const std::string& text_;
  Place place_ = Place::Outside;
  Curves curves_;
  std::string name_;               // of the key whose value comes
  double frame_ = 0.0;             // at which the next value stands
  std::map<double, double> keys_;  // of that key, by frame
  std::vector<double> pair_;
};

}  // namespace

std::map<std::string, ControlCurve> readCameraFile(const std::string& file) {
  FileBytes bytes(file, "JSON file of a camera's values");
  std::string text;
  CameraEvents events(file, text);
  if (bytes.size() > kMostCameraBytes) events.fail("is larger than 4 MiB, the most for a camera");
  text = bytes.take(bytes.size());
  Json::sax_parse(text, &events);
  return events.take();
}

}  // namespace drevintool

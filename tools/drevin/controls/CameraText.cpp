#include "controls/CameraText.h"

#include <array>
#include <set>
#include <vector>

#include "picture/ChannelNames.h"
#include "terminal/ExitCode.h"
#include "terminal/NearestName.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

struct CameraKey {
  const char* name;
  const char* control;
  double embedded::CameraValues::*value;
};

const std::array<CameraKey, 5> kKeys = {{
    {"focalLength", "focalLength", &embedded::CameraValues::focalLength},
    {"fStop", "fStop", &embedded::CameraValues::fStop},
    {"focalPlane", "focalPlane", &embedded::CameraValues::focalPlane},
    {"horizontalAperture", "apertureWidth", &embedded::CameraValues::horizontalAperture},
    {"verticalAperture", "apertureHeight", &embedded::CameraValues::verticalAperture},
}};

[[noreturn]] void fail(const std::string& text, const std::string& reason) {
  throw ToolError(ExitCode::Usage, oneLine("--camera " + text + ": " + reason));
}

const CameraKey& keyNamed(const std::string& name, const std::string& text) {
  std::vector<std::string> names;
  for (const CameraKey& key : kKeys) {
    if (name == key.name) return key;
    names.emplace_back(key.name);
  }
  const std::string nearest = nearestName(name, names);
  fail(text, "no key '" + name + "'" +
                 (nearest.empty() ? "; the keys are focalLength, fStop, focalPlane, "
                                    "horizontalAperture, verticalAperture"
                                  : "; did you mean " + nearest + "?"));
}

embedded::CameraValues controlValues(const Node& node) {
  embedded::CameraValues values;
  for (const CameraKey& key : kKeys) {
    if (const DD::Image::Knob* knob = node.knob(key.control)) values.*key.value = knob->get_value();
  }
  return values;
}

}  // namespace

embedded::CameraValues parseCamera(const std::string& text, const Node& node) {
  embedded::CameraValues values = controlValues(node);
  std::set<std::string> seen;
  for (const std::string& piece : splitList(text)) {
    const std::size_t equals = piece.find('=');
    if (equals == std::string::npos) fail(text, "'" + piece + "' is not KEY=VALUE");
    const CameraKey& key = keyNamed(piece.substr(0, equals), text);
    if (!seen.insert(key.name).second) fail(text, std::string(key.name) + " is given twice");
    const std::optional<double> value = parseNumber(piece.substr(equals + 1));
    if (!value) fail(text, "'" + piece.substr(equals + 1) + "' is not a number");
    values.*key.value = *value;
  }
  if (seen.empty()) fail(text, "give KEY=VALUE,...");
  return values;
}

void setLensControls(Node& node, const embedded::CameraValues& values) {
  if (DD::Image::Knob* format = node.knob("filmFormat")) node.setByHand(*format, "Custom");
  for (const CameraKey& key : kKeys) {
    if (DD::Image::Knob* knob = node.knob(key.control))
      node.setByHand(*knob, std::vector<double>{values.*key.value});
  }
}

void connectCamera(Node& node, embedded::CameraInput& camera) {
  constexpr int kCameraInput = 2;
  if (!node.connect(kCameraInput, &camera)) {
    throw ToolError(ExitCode::RenderFailed, "the node takes no camera");
  }
}

}  // namespace drevintool

#include "controls/CameraOption.h"

#include <array>
#include <vector>

#include "controls/CameraFile.h"
#include "picture/ChannelNames.h"
#include "picture/HeaderAttributes.h"
#include "terminal/ExitCode.h"
#include "terminal/NearestName.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

const std::string kHeader = "header";

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Of a node whose controls are as made.
constexpr double kUsualMetresPerUnit = 0.01;

// Of the node's world scale: mm, cm, m, inches, feet, times a number of the artist's.
double metresPerUnit(const Node& node) {
  constexpr std::array<double, 5> kMetres = {0.001, 0.01, 1.0, 0.0254, 0.3048};
  const DD::Image::Knob* scale = node.knob("worldScale");
  const DD::Image::Knob* multiplier = node.knob("worldScaleMultiplier");
  if (scale == nullptr || multiplier == nullptr) return 1.0;
  const double metres = kMetres.at(static_cast<std::size_t>(scale->get_value()));
  return multiplier->get_value() > 0.0 ? metres * multiplier->get_value() : metres;
}

PictureSize sizeOf(const Picture& picture) {
  return {picture.width, picture.height, picture.pixelAspect};
}

std::map<std::string, CameraFinding> headerFindings(const Picture& picture, double metres) {
  if (!picture.attributes) return {};
  return findHeaderCamera(picture.attributes->header, sizeOf(picture), metres);
}

void addFieldOfView(const Picture& picture, std::map<std::string, CameraFinding>& findings) {
  if (picture.attributes) addFocalLength(picture.attributes->header, findings);
}

std::string shown(const CameraKey& key, const CameraFinding& finding) {
  const std::string unit = key.unit;
  return std::string(key.name) + " " + numberText(finding.value) + (unit.empty() ? "" : " ") +
         unit + " (" + finding.from + ")";
}

std::string listOf(const std::map<std::string, CameraFinding>& findings) {
  std::string list;
  for (const CameraKey& key : cameraKeys()) {
    const auto found = findings.find(key.name);
    if (found == findings.end()) continue;
    list += (list.empty() ? "" : ", ") + shown(key, found->second);
  }
  return list;
}

}  // namespace

CameraOption::CameraOption(const std::string& text) : text_(text) {
  if (namesFile(text)) {
    curves_ = readCameraFile(text);
  } else {
    header_ = text == kHeader || text.rfind(kHeader + ",", 0) == 0;
    if (text != kHeader) takeTexts(header_ ? text.substr(kHeader.size() + 1) : text);
  }
  checkAboveZero();
}

bool CameraOption::namesFile(const std::string& text) {
  if (text.empty() || text == kHeader || text.rfind(kHeader + ",", 0) == 0) return false;
  if (text.find('=') != std::string::npos) return endsWith(text, ".json");
  return text.find_first_of("./") != std::string::npos;
}

void CameraOption::fail(const std::string& reason) const {
  throw ToolError(ExitCode::Usage, oneLine("--camera " + text_ + ": " + reason));
}

void CameraOption::refuseHeader(const std::string& subcommand) const {
  if (header_) fail(subcommand + "; give the values, or a file of them");
}

// Between keys that are above 0 all values are.
void CameraOption::checkAboveZero() const {
  for (const auto& [name, curve] : curves_) {
    for (const CurveKey& key : curve.keys()) {
      if (key.value > 0.0) continue;
      fail(name + " is " + numberText(key.value) +
           (curve.varies() ? " at frame " + numberText(key.frame) : "") +
           "; give a number above 0");
    }
  }
}

void CameraOption::takeTexts(const std::string& list) {
  for (const std::string& piece : splitList(list)) {
    const std::size_t equals = piece.find('=');
    if (equals == std::string::npos) {
      fail("'" + piece + "' is not KEY=VALUE" + nearestHint(piece, {kHeader}));
    }
    const std::string name = piece.substr(0, equals);
    if (findCameraKey(name) == nullptr) fail(unknownCameraKey(name));
    const std::optional<double> value = parseNumber(piece.substr(equals + 1));
    if (!value) fail("'" + piece.substr(equals + 1) + "' is not a number");
    if (!curves_.emplace(name, ControlCurve(*value)).second) fail(name + " is given twice");
  }
  if (curves_.empty()) fail("give KEY=VALUE,...");
}

FoundCamera CameraOption::at(std::optional<double> frame, const Node& node,
                             const Picture* picture) const {
  FoundCamera camera;
  if (header_) camera.findings = headerFindings(*picture, metresPerUnit(node));
  for (const auto& [name, curve] : curves_) {
    if (curve.varies() && !frame) {
      fail(name +
           " changes over frames; name the frames to render with --frames, such as "
           "--frames 12");
    }
    camera.findings[name] = {curve.at(frame.value_or(0.0)),
                             namesFile(text_) ? text_ : std::string("--camera")};
  }
  if (focus_) camera.findings["focalPlane"] = *focus_;
  if (header_) {
    addFieldOfView(*picture, camera.findings);
    addPictureShape(sizeOf(*picture), camera.findings);
    checkEnough(camera.findings, *picture);
  }
  for (const CameraKey& key : cameraKeys()) {
    const DD::Image::Knob* knob = node.knob(key.control);
    if (knob != nullptr) {
      camera.findings.emplace(
          key.name, CameraFinding{knob->get_value(), std::string("control ") + key.control});
    }
    const auto found = camera.findings.find(key.name);
    if (found != camera.findings.end()) camera.values.*key.value = found->second.value;
  }
  return camera;
}

std::optional<CameraFinding> fieldOfViewOf(const Picture& picture) {
  return picture.attributes ? findFieldOfView(picture.attributes->header) : std::nullopt;
}

std::vector<std::string> missingCameraKeys(const std::map<std::string, CameraFinding>& findings,
                                           const Picture& picture) {
  const bool ofView = fieldOfViewOf(picture) && findings.count("horizontalAperture") == 0;
  std::vector<std::string> missing;
  for (const CameraKey& key : cameraKeys()) {
    const std::string name = key.name;
    // The width makes them, with the picture's shape and with the field of view.
    const bool follows = name == "verticalAperture" || (name == "focalLength" && ofView);
    if (findings.count(name) == 0 && !follows) missing.push_back(name);
  }
  return missing;
}

void CameraOption::checkEnough(const std::map<std::string, CameraFinding>& findings,
                               const Picture& picture) const {
  std::string missing;
  std::string remedy;
  for (const std::string& name : missingCameraKeys(findings, picture)) {
    missing += (missing.empty() ? "" : ", ") + name;
    remedy += "," + name + "=...";
  }
  if (missing.empty()) return;
  std::string found = listOf(findings);
  const std::optional<CameraFinding> view = fieldOfViewOf(picture);
  if (view) found += (found.empty() ? "" : ", ") + fieldOfViewText(*view);
  throw ToolError(ExitCode::InputUnreadable,
                  oneLine(picture.path + ": its header lacks the camera's " + missing +
                          "; it has " + (found.empty() ? "nothing of a camera" : found) +
                          "; give the rest as --camera header" + remedy));
}

std::string cameraLine(const std::map<std::string, CameraFinding>& findings) {
  return listOf(findings);
}

std::map<std::string, CameraFinding> cameraOfHeader(const Node* node, const Picture& picture) {
  auto findings =
      headerFindings(picture, node == nullptr ? kUsualMetresPerUnit : metresPerUnit(*node));
  addFieldOfView(picture, findings);
  addPictureShape(sizeOf(picture), findings);
  return findings;
}

void setLensControls(Node& node, const embedded::CameraValues& values) {
  if (DD::Image::Knob* format = node.knob("filmFormat")) node.setByHand(*format, "Custom");
  for (const CameraKey& key : cameraKeys()) {
    DD::Image::Knob* knob = node.knob(key.control);
    if (knob != nullptr) node.setByHand(*knob, std::vector<double>{values.*key.value});
  }
}

void connectCamera(Node& node, embedded::CameraInput& camera) {
  constexpr int kCameraInput = 2;
  if (!node.connect(kCameraInput, &camera)) {
    throw ToolError(ExitCode::RenderFailed, "the node takes no camera");
  }
}

}  // namespace drevintool

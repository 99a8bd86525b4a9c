#include "controls/ScriptCommand.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "controls/CameraOption.h"
#include "controls/ControlChanges.h"
#include "controls/FocusControl.h"
#include "controls/PluginSearch.h"
#include "controls/ScriptText.h"
#include "render/FrameJob.h"
#include "render/InputPictures.h"
#include "sequence/FramePattern.h"
#include "terminal/Messages.h"

namespace drevintool {
namespace {

using DD::Image::Knob;

// Any frame will do: keyed controls are printed with all their keys.
constexpr double kAnyFrame = 0.0;
constexpr const char* kOneFrame = "name the file of one frame";

// The camera's values as the node's own, for what is pasted has no camera.
void takeCamera(const std::string& text, const InputPictures* pictures, Node& node,
                ControlCurves& curves) {
  const CameraOption option(text);
  if (pictures == nullptr) option.refuseHeader("name its picture with --input or --deep");
  const FoundCamera camera =
      option.at(kAnyFrame, node, pictures == nullptr ? nullptr : &pictures->image());
  setLensControls(node, camera.values);
  if (option.isHeader()) printNote("camera: " + cameraLine(camera.findings));
  for (const auto& [name, curve] : option.curves()) {
    const std::string control = findCameraKey(name)->control;
    curves.erase(control);
    if (curve.varies()) curves.emplace(control, std::vector<ControlCurve>{curve});
  }
}

// The pictures to focus in and to take a camera from; of keys, those of the frame.
std::unique_ptr<InputPictures> picturesOf(const ScriptArguments& arguments,
                                          std::optional<int> frame) {
  if (arguments.input.empty() && arguments.deep.empty()) return nullptr;
  const auto file = [&](const char* option, const std::string& text) {
    if (!frame) return onlyFile(text, option, kOneFrame);
    refuseView(text, option);
    return FramePattern(text).path(*frame);
  };
  RenderArguments files;
  files.input = file("--input ", arguments.input);
  files.deep = file("--deep ", arguments.deep);
  return std::make_unique<InputPictures>(files);
}

std::optional<int> firstKey(const ScriptArguments& arguments) {
  if (arguments.focusKeys.empty()) return std::nullopt;
  return arguments.focusKeys.front().frame;
}

void takeFocus(const InputPictures& pictures, const FocusPoint& point, Node& node,
               ControlCurves& curves) {
  const float distance = checkedFocus(pictures.focusDistance(node, point), point);
  setFocus(node, distance);
  curves.erase(kFocusControl);
  printNote(focusLine(distance, point));
}

// The focus as a curve, which is what keys are in the host too.
void takeFocusKeys(const ScriptArguments& arguments, Node& node, ControlCurves& curves) {
  std::vector<CurveKey> keys;
  for (const FocusKey& key : arguments.focusKeys) {
    const std::unique_ptr<InputPictures> pictures = picturesOf(arguments, key.frame);
    const float distance = checkedFocus(pictures->focusDistance(node, key.point), key.point);
    keys.push_back({static_cast<double>(key.frame), static_cast<double>(distance), false});
    printNote(withFrameName({key.frame, ""}, focusLine(distance, key.point)));
  }
  setFocus(node, static_cast<float>(keys.front().value));
  curves.erase(kFocusControl);
  if (keys.size() > 1) {
    curves.emplace(kFocusControl, std::vector<ControlCurve>{ControlCurve(std::move(keys))});
  }
}

std::string nameOf(const ScriptArguments& arguments, const ControlChanges& changes) {
  if (!arguments.name.empty()) return arguments.name;
  return changes.nodeName().empty() ? "Drevin1" : changes.nodeName();
}

}  // namespace

int runScript(const ScriptArguments& arguments) {
  const DD::Image::Op::Description& description = loadNodeClass(arguments.plugin);
  Node node(description);
  const ControlChanges changes(arguments, node);
  for (const std::string& warning : changes.warnings())
    printWarning(warning);
  changes.applyValues(node, kAnyFrame);
  const std::unique_ptr<InputPictures> pictures = picturesOf(arguments, firstKey(arguments));
  changes.applyChannels(node, [&](const Knob& knob, const ControlSetting&) -> const Picture* {
    const bool flat = pictures && pictures->deep() == nullptr;
    return flat && knob.name() == "depthChannel" ? &pictures->image() : nullptr;
  });
  ControlCurves curves = changes.curves(node);
  if (!arguments.camera.empty()) takeCamera(arguments.camera, pictures.get(), node, curves);
  if (arguments.focus) takeFocus(*pictures, *arguments.focus, node, curves);
  if (!arguments.focusKeys.empty()) takeFocusKeys(arguments, node, curves);
  std::fputs(nodeScript(node, curves, nameOf(arguments, changes)).c_str(), stdout);
  return 0;
}

}  // namespace drevintool

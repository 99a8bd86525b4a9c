#include "controls/ScriptCommand.h"

#include <cstdio>

#include "controls/CameraText.h"
#include "controls/ControlChanges.h"
#include "controls/PluginSearch.h"
#include "controls/ScriptText.h"
#include "terminal/Messages.h"

namespace drevintool {
namespace {

using DD::Image::Knob;

// Any frame will do: keyed controls are printed with all their keys.
constexpr double kAnyFrame = 0.0;

}  // namespace

int runScript(const ScriptArguments& arguments) {
  const DD::Image::Op::Description& description = loadNodeClass(arguments.plugin);
  Node node(description);
  const ControlChanges changes(arguments, node);
  for (const std::string& warning : changes.warnings())
    printWarning(warning);
  changes.applyValues(node, kAnyFrame);
  changes.applyChannels(node, [](const Knob&, const ControlSetting&) { return nullptr; });
  if (!arguments.camera.empty()) setLensControls(node, parseCamera(arguments.camera, node));
  std::fputs(nodeScript(node, changes.curves(node), arguments.name).c_str(), stdout);
  return 0;
}

}  // namespace drevintool

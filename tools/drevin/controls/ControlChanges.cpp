#include "controls/ControlChanges.h"

#include <algorithm>

#include "controls/ScriptFile.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

using DD::Image::Knob;

std::vector<double> valuesAt(const std::vector<ControlCurve>& curves, double frame) {
  std::vector<double> values;
  values.reserve(curves.size());
  for (const ControlCurve& curve : curves)
    values.push_back(curve.at(frame));
  return values;
}

void applyKeyed(Node& node, Knob& knob, const KeyedSetting& setting, std::optional<double> frame) {
  const std::vector<ControlCurve> curves = curvesOf(knob, setting);
  if (!frame) {
    throw ToolError(ExitCode::Usage,
                    oneLine(setting.first().text +
                            ": is a key; name the frames to render with --frames, such as "
                            "--frames 12"));
  }
  node.setByHand(knob, valuesAt(curves, *frame));
}

}  // namespace

ControlChanges::ControlChanges(const NodeArguments& arguments, const Node& node,
                               const std::set<std::string>& varied)
    : settings_(groupSettings(arguments.settings)) {
  if (arguments.script.empty()) return;
  std::set<std::string> set = varied;
  for (const KeyedSetting& setting : settings_)
    set.insert(setting.first().name);
  const ScriptNode script = readScriptNode(arguments.script, arguments.scriptNode);
  script_ = ScriptControls(script, node, set, scriptOrigin(arguments.script));
}

ControlChanges ControlChanges::with(const std::vector<ControlSetting>& settings) const {
  ControlChanges changes = *this;
  std::vector<KeyedSetting>& all = changes.settings_;
  for (const ControlSetting& setting : settings) {
    const auto same = [&](const KeyedSetting& s) { return s.first().name == setting.name; };
    all.erase(std::remove_if(all.begin(), all.end(), same), all.end());
    all.push_back({false, {{0.0, setting}}});
  }
  return changes;
}

void ControlChanges::applyValues(Node& node, std::optional<double> frame) const {
  script_.applyValues(node, frame);
  for (const KeyedSetting& setting : settings_) {
    Knob& knob = controlNamed(node, setting.first());
    if (setting.keyed) {
      applyKeyed(node, knob, setting, frame);
    } else if (!picksChannels(knob)) {
      setValue(node, knob, setting.first());
    }
  }
}

void ControlChanges::applyChannels(Node& node, const ChannelSource& source) const {
  for (const ControlSetting& setting : script_.channels()) {
    Knob& knob = controlNamed(node, setting);
    setChannels(node, knob, setting, source(knob, setting));
  }
  for (const KeyedSetting& setting : settings_) {
    Knob& knob = controlNamed(node, setting.first());
    if (!picksChannels(knob)) continue;
    setChannels(node, knob, setting.first(), source(knob, setting.first()));
  }
}

ControlCurves ControlChanges::curves(const Node& node) const {
  ControlCurves curves;
  for (const auto& [name, components] : script_.curves()) {
    const auto varies = [](const ControlCurve& curve) { return curve.varies(); };
    if (std::any_of(components.begin(), components.end(), varies)) {
      curves.emplace(name, components);
    }
  }
  for (const KeyedSetting& setting : settings_) {
    if (!setting.keyed) continue;
    const Knob& knob = controlNamed(node, setting.first());
    curves.emplace(knob.name(), curvesOf(knob, setting));
  }
  return curves;
}

}  // namespace drevintool

#include "controls/ControlChanges.h"

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

ControlChanges::ControlChanges(const std::vector<std::string>& settings)
    : settings_(groupSettings(settings)) {}

void ControlChanges::applyValues(Node& node, std::optional<double> frame) const {
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
  for (const KeyedSetting& setting : settings_) {
    Knob& knob = controlNamed(node, setting.first());
    if (!picksChannels(knob)) continue;
    setChannels(node, knob, setting.first(), source(knob, setting.first()));
  }
}

ControlCurves ControlChanges::curves(const Node& node) const {
  ControlCurves curves;
  for (const KeyedSetting& setting : settings_) {
    if (!setting.keyed) continue;
    const Knob& knob = controlNamed(node, setting.first());
    curves.emplace(knob.name(), curvesOf(knob, setting));
  }
  return curves;
}

}  // namespace drevintool

#include "controls/ControlChanges.h"

namespace drevintool {

using DD::Image::Knob;

ControlChanges::ControlChanges(const std::vector<std::string>& settings) {
  settings_.reserve(settings.size());
  for (const std::string& text : settings)
    settings_.push_back(parseSetting(text));
}

void ControlChanges::applyValues(Node& node) const {
  for (const ControlSetting& setting : settings_) {
    Knob& knob = controlNamed(node, setting);
    if (!picksChannels(knob)) setValue(node, knob, setting);
  }
}

void ControlChanges::applyChannels(Node& node, const ChannelSource& source) const {
  for (const ControlSetting& setting : settings_) {
    Knob& knob = controlNamed(node, setting);
    if (picksChannels(knob)) setChannels(node, knob, setting, source(knob, setting));
  }
}

}  // namespace drevintool

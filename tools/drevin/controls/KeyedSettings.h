#pragma once

/// Settings of controls, some of them keyed: NAME@FRAME=VALUE.

#include <string>
#include <vector>

#include "EmbeddedHost/Node.h"
#include "controls/ControlCurve.h"
#include "controls/ControlText.h"

namespace drevintool {

/// One setting, or all keys of one control.
struct KeyedSetting {
  struct Key {
    double frame = 0.0;  ///< 0 where the setting is not keyed
    ControlSetting setting;
  };
  bool keyed = false;
  std::vector<Key> keys;  ///< in ascending order of their frames; one if not keyed

  const ControlSetting& first() const { return keys.front().setting; }
};

/// The settings in order, keys of one control together at the place of the first. Throws ToolError
/// (Usage) for a frame that is no number, for two keys of a control at one frame, and for a control
/// that is set with keys and without.
std::vector<KeyedSetting> groupSettings(const std::vector<std::string>& texts);

/// One curve for each component of the control; between keys values run in lines. Throws ToolError
/// (Usage) for a control that does not hold numbers and for values that it does not take.
std::vector<ControlCurve> curvesOf(const DD::Image::Knob& knob, const KeyedSetting& setting);

}  // namespace drevintool

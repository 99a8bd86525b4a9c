#pragma once

/// Setting the node's controls from NAME=VALUE texts, as an artist's hand would.

#include <string>
#include <vector>

#include "EmbeddedHost/Node.h"
#include "picture/Picture.h"

namespace drevintool {

struct ControlSetting {
  std::string name;
  std::string value;
  std::string text;  ///< where it was given, for messages: "--set NAME=VALUE"
};

/// Splits at the first '='. Throws ToolError (Usage) if there is none.
ControlSetting parseSetting(const std::string& text);

/// The control of that name. Throws ToolError (Usage) that names the nearest one if there is none.
DD::Image::Knob& controlNamed(const Node& node, const ControlSetting& setting);

/// Whether the control picks channels, so that its value depends on the pictures.
bool picksChannels(const DD::Image::Knob& knob);

/// The numbers of a setting, one for each component of the control; one for all of a colour. Throws
/// ToolError (Usage) as setValue does.
std::vector<double> parseNumbers(const DD::Image::Knob& knob, const ControlSetting& setting);

/// Sets a control of numbers, a boolean or a choice. Throws ToolError (Usage) that says what would
/// be right for what is not a value of it: not a number or not finite, outside a forced range,
/// wrong count, unknown label.
void setValue(Node& node, DD::Image::Knob& knob, const ControlSetting& setting);

/// Sets a control that picks a channel or a set of them. Names are those of `source` (the host's
/// or the file's); without a picture any name is taken. Also understood are none and, for sets,
/// all, rgb, rgba, layers and lists by commas. Throws ToolError: Usage for an empty name,
/// InputUnreadable with the list of what there is for a channel that `source` lacks.
void setChannels(Node& node, DD::Image::Knob& knob, const ControlSetting& setting,
                 const Picture* source);

}  // namespace drevintool

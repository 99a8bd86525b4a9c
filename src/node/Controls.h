#pragma once

/// The node's 48 controls, once, as data.

#include <array>
#include <variant>

#include "node/DrevinSettings.h"

namespace drevin {

/// What a control is; each is made by one of the host's knob-making functions.
enum class dvControlKind {
  Tab,
  Text,
  ChannelMask,
  InputOnlyChannel,
  InputChannel,
  Enumeration,
  Float,
  Int,
  Bool,
  Colour,
  FloatPair,
};

/// The settings field that a control fills; nothing for tabs and texts.
using dvControlField = std::variant<std::monostate, float DrevinSettings::*, int DrevinSettings::*,
                                    bool DrevinSettings::*, DD::Image::Channel DrevinSettings::*,
                                    DD::Image::ChannelSet DrevinSettings::*,
                                    float (DrevinSettings::*)[3], float (DrevinSettings::*)[2]>;

struct dvControlRange {
  enum class Kind { None, Slider, Forced };
  Kind kind = Kind::None;
  double min = 0.0;
  double max = 1.0;
};

/// Unit of a control's value.
enum class dvUnit { None, Pixels, Millimetres, Turns, Scene };

struct dvControl {
  dvControlKind kind;
  const char* name;  ///< as saved in scripts; null for tabs and texts
  const char* label;
  dvControlField field;
  dvControlRange range;
  dvUnit unit;
  const char* const* choices;  ///< labels of an enumeration, null-terminated; else null
  int input;                   ///< input whose channels are offered; -1 for none
  bool startsLine;             ///< begins a new row of the panel
  const char* tooltip;         ///< null for none
};

constexpr std::size_t dvControlCount = 48;

extern const std::array<dvControl, dvControlCount> dvControls;

}  // namespace drevin

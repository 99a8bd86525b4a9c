#include "node/ControlKnobs.h"

#include <string>

#include "DDImage/Knob.h"
#include "node/Controls.h"
#include "node/Version.h"

namespace drevin {

namespace {

using DD::Image::Channel;
using DD::Image::ChannelSet;
using DD::Image::Knob_Callback;

/// Lives on: a host need not copy the text.
const char* versionText() {
  static const std::string text = std::to_string(dvVersionMajor) + '.' +
                                  std::to_string(dvVersionMinor) + '.' +
                                  std::to_string(dvVersionPatch);
  return text.c_str();
}

template <class Value>
Value* fieldOf(const dvControl& control, DrevinSettings& settings) {
  return &(settings.*std::get<Value DrevinSettings::*>(control.field));
}

template <std::size_t Count>
float* valuesOf(const dvControl& control, DrevinSettings& settings) {
  return settings.*std::get<float(DrevinSettings::*)[Count]>(control.field);
}

void makeKnob(Knob_Callback f, const dvControl& c, DrevinSettings& settings) {
  switch (c.kind) {
    case dvControlKind::Tab:
      Tab_knob(f, c.label);
      break;
    case dvControlKind::Text:
      Text_knob(f, c.label, versionText());
      break;
    case dvControlKind::ChannelMask:
      Input_ChannelMask_knob(f, fieldOf<ChannelSet>(c, settings), c.input, c.name, c.label);
      break;
    case dvControlKind::InputOnlyChannel:
      InputOnly_Channel_knob(f, fieldOf<Channel>(c, settings), 1, c.input, c.name, c.label);
      break;
    case dvControlKind::InputChannel:
      Input_Channel_knob(f, fieldOf<Channel>(c, settings), 1, c.input, c.name, c.label);
      break;
    case dvControlKind::Enumeration:
      Enumeration_knob(f, fieldOf<int>(c, settings), c.choices, c.name, c.label);
      break;
    case dvControlKind::Float:
      Float_knob(f, fieldOf<float>(c, settings), c.name, c.label);
      break;
    case dvControlKind::Int:
      Int_knob(f, fieldOf<int>(c, settings), c.name, c.label);
      break;
    case dvControlKind::Bool:
      Bool_knob(f, fieldOf<bool>(c, settings), c.name, c.label);
      break;
    case dvControlKind::Colour:
      Color_knob(f, valuesOf<3>(c, settings), c.name, c.label);
      break;
    case dvControlKind::FloatPair:
      MultiFloat_knob(f, valuesOf<2>(c, settings), 2, c.name, c.label);
      break;
  }
}

void modifyKnob(Knob_Callback f, const dvControl& c) {
  using DD::Image::Knob;
  if (c.range.kind != dvControlRange::Kind::None) SetRange(f, c.range.min, c.range.max);
  if (c.range.kind == dvControlRange::Kind::Forced) SetFlags(f, Knob::FORCE_RANGE);
  if (c.startsLine) SetFlags(f, Knob::STARTLINE);
  if (c.tooltip != nullptr) Tooltip(f, c.tooltip);
}

}  // namespace

void makeControlKnobs(Knob_Callback f, DrevinSettings& settings) {
  for (const dvControl& control : dvControls) {
    makeKnob(f, control, settings);
    modifyKnob(f, control);
  }
}

}  // namespace drevin

#include "DDImage/Knobs.h"

#include <stdexcept>
#include <type_traits>

#include "EmbeddedHost/Node.h"

namespace DD {
namespace Image {

namespace {

Knob::Declaration declare(Knob::Type type, const char* kind, const char* name, const char* label) {
  Knob::Declaration declaration;
  declaration.type = type;
  declaration.kind = kind;
  declaration.name = name == nullptr ? "" : name;
  declaration.label = label == nullptr ? declaration.name : label;
  return declaration;
}

/// Tabs and texts: nothing to store.
Knob* decoration(Knob_Callback f, const char* kind, const char* label, const char* text) {
  if (!f.makeKnobs()) {
    f.nextToStore(kind, nullptr);
    return nullptr;
  }
  Knob::Declaration declaration = declare(Knob::Type::Decoration, kind, nullptr, label);
  declaration.text = text == nullptr ? "" : text;
  return f.make(std::move(declaration));
}

/// A control of `count` numbers, kept in variables of type Value.
template <class Value>
Knob* numbers(Knob_Callback f, Knob::Declaration declaration, Value* values, int count) {
  if (!f.makeKnobs()) {
    const Knob& knob = f.nextToStore(declaration.kind, declaration.name.c_str());
    for (int i = 0; i < count; ++i)
      values[i] = static_cast<Value>(knob.get_value(i));
    return nullptr;
  }
  declaration.single = std::is_same<Value, float>::value;
  for (int i = 0; i < count; ++i)
    declaration.values.push_back(static_cast<double>(values[i]));
  return f.make(std::move(declaration));
}

/// A channel control: Channel is an enumeration, so its numbers go through int.
Knob* channelNumbers(Knob_Callback f, Knob::Declaration declaration, Channel* channels, int count) {
  if (!f.makeKnobs()) {
    const Knob& knob = f.nextToStore(declaration.kind, declaration.name.c_str());
    for (int i = 0; i < count; ++i)
      channels[i] = knob.channel(i);
    return nullptr;
  }
  for (int i = 0; i < count; ++i) {
    declaration.values.push_back(static_cast<double>(static_cast<int>(channels[i])));
  }
  return f.make(std::move(declaration));
}

}  // namespace

Knob* Knob_Closure::make(Knob::Declaration declaration) {
  last_ = node_.addKnob(std::make_unique<Knob>(std::move(declaration)));
  return last_;
}

const Knob& Knob_Closure::nextToStore(const char* kind, const char* name) {
  const auto& knobs = node_.knobs();
  if (stored_ < knobs.size()) {
    const Knob& knob = *knobs[stored_++];
    if (knob.kind() == kind && knob.name() == (name == nullptr ? "" : name)) return knob;
  }
  throw std::logic_error(std::string("the operator declares another control than it made: ") +
                         kind + ' ' + (name == nullptr ? "" : name));
}

Knob* Tab_knob(Knob_Callback f, const char* label) {
  return decoration(f, "Tab_knob", label, nullptr);
}

Knob* Text_knob(Knob_Callback f, const char* text) {
  return Text_knob(f, nullptr, text);
}

Knob* Text_knob(Knob_Callback f, const char* label, const char* text) {
  return decoration(f, "Text_knob", label, text);
}

Knob* Int_knob(Knob_Callback f, int* value, const char* name, const char* label) {
  return numbers(f, declare(Knob::Type::Integer, "Int_knob", name, label), value, 1);
}

Knob* Float_knob(Knob_Callback f, float* value, const char* name, const char* label) {
  return numbers(f, declare(Knob::Type::Real, "Float_knob", name, label), value, 1);
}

Knob* Float_knob(Knob_Callback f, double* value, const char* name, const char* label) {
  return numbers(f, declare(Knob::Type::Real, "Float_knob", name, label), value, 1);
}

Knob* Bool_knob(Knob_Callback f, bool* value, const char* name, const char* label) {
  return numbers(f, declare(Knob::Type::Boolean, "Bool_knob", name, label), value, 1);
}

Knob* Enumeration_knob(Knob_Callback f, int* value, const char* const* labels, const char* name,
                       const char* label) {
  Knob::Declaration declaration = declare(Knob::Type::Choice, "Enumeration_knob", name, label);
  for (; *labels != nullptr; ++labels)
    declaration.choices.emplace_back(*labels);
  return numbers(f, std::move(declaration), value, 1);
}

Knob* Color_knob(Knob_Callback f, float* values, const char* name, const char* label) {
  return numbers(f, declare(Knob::Type::Real, "Color_knob", name, label), values, 3);
}

Knob* MultiFloat_knob(Knob_Callback f, float* values, int count, const char* name,
                      const char* label) {
  return numbers(f, declare(Knob::Type::Real, "MultiFloat_knob", name, label), values, count);
}

Knob* Input_Channel_knob(Knob_Callback f, Channel* channels, int count, int input, const char* name,
                         const char* label) {
  Knob::Declaration declaration = declare(Knob::Type::Channels, "Input_Channel_knob", name, label);
  declaration.channelInput = input;
  return channelNumbers(f, std::move(declaration), channels, count);
}

Knob* InputOnly_Channel_knob(Knob_Callback f, Channel* channels, int count, int input,
                             const char* name, const char* label) {
  Knob::Declaration declaration =
      declare(Knob::Type::Channels, "InputOnly_Channel_knob", name, label);
  declaration.channelInput = input;
  return channelNumbers(f, std::move(declaration), channels, count);
}

Knob* Input_ChannelMask_knob(Knob_Callback f, ChannelSet* channels, int input, const char* name,
                             const char* label) {
  Knob::Declaration declaration = declare(Knob::Type::Mask, "Input_ChannelMask_knob", name, label);
  if (!f.makeKnobs()) {
    *channels = f.nextToStore(declaration.kind, name).mask();
    return nullptr;
  }
  declaration.mask = *channels;
  declaration.channelInput = input;
  return f.make(std::move(declaration));
}

void SetRange(Knob_Callback f, double minimum, double maximum) {
  if (f.last() != nullptr) f.last()->setRange(minimum, maximum);
}

void SetFlags(Knob_Callback f, Knob::FlagMask flags) {
  if (f.last() != nullptr) f.last()->set_flag(flags);
}

void Tooltip(Knob_Callback f, const char* text) {
  if (f.last() != nullptr && text != nullptr) f.last()->setTooltip(text);
}

void Tooltip(Knob_Callback f, const std::string& text) {
  Tooltip(f, text.c_str());
}

}  // namespace Image
}  // namespace DD

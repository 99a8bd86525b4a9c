#pragma once

/// The functions by which an operator declares its controls.
///
/// Each is called on two passes, in the same order. On the make pass it makes a control whose
/// default is the variable's content; on the store pass it writes the control's value into the
/// variable and returns null. `name` is the script name, `label` defaults to it.

#include <cstddef>
#include <string>

#include "DDImage/ChannelSet.h"
#include "DDImage/Knob.h"

class Node;

namespace DD {
namespace Image {

/// Handle on one pass over the controls of a node.
class DD_EXPORT Knob_Closure {
 public:
  /// True on the make pass, false on the store pass.
  bool makeKnobs() const { return make_; }

  // embedded host
  Knob_Closure(Node& node, bool make) : node_(node), make_(make) {}
  /// Adds a control on the make pass; the modifiers then address it.
  Knob* make(Knob::Declaration declaration);
  /// The control whose turn it is on the store pass. Throws std::logic_error if the operator
  /// declares other controls than it made.
  const Knob& nextToStore(const char* kind, const char* name);
  /// The control just made, or null.
  Knob* last() const { return last_; }

 private:
  Node& node_;
  bool make_;
  Knob* last_ = nullptr;
  std::size_t stored_ = 0;
};

using Knob_Callback = Knob_Closure&;

DD_EXPORT Knob* Tab_knob(Knob_Callback f, const char* label);
DD_EXPORT Knob* Text_knob(Knob_Callback f, const char* text);
DD_EXPORT Knob* Text_knob(Knob_Callback f, const char* label, const char* text);
DD_EXPORT Knob* Int_knob(Knob_Callback f, int* value, const char* name,
                         const char* label = nullptr);
DD_EXPORT Knob* Float_knob(Knob_Callback f, float* value, const char* name,
                           const char* label = nullptr);
DD_EXPORT Knob* Float_knob(Knob_Callback f, double* value, const char* name,
                           const char* label = nullptr);
DD_EXPORT Knob* Bool_knob(Knob_Callback f, bool* value, const char* name,
                          const char* label = nullptr);
/// `labels` ends with a null pointer; the index of the chosen label is stored.
DD_EXPORT Knob* Enumeration_knob(Knob_Callback f, int* value, const char* const* labels,
                                 const char* name, const char* label = nullptr);
/// Three values: red, green, blue.
DD_EXPORT Knob* Color_knob(Knob_Callback f, float* values, const char* name,
                           const char* label = nullptr);
DD_EXPORT Knob* MultiFloat_knob(Knob_Callback f, float* values, int count, const char* name,
                                const char* label = nullptr);
/// Offers the channels of an input first, but takes any.
DD_EXPORT Knob* Input_Channel_knob(Knob_Callback f, Channel* channels, int count, int input,
                                   const char* name, const char* label = nullptr);
/// Offers only the channels of an input.
DD_EXPORT Knob* InputOnly_Channel_knob(Knob_Callback f, Channel* channels, int count, int input,
                                       const char* name, const char* label = nullptr);
/// A set of channels, "all" included.
DD_EXPORT Knob* Input_ChannelMask_knob(Knob_Callback f, ChannelSet* channels, int input,
                                       const char* name, const char* label = nullptr);

/// Range of the control just made; for the slider only, unless FORCE_RANGE is set.
DD_EXPORT void SetRange(Knob_Callback f, double minimum, double maximum);
/// Adds flags to the control just made.
DD_EXPORT void SetFlags(Knob_Callback f, Knob::FlagMask flags);
/// Help text of the control just made.
DD_EXPORT void Tooltip(Knob_Callback f, const char* text);
DD_EXPORT void Tooltip(Knob_Callback f, const std::string& text);

}  // namespace Image
}  // namespace DD

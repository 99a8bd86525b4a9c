#pragma once

/// One control of a node: its declaration, its value and its state in the panel.

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "DDImage/ChannelSet.h"
#include "DDImage/Export.h"

namespace DD {
namespace Image {

class Hash;

/// Controls hold numbers (booleans, choices and channels as their index or number), except for
/// channel masks, which hold a set. Numbers that are not finite are never taken.
class DD_EXPORT Knob {
 public:
  using FlagMask = unsigned long long;
  static constexpr FlagMask STARTLINE = 1ULL << 0;        ///< begins a new row of the panel
  static constexpr FlagMask FORCE_RANGE = 1ULL << 1;      ///< values are clamped to the range
  static constexpr FlagMask DISABLED = 1ULL << 2;         ///< greyed out; keeps its value
  static constexpr FlagMask INVISIBLE = 1ULL << 3;        ///< not shown
  static constexpr FlagMask NO_RERENDER = 1ULL << 4;      ///< not part of the operator's hash
  static constexpr FlagMask NO_KNOB_CHANGED = 1ULL << 5;  ///< knob_changed is not called for it

  /// Stand-ins that knob_changed compares by address: the panel was opened, an input changed.
  static Knob showPanel;
  static Knob inputChange;

  const std::string& name() const { return name_; }
  bool is(const char* name) const { return name_ == name; }

  void enable(bool on) { setFlag(DISABLED, !on); }
  void enable() { enable(true); }
  void disable() { enable(false); }
  bool isEnabled() const { return (flags_ & DISABLED) == 0; }
  void visible(bool on) { setFlag(INVISIBLE, !on); }
  void show() { visible(true); }
  void hide() { visible(false); }
  bool isVisible() const { return (flags_ & INVISIBLE) == 0; }
  void set_flag(FlagMask flags) { flags_ |= flags; }
  void clear_flag(FlagMask flags) { flags_ &= ~flags; }

  /// Sets one component, or all of them for index -1. Whole-numbered controls truncate; a forced
  /// range clamps. Left alone are controls without numbers, and any control given NaN, an infinity
  /// or a number that its variable cannot hold.
  void set_value(double value, int index = -1);
  /// Component `index`; 0 where there is none. Choices give their index, channels their number.
  double get_value(int index = 0) const;
  /// Sets the first `count` components.
  void set_values(const float* values, int count);
  /// Sets the value from a text, or returns false and changes nothing if the text is no value of
  /// this control. Understood are: one number for all components or one for each, separated by
  /// blanks or commas, in braces or not; 0, 1, true and false; a choice's exact label or index;
  /// channel names, "none" and R, G, B, A, Z; for masks also "all", layer names and lists.
  bool set_text(const char* text);

  // embedded host

  enum class Type { Decoration, Integer, Real, Boolean, Choice, Channels, Mask };

  /// What a factory knows of the control that it makes.
  struct Declaration {
    Type type = Type::Decoration;
    const char* kind = "";  ///< name of the factory, such as "Float_knob"
    std::string name;       ///< script name; empty for tabs and texts
    std::string label;
    std::vector<double> values;        ///< default of each component
    bool single = false;               ///< fills floats
    ChannelSet mask;                   ///< default of a mask
    std::vector<std::string> choices;  ///< labels of an enumeration
    int channelInput = -1;             ///< input whose channels are offered, or -1
    std::string text;                  ///< what a Text_knob shows
  };

  Knob() = default;
  explicit Knob(Declaration declaration);

  Type type() const { return type_; }
  /// True for whole numbers, real numbers and booleans.
  bool isNumeric() const {
    return type_ == Type::Integer || type_ == Type::Real || type_ == Type::Boolean;
  }
  const std::string& label() const { return label_; }
  /// Name of the factory that made it, such as "Float_knob".
  const std::string& kind() const { return kind_; }
  /// Minimum and maximum, if SetRange gave them.
  const std::optional<std::pair<double, double>>& range() const { return range_; }
  FlagMask flags() const { return flags_; }
  const std::optional<std::string>& tooltip() const { return tooltip_; }
  /// Labels of an enumeration, in the order of their index.
  const std::vector<std::string>& choices() const { return choices_; }
  int components() const { return static_cast<int>(values_.size()); }
  /// Input whose channels are offered, or -1.
  int channelInput() const { return channelInput_; }
  /// Channel `index` of a channel control.
  Channel channel(int index = 0) const;
  /// The channels of a mask.
  const ChannelSet& mask() const { return mask_; }
  /// The value as set_text reads it; the text that a Text_knob shows; "" for tabs.
  std::string valueText() const { return textOf(values_, mask_); }
  /// The default as set_text reads it.
  std::string defaultText() const { return textOf(defaults_, defaultMask_); }

  void setRange(double minimum, double maximum) { range_ = std::make_pair(minimum, maximum); }
  void setTooltip(const std::string& text) { tooltip_ = text; }
  void append(Hash& hash) const;

 private:
  void setFlag(FlagMask flag, bool on) { flags_ = on ? (flags_ | flag) : (flags_ & ~flag); }
  /// The value that the control takes when it is given `value`; nothing if it takes none.
  std::optional<double> admitted(double value) const;
  bool setNumbers(const std::vector<std::string>& words);
  bool setBoolean(const std::string& text);
  bool setChoice(const std::string& text);
  bool setChannels(const std::string& text);
  bool setMask(const std::string& text);
  std::string textOf(const std::vector<double>& values, const ChannelSet& mask) const;

  Type type_ = Type::Decoration;
  bool single_ = false;
  std::string kind_;
  std::string name_;
  std::string label_;
  std::vector<double> values_;
  std::vector<double> defaults_;
  ChannelSet mask_;
  ChannelSet defaultMask_;
  std::vector<std::string> choices_;
  int channelInput_ = -1;
  std::string text_;
  std::optional<std::pair<double, double>> range_;
  std::optional<std::string> tooltip_;
  FlagMask flags_ = 0;
};

}  // namespace Image
}  // namespace DD

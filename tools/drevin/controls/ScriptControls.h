#pragma once

/// The controls of a node as a script of the host has them.

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "EmbeddedHost/Node.h"
#include "controls/ControlCurve.h"
#include "controls/ControlText.h"
#include "controls/NodeScript.h"

namespace drevintool {

class ScriptControls {
 public:
  /// No script: no changes.
  ScriptControls() = default;
  /// Takes the values of `script` for the controls of `node`, those in `ignored` left out. `origin`
  /// names the script in messages. What the script says that has no meaning here becomes a warning
  /// that says what is used instead. Throws ToolError (InputUnreadable) for a choice that there is
  /// not, and for a value of which nothing can be made.
  ScriptControls(const ScriptNode& script, const Node& node, const std::set<std::string>& ignored,
                 std::string origin);

  /// The name of the script's node, or empty.
  const std::string& nodeName() const { return nodeName_; }
  const std::vector<std::string>& warnings() const { return warnings_; }
  /// Gives all controls of a node as made that pick no channels the values of the script at that
  /// frame, exactly. Throws ToolError (Usage) if one changes over frames and there is no frame.
  void applyValues(Node& node, std::optional<double> frame) const;
  /// The controls that pick channels, by host names.
  const std::vector<ControlSetting>& channels() const { return channels_; }
  /// One curve for each component, of all controls that pick no channels.
  const std::map<std::string, std::vector<ControlCurve>>& curves() const { return curves_; }

 private:
  using Knob = DD::Image::Knob;

  [[noreturn]] void fail(const std::string& knob, const std::string& reason) const;
  void warn(const std::string& knob, const std::string& text);
  void take(const ScriptKnob& entry, const Node& node);
  void takeChannels(const ScriptKnob& entry);
  void takeNumbers(const ScriptKnob& entry, const Knob& knob);
  ControlCurve curveOf(const ScriptWord& word, const Knob& knob, int component);
  ControlCurve heldCurve(const ControlCurve& curve, const Knob& knob, int component);
  std::optional<double> plainValue(const std::string& text, const Knob& knob) const;
  std::vector<double> valuesOf(const std::string& name, std::optional<double> frame) const;

  std::string origin_;
  std::string nodeName_;
  std::vector<std::string> warnings_;
  std::vector<std::string> order_;  // of the curves, as the script has them
  std::map<std::string, std::vector<ControlCurve>> curves_;
  std::vector<ControlSetting> channels_;
};

}  // namespace drevintool

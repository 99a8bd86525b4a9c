#pragma once

/// All changes that a command line makes to the node's controls.

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "EmbeddedHost/Node.h"
#include "arguments/NodeArguments.h"
#include "controls/ControlCurve.h"
#include "controls/ControlText.h"
#include "controls/KeyedSettings.h"
#include "controls/ScriptControls.h"

namespace drevintool {

/// One curve for each component of a control, by its name.
using ControlCurves = std::map<std::string, std::vector<ControlCurve>>;

class ControlChanges {
 public:
  /// Reads the --set texts, and the script for the controls of `node` that they leave alone. Throws
  /// ToolError.
  /// The script's values of the controls in `varied` are left out too.
  ControlChanges(const NodeArguments& arguments, const Node& node,
                 const std::set<std::string>& varied = {});

  /// These changes with those settings after them, in the place of others of the same controls.
  ControlChanges with(const std::vector<ControlSetting>& settings) const;

  /// The name of the script's node, or empty.
  const std::string& nodeName() const { return script_.nodeName(); }
  /// What of the script has no meaning here, a line each.
  const std::vector<std::string>& warnings() const { return script_.warnings(); }

  /// The picture whose channels a control picks from, or null where any name is taken; it is asked
  /// for each setting before that is applied.
  using ChannelSource =
      std::function<const Picture*(const DD::Image::Knob& knob, const ControlSetting& setting)>;

  /// Sets the controls of a node as made whose values do not depend on the pictures, so that faults
  /// show before anything is read; keyed ones to their values at `frame`. Throws ToolError (Usage),
  /// also if a control is keyed and there is no frame.
  void applyValues(Node& node, std::optional<double> frame) const;
  /// Sets the controls that pick channels. Throws ToolError.
  void applyChannels(Node& node, const ChannelSource& source) const;
  /// Those of the controls that are keyed. Throws ToolError (Usage).
  ControlCurves curves(const Node& node) const;

 private:
  std::vector<KeyedSetting> settings_;
  ScriptControls script_;
};

}  // namespace drevintool

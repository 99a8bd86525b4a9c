#pragma once

/// All changes that a command line makes to the node's controls.

#include <functional>
#include <string>
#include <vector>

#include "EmbeddedHost/Node.h"
#include "controls/ControlText.h"

namespace drevintool {

class ControlChanges {
 public:
  /// Reads --set texts. Throws ToolError (Usage).
  explicit ControlChanges(const std::vector<std::string>& settings);

  /// The picture whose channels a control picks from, or null where any name is taken; it is told
  /// of each setting before it is applied.
  using ChannelSource =
      std::function<const Picture*(const DD::Image::Knob& knob, const ControlSetting& setting)>;

  /// Sets the controls whose values do not depend on the pictures, so that faults show before
  /// anything is read. Throws ToolError (Usage).
  void applyValues(Node& node) const;
  /// Sets the controls that pick channels. Throws ToolError.
  void applyChannels(Node& node, const ChannelSource& source) const;

 private:
  std::vector<ControlSetting> settings_;
};

}  // namespace drevintool

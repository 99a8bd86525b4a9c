#pragma once

/// What the subcommand `script` was asked to do.

#include <optional>
#include <string>

#include "arguments/NodeArguments.h"
#include "depth/FocusKey.h"
#include "depth/FocusPoint.h"

namespace drevintool {

struct ScriptArguments : NodeArguments {
  std::string name;  ///< of the node; empty: that of the script's, else Drevin1
  std::optional<FocusPoint> focus;
  std::vector<FocusKey> focusKeys;  ///< by their frames; empty: none
  std::string input;  ///< the picture to focus in and to take a camera from; empty: none
  std::string deep;   ///< the same for a deep one
};

}  // namespace drevintool

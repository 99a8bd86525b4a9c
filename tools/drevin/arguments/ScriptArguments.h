#pragma once

/// What the subcommand `script` was asked to do.

#include <string>

#include "arguments/NodeArguments.h"

namespace drevintool {

struct ScriptArguments : NodeArguments {
  std::string name = "Drevin1";  ///< of the node
};

}  // namespace drevintool

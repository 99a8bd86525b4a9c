#pragma once

/// The subcommand that prints the node for the host's script.

#include "arguments/ScriptArguments.h"

namespace drevintool {

/// Prints the node with the controls that the arguments change, keyed ones as curves. Returns 0;
/// throws ToolError.
int runScript(const ScriptArguments& arguments);

}  // namespace drevintool

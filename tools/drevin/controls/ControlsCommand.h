#pragma once

/// The subcommand that lists the node's controls.

#include "arguments/ControlsArguments.h"

namespace drevintool {

/// Prints the controls in order after the given changes, as a table or as JSON. Returns 0; throws
/// ToolError.
int runControls(const ControlsArguments& arguments);

}  // namespace drevintool

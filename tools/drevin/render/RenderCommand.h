#pragma once

/// The subcommand that renders the node over a picture.

#include "arguments/RenderArguments.h"

namespace drevintool {

/// Loads the node, sets its controls in order, connects the pictures and the camera, renders and
/// writes. The node's warnings and errors go to standard error. Returns the exit code (0, or 1
/// after an error of the node); throws ToolError for all else.
int runRender(const RenderArguments& arguments);

}  // namespace drevintool

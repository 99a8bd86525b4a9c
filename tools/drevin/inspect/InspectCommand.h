#pragma once

/// The subcommand that says what picture files hold.

#include "arguments/InspectArguments.h"

namespace drevintool {

/// Prints what is in each file, as text or as JSON. A file that cannot be read is one line on
/// standard error, and the others are told all the same. Returns the exit code: 0, or that of the
/// first file that failed; throws ToolError for all that is not one file's fault.
int runInspect(const InspectArguments& arguments);

}  // namespace drevintool

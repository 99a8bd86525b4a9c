#pragma once

/// The subcommand that says what picture files hold.

#include "arguments/InspectArguments.h"

namespace drevintool {

/// Prints what is in each file, as text or as JSON. A file that fails, for whatever reason, is one
/// line on standard error, and the others are told all the same. Without controls to predict for,
/// or a plug-in that is named, none is needed. Returns the exit code: 0, or the highest of those of
/// the files that failed; throws ToolError for all that is not one file's fault.
int runInspect(const InspectArguments& arguments);

}  // namespace drevintool

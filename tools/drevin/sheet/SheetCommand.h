#pragma once

/// The subcommand that puts pictures with different settings on one sheet.

#include "arguments/SheetArguments.h"

namespace drevintool {

/// Reads the pictures once, renders the node over them with every combination of the varied values,
/// and writes the small results, with their values below them, as one picture. Returns the exit
/// code (0, or that of the first picture that failed; nothing is written then); throws ToolError
/// for all else.
int runSheet(const SheetArguments& arguments);

}  // namespace drevintool

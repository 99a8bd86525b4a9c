#pragma once

/// The command line, checked and in the command's own terms.

#include <string>
#include <variant>

#include "arguments/ControlsArguments.h"
#include "arguments/DemoArguments.h"
#include "arguments/DoctorArguments.h"
#include "arguments/InspectArguments.h"
#include "arguments/RenderArguments.h"
#include "arguments/ScriptArguments.h"
#include "arguments/SheetArguments.h"

namespace drevintool {

/// A text that was asked for instead of work: help or version.
struct TextRequest {
  std::string text;
};

using Arguments = std::variant<TextRequest, RenderArguments, ControlsArguments, ScriptArguments,
                               DemoArguments, DoctorArguments, InspectArguments, SheetArguments>;

/// Reads the command line. Throws ToolError (Usage) with one line that names the option and the
/// remedy.
Arguments parseArguments(int count, const char* const* texts);

}  // namespace drevintool

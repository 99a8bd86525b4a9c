#pragma once

/// The demo's pictures as files.

#include <string>

#include "demo/DemoPicture.h"

namespace drevintool {

/// Writes an OpenEXR picture: the plane Z in single precision, all others in half, values beyond
/// half's range (65504) at that limit. Throws ToolError (OutputNotWritten).
void writeDemoPicture(const DemoPicture& picture, const std::string& path);

/// Writes a line of text. Throws ToolError (OutputNotWritten).
void writeDemoText(const std::string& line, const std::string& path);

}  // namespace drevintool

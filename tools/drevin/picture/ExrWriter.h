#pragma once

/// Writing results as OpenEXR pictures.

#include <string>

#include "picture/OutputPicture.h"

namespace drevintool {

/// Writes one scanline part, ZIP in blocks of 16 rows, every channel in the type of its samples,
/// with the display window as given, the data window from the box, and what attributes the input
/// had that still hold. The file appears in its place when it is whole. Throws ToolError
/// (OutputNotWritten, or Interrupted and Terminated on a signal).
void writeExr(const OutputPicture& picture, const std::string& path);

}  // namespace drevintool

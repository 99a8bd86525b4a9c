#pragma once

/// Writing results as OpenEXR pictures.

#include <string>

#include "picture/OutputPicture.h"

namespace drevintool {

/// Writes one scanline part, every channel in the type of its samples, with the display window as
/// given, the data window from the box, and what attributes the input had that still hold. Pixels
/// are packed as the picture asks, else as those of the input were if that keeps every bit, else
/// with ZIP. The file appears in its place when it is whole. Throws ToolError
/// (OutputNotWritten, RenderFailed without memory, Interrupted or Terminated on a signal).
void writeExr(const OutputPicture& picture, const std::string& path);

}  // namespace drevintool

#pragma once

/// The demo's deep picture as a file.

#include <string>

#include "demo/DemoDeepPicture.h"

namespace drevintool {

/// Writes one deep scanline part, ZIP row by row: R, G, B, A in half precision, values beyond its
/// range (65504) at that limit; Z and ZBack in single precision. The file appears in its place when
/// it is whole. Throws ToolError (OutputNotWritten, or Interrupted and Terminated on a signal).
void writeDemoDeep(const DemoDeepPicture& picture, const std::string& path);

}  // namespace drevintool

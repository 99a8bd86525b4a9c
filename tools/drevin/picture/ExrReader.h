#pragma once

/// Reading flat OpenEXR pictures.

#include <string>

#include "picture/Picture.h"

namespace drevintool {

/// Reads all flat parts of a file and merges them as layers: scanline or tiled (of several levels
/// the first), half, float or unsigned integer channels.
///
/// Row 0 is the bottom row of the first flat part's display window, column 0 its left column; the
/// box is the union of the parts' data windows, with zero bits where a part has no pixel. A channel
/// whose host name is taken gets its part's name in front ("left.Z"), or a number where that is
/// taken too. Samples keep the file's type and bits, NaN payloads included.
///
/// Throws ToolError: InputUnreadable with one line that names the file for anything that keeps it
/// from being read whole, a file of deep parts only included; Interrupted or Terminated on a
/// signal.
Picture readExr(const std::string& path);

}  // namespace drevintool

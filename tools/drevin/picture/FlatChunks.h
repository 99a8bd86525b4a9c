#pragma once

/// The blocks of the flat parts: what their own heads say, read before any pixel is.

#include <string>

#include "picture/ExrHeaderScan.h"

namespace drevintool {

/// Throws ToolError (InputUnreadable) with one line that names the file if a block of a flat part
/// (of a tiled one of its first level) is missing, lies outside the file, stands for another place
/// than the table says, has fewer bytes than its compression can bring its pixels into or more than
/// they have, or shares bytes with another. The parts' sizes must have passed checkExrLimits.
void checkFlatChunks(const std::string& path, const ExrFacts& facts);

}  // namespace drevintool

#pragma once

/// Whether a result that was written before is whole.

#include <string>

namespace drevintool {

/// True if the file is there and whole, as the command writes it: an OpenEXR file with one part of
/// rows, a valid header and all blocks in their places, or a PNG file from its signature to its end
/// mark (chosen by the name's last letter). Pixels are not decoded. Never throws for what is in the
/// file.
bool isWholePicture(const std::string& path);

}  // namespace drevintool

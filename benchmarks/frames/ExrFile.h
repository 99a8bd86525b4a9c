#pragma once

#include <string>

#include "EmbeddedHost/ImageInput.h"

namespace drevin::bench {

/// Writes red, green, blue, alpha and depth (Z) of a picture that fills its format as uncompressed
/// float EXR. Throws what OpenEXR throws.
void writeExr(const embedded::Image& image, const std::string& path);

}  // namespace drevin::bench

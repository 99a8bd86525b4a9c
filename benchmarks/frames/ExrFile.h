#pragma once

#include <string>

#include "EmbeddedHost/ImageInput.h"
#include "picture/OutputPicture.h"

namespace drevin::bench {

/// Red, green, blue, alpha and depth (Z) of a picture that fills its format, the depth in single
/// precision.
drevintool::OutputPicture outputPicture(const embedded::Image& image, bool halfColours);

/// Writes them as uncompressed float EXR. Throws what the command's writer throws.
void writeExr(const embedded::Image& image, const std::string& path);

}  // namespace drevin::bench

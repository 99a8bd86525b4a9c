#pragma once

/// Writing results as PNG pictures.

#include <cstdint>
#include <string>

#include "picture/OutputPicture.h"

namespace drevintool {

/// The 8-bit code of a linear value through the sRGB transfer curve (IEC 61966-2-1):
/// 12.92 v up to 0.0031308, else 1.055 v^(1/2.4) - 0.055, times 255, rounded. Values below 0 and
/// NaN give 0, values above 1 and infinity 255.
std::uint8_t srgbCode(float linear);

/// Writes R, G, B and, if there, A of the picture's box with 8 bits each, the top row first. Alpha
/// is stored linearly; the colours are those of the picture (premultiplied, as rendered), so that
/// lights spread beyond the alpha stay visible. A colour that the picture lacks is 0. The file
/// appears in its place when it is whole. Throws ToolError (OutputNotWritten).
void writePng(const OutputPicture& picture, const std::string& path);

}  // namespace drevintool

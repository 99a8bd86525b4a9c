#pragma once

/// A picture as an input image of the host.

#include "EmbeddedHost/ImageInput.h"
#include "picture/Picture.h"

namespace drevintool {

/// The picture's format, box and channels under their host names, all as floats; channels that are
/// float already are shared, not copied. Channels beyond the host's 1023 numbers are left out.
embedded::Image hostImage(const Picture& picture);

/// Gives the image black red, green and blue where it lacks them. A node draws only into channels
/// that its picture has, and the views of depth and aperture draw colours.
void addMissingColours(embedded::Image& image);

/// Boxes of the command and of the host.
DD::Image::Box hostBox(const PixelBox& box);
PixelBox pixelBox(const DD::Image::Box& box);

}  // namespace drevintool

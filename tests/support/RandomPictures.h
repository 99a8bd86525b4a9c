#pragma once

/// The pictures of a random scene.

#include "support/Draw.h"
#include "support/LiteralPicture.h"
#include "support/LiteralSettings.h"

namespace drevin::test {

/// Colour, perhaps alpha and other channels, and depths around the focal plane.
LiteralPicture randomImage(Draw& draw, const LiteralSettings& settings);

/// Mattes of the image's format in some of the colour channels, also below 0 and above 1.
LiteralPicture randomMattes(Draw& draw, const LiteralPicture& image);

/// An aperture image, smaller or larger than the kernels.
LiteralPicture randomKernelImage(Draw& draw);

}  // namespace drevin::test

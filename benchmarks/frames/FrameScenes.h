#pragma once

/// The pictures of the frame table.

#include <string>

#include "EmbeddedHost/ImageInput.h"

namespace drevin::bench {

/// Focal plane and width of the focus region of all scenes, in which depths lie.
constexpr float frameFocalPlane = 10.0F;
constexpr float frameFocusRegion = 8.0F;

/// A picture of that kind, RGBA and depth, lights up to 500:
///
///   uniform  everything at the far end of the focus region
///   ramp     depth from the near end to the far end along a tilted axis
///   scene    two fifths far background, two fifths sloping ground and things in front, a fifth in
///            focus
///   random   every pixel anywhere in the focus region
///
/// Throws std::invalid_argument for another kind.
embedded::Image frameScene(const std::string& kind, int width, int height);

/// An aperture for the Kernel input, side x side RGBA: discs with soft rims, another radius in red,
/// green and blue, that of blue in alpha too.
embedded::Image apertureScene(int side);

/// Mattes of that size: red falls from left to right, green is 1 with a soft hole of 0.5, blue
/// rises from the bottom to the top.
embedded::Image matteScene(int width, int height);

/// Makes the colours of an area in the upper left, a tenth of the picture wide and a sixth high, a
/// hundred times brighter.
void brightenWindow(embedded::Image& image);

}  // namespace drevin::bench

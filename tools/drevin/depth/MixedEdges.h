#pragma once

/// Depths that a renderer averaged across an edge, which lie where nothing is.

#include <cstddef>
#include <vector>

#include "depth/DepthPlane.h"

namespace drevintool {

/// A pixel with such a depth, and the depths of the two sides that it was averaged from.
struct MixedPixel {
  std::size_t index = 0;  ///< in the plane
  float nearer = 0.0F;    ///< the side whose depth is closer to the pixel's own
  float farther = 0.0F;   ///< the other side
};

/// The mixed pixels of a plane, in the order of its pixels.
///
/// A pixel is mixed if in its row or in its column it belongs to a run of one or two pixels between
/// two sides, all finite, such that
///
/// * the depths of the run lie strictly between those of the pixels beside it, a and b, and rise or
///   fall all the way from a to b; two of them differ by a quarter of s at least, or they would be
///   a thing of their own;
/// * the step s = |a - b| is more than a twentieth of the smaller of |a| and |b|;
/// * each side is level: with the two pixels behind it, a changes by no more than s / 8 from one to
///   the next (beyond the border of the plane the last pixel repeats), and so with b;
/// * the run is no part of a side: it begins more than four such changes away from a, and the
///   rounding of halves or floats, and ends so far from b.
///
/// A side may be a background code that is finite, for renderers average those in too. Where row
/// and column both make a pixel mixed, the larger step counts. Depths as far from either side as
/// from the other go with the smaller one.
std::vector<MixedPixel> findMixedPixels(const DepthPlane& plane);

}  // namespace drevintool

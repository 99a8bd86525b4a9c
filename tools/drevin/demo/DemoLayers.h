#pragma once

/// From what the rays of a pixel meet to a few deep samples that composite to the same.

#include <vector>

#include "demo/DemoDeepPicture.h"
#include "demo/DemoVector.h"

namespace drevintool {

/// What one ray meets at one depth.
struct DemoLayer {
  double depth = 0.0;  ///< m, above 0
  double share = 0.0;  ///< of the pixel's light that ends here, above 0
  DemoVector light;    ///< that the pixel gets from here
};

/// Merges layers whose depths blur alike and appends a point sample for each group, nearest first:
///   alpha = w / (1 - W),  colour = alpha * L / w
///
///   w, L  sums of the group's shares and lights
///   W     what the samples before it take together, from their alphas as they are stored
///
/// Alphas are values of half precision; the last is 1. `layers` hold the whole pixel, their shares
/// add up to 1; they are left in order of depth. Layers blur alike if the reciprocals of their
/// depths differ by less than 0.004 per m, two thirds of a pixel of the demo's own lens.
void appendMerged(std::vector<DemoLayer>& layers, std::vector<DemoDeepSample>& samples);

/// The nearest value that half precision holds.
float toHalfPrecision(double value);

}  // namespace drevintool

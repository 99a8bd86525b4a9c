#pragma once

/// Which depth the empty pixels of a picture carry.

#include <cstddef>
#include <optional>
#include <string>

#include "depth/DepthPlane.h"

namespace drevintool {

struct BackgroundFinding {
  float value = 0.0F;      ///< may be infinite or NaN
  std::size_t pixels = 0;  ///< that have it
  std::string why;
};

/// The depth that stands for nothing, by the first of these that there is:
///
/// 1. where some, but not all pixels of `alpha` are 0: the depth that nine in ten of them have, if
///    it lies before or behind all depths of the others, or is not finite;
/// 2. the most frequent of the codes of DepthCodes, with 0 among them;
/// 3. the largest depth, if one pixel in a hundred has it and all others are at most a tenth of it.
///
/// `alpha` is null or a plane of the same box.
std::optional<BackgroundFinding> findBackground(const DepthPlane& depth, const DepthPlane* alpha);

}  // namespace drevintool

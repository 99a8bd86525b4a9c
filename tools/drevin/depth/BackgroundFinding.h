#pragma once

/// Which depth the empty pixels of a picture carry.

#include <cstddef>
#include <optional>
#include <string>

#include "depth/DepthCodes.h"
#include "depth/DepthPlane.h"

namespace drevintool {

/// The depths of one channel that stand for nothing: codes that do so in any picture, and what else
/// does in this one.
struct BackgroundFinding {
  DepthCodes codes;
  std::optional<float> value;  ///< as stored; may be NaN or infinite; none: no pixel is empty
  std::size_t pixels = 0;      ///< that have it
  std::size_t others = 0;      ///< pixels with other codes
  std::string why;

  bool contains(float raw) const { return codes.isBackground(raw) || (value && raw == *value); }
  /// Whether the value is an ordinary depth elsewhere.
  bool isOrdinary() const { return value && !codes.isBackground(*value); }
};

/// Finds the value, by the first of these that there is:
///
/// 1. where some, but not all pixels of `alpha` are 0: the depth that nine in ten of them have, if
///    it lies before or behind all depths of the others, or is a code;
/// 2. the farthest distance that is no code, if one pixel in a hundred has it, more than have
///    codes, and all other distances are less than a tenth of it;
/// 3. the most frequent of the codes.
///
/// `alpha` is null or a plane of the same box.
BackgroundFinding findBackground(const DepthPlane& depth, const DepthPlane* alpha,
                                 DepthStyle style);

/// The same of a picture's channel, over the pixels that its part has, with the picture's alpha.
BackgroundFinding findBackground(const Picture& picture, const PictureChannel& channel,
                                 DepthStyle style);

}  // namespace drevintool

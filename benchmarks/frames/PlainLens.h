#pragma once

/// Depth to blur and slice of the plain rows: the artistic lens with a linear ramp, inline, because
/// the plain form converts each source pixel anew for every output row.

#include <cmath>
#include <stdexcept>
#include <vector>

#include "support/LiteralLens.h"

namespace drevin::bench {

struct PlainBlur {
  float diameter = 1.0F;  ///< px, at least 1
  int slice = -1;         ///< -1 in front of the first
};

class PlainLens {
 public:
  /// Throws std::invalid_argument for another lens or ramp.
  PlainLens(const test::LiteralSettings& settings, const test::LiteralLens& lens)
      : focalPlane_(settings.focalPlane),
        nearest_(lens.focusNear),
        farthest_(lens.focusFar),
        perUnit_(lens.invHalfFocusRegion),
        front_(settings.multiplier * settings.frontMultiplier * settings.contextScale),
        back_(settings.multiplier * settings.backMultiplier * settings.contextScale),
        sliceStarts_(settings.correctiveSlices == 1 ? std::vector<float>{nearest_}
                                                    : lens.sliceBoundaries) {
    if (settings.realWorldLens || settings.falloff != 0 || settings.depthStyle != 0)
      throw std::invalid_argument("the plain rows know the artistic lens and its linear ramp only");
  }

  /// A depth that is not a NaN, in scene units.
  PlainBlur blurOf(float depth) const {
    const float near = depth < nearest_ ? nearest_ : depth;
    const float z = near > farthest_ ? farthest_ : near;
    const float product = std::fabs(z - focalPlane_) * perUnit_;
    const float ramp = product < 1.0F ? product : 1.0F;
    const float diameter = ramp * (z < focalPlane_ ? front_ : back_);
    return {diameter > 1.0F ? diameter : 1.0F, sliceOf(z)};
  }

 private:
  int sliceOf(float depth) const {
    int slice = -1;
    for (const float start : sliceStarts_)
      slice += depth < start ? 0 : 1;
    return slice;
  }

  float focalPlane_;
  float nearest_;
  float farthest_;
  float perUnit_;  ///< of blur, in a focus region of 1
  float front_;    ///< px at the near end
  float back_;     ///< px at the far end
  std::vector<float> sliceStarts_;
};

}  // namespace drevin::bench

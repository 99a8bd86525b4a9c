#pragma once

/// The largest blur of flat pictures: raw depths, clamped to the focus region in the artistic mode.

#include "defocus/FixedLens.h"
#include "kernel/PaddingEstimate.h"

namespace drevin {

/// An estimate, empty, for a lens of fixed modes.
template <typename FixedLens>
auto flatEstimate(const FixedLens& fixed) {
  const auto normalised = [fixed](float raw) {
    return normaliseDepth(raw, fixed.get().depthStyle);
  };
  const auto blur = [fixed](float depth) {
    const dvLens lens = fixed.get();
    const float z = clampToFocusRegion(depth, lens);
    return unscaledCoc(z, focusRegion(z, lens), lens);
  };
  return dvPaddingEstimate(normalised, blur, fixed.get().uiContextScale);
}

}  // namespace drevin

#pragma once

/// The largest blur of flat pictures: raw depths, clamped to the focus region in the artistic mode.

#include "defocus/FixedLens.h"
#include "kernel/PaddingEstimate.h"

namespace drevin {

/// An estimate, empty, for a lens of fixed modes.
template <typename FixedLens>
auto flatEstimate(const FixedLens& lens) {
  const auto normalised = [](float raw) { return normaliseDepth(raw, FixedLens::depthStyle); };
  const auto blur = [lens](float depth) {
    const float z = clampToFocusRegion(depth, lens);
    return unscaledCoc(z, focusRegion(z, lens), lens);
  };
  return dvPaddingEstimate(normalised, blur, lens.uiContextScale);
}

}  // namespace drevin

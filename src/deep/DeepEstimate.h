#pragma once

/// The largest blur of deep pictures: depths in scene units, not clamped to the focus region.

#include "defocus/FixedLens.h"
#include "kernel/PaddingEstimate.h"

namespace drevin {

/// An estimate, empty, for a lens of fixed modes.
template <typename FixedLens>
auto deepEstimate(const FixedLens& lens) {
  const auto asItIs = [](float depth) { return depth; };
  const auto blur = [lens](float depth) {
    return unscaledCoc(depth, focusRegion(depth, lens), lens);
  };
  return dvPaddingEstimate(asItIs, blur, lens.uiContextScale);
}

}  // namespace drevin

#pragma once

/// The literal size estimate: the largest blur of the whole frame.

#include "support/LiteralLens.h"
#include "support/LiteralPicture.h"
#include "support/LiteralSettings.h"

namespace drevin::test {

struct LiteralEstimate {
  int largest = 0;  ///< the largest diameter found, px
  int kernelSize = 0;
  int padding = 0;
  bool warned = false;
};

/// The blur diameter of a deep depth in whole pixels, 0 where it is infinitely far; the depth is
/// not clamped to the focus region.
int literalDeepDiameter(float depth, const LiteralSettings& settings, const LiteralLens& lens);

/// What a largest diameter comes to.
LiteralEstimate literalEstimateOf(int largest, const LiteralSettings& settings);

LiteralEstimate literalEstimate(const LiteralSettings& settings, const LiteralLens& lens,
                                const LiteralPicture& image);

}  // namespace drevin::test

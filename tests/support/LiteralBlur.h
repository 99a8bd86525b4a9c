#pragma once

/// The literal depth-to-blur conversion: one raw sample to a blur diameter and a focus region.

#include "support/LiteralLens.h"
#include "support/LiteralSettings.h"

namespace drevin::test {

struct LiteralBlur {
  float coc = 0.0F;
  int region = 0;  ///< 0 unordered, 1 front, 2 back
  float depth = 0.0F;
};

/// A raw sample as a depth; the largest float is infinitely far.
float literalDepth(float raw, const LiteralSettings& settings);

/// The blur of such a depth, clamped into the focus region in the artistic mode, before the rule
/// for the infinitely far and the interface's scale.
LiteralBlur literalCircle(float depth, const LiteralSettings& settings, const LiteralLens& lens);
/// As above without the clamp to the focus region.
LiteralBlur literalUnclampedCircle(float z, const LiteralSettings& settings,
                                   const LiteralLens& lens);

/// The whole conversion, without matte and least size.
LiteralBlur literalBlur(float raw, const LiteralSettings& settings, const LiteralLens& lens,
                        int kernelSize);

}  // namespace drevin::test

#pragma once

/// Lens values and slice boundaries of the literal frame, derived once from the settings.

#include <vector>

#include "support/LiteralSettings.h"

namespace drevin::test {

struct LiteralLens {
  float filmBackScale = 0.0F;
  float halfFocusRegion = 0.0F;
  float invHalfFocusRegion = 0.0F;
  float focusFar = 0.0F;
  float focusNear = 0.0F;
  float focusRange = 0.0F;
  float lensCoefficient = 0.0F;
  std::vector<float> sliceBoundaries;
};

/// Millimetres in one scene unit of that world scale.
float literalUnit(int worldScale);

LiteralLens literalLens(const LiteralSettings& settings, int formatWidth, int formatHeight);

/// The slice of a normalised depth; -1 where it lies before the first boundary.
int literalSlice(float depth, const LiteralSettings& settings, const LiteralLens& lens);

}  // namespace drevin::test

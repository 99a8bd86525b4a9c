#pragma once

/// The literal splat: one source pixel through its kernels onto one output row, summed in double.

#include <map>
#include <vector>

#include "support/LiteralHero.h"
#include "support/LiteralSettings.h"

namespace drevin::test {

/// What one slice gathers at one column of one channel. The absolute sums say how much rounding the
/// plain ones may carry.
struct LiteralSum {
  double colour = 0.0;
  double weight = 0.0;
  double absoluteColour = 0.0;
  double absoluteWeight = 0.0;
};

/// Sums by slice, channel number and column from the span's left.
using LiteralSums = std::vector<std::map<int, std::vector<LiteralSum>>>;

/// Everything of one call that does not concern sums.
struct LiteralSource {
  int clampedX = 0;
  int clampedY = 0;
  int left = 0;  ///< output columns [left, right) of row y
  int y = 0;
  int right = 0;
  int x = 0;  ///< the source's own place
  int sourceY = 0;
  float coc = 1.0F;
  int slice = 0;
  float weight = 1.0F;
  float bloomMatte = 1.0F;
  float chromaticMatte = 1.0F;
  std::map<int, float> pixel;  ///< by channel number
};

/// Bloom of a place, before the pixel's colour and matte. The format's size in px.
float literalBloomAmount(const LiteralSettings& settings, int formatWidth, int formatHeight, int x,
                         int y);

/// Splats every channel of `source.pixel` for which the bank has planes.
void literalSplat(const LiteralSettings& settings, int formatWidth, int formatHeight,
                  const std::vector<LiteralKernel>& bank, const LiteralSource& source,
                  LiteralSums& sums);

}  // namespace drevin::test

#pragma once

/// The literal deep rows: the defocus and the depth visualization of a deep picture.

#include <vector>

#include "support/LiteralBlur.h"
#include "support/LiteralDeepMerge.h"
#include "support/LiteralFrame.h"

namespace drevin::test {

/// A deep picture; pixels outside the box are empty.
struct LiteralDeepImage {
  LiteralBox box;
  std::vector<int> channels;  ///< ascending, among them alpha and both depths
  std::vector<LiteralDeepPixel> pixels;

  const LiteralDeepPixel& at(int column, int row) const;
};

/// What a deep frame is made from: `flat.image` is the picture whose values stand in for channels
/// that the deep one lacks. focusOutput is the mode.
struct LiteralDeepScene {
  LiteralScene flat;
  LiteralDeepImage deep;
};

/// The blur of a deep depth, before matte and least size: neither the 1/z style nor the rule for
/// depths that are not finite applies.
LiteralBlur literalDeepBlur(float depth, const LiteralSettings& settings, const LiteralLens& lens,
                            int kernelSize);

/// Columns [left, right) of row y of the defocus for every requested channel that is processed.
/// `frame` is made from scene.flat and gives the lens, the kernels and the padding.
LiteralRow literalDeepRow(const LiteralDeepScene& scene, const LiteralFrame& frame, int y, int left,
                          int right);

/// One channel of the visualization of samples that no longer overlap, nearest first.
float literalDeepDepthValue(const LiteralDeepPixel& samples, int channel,
                            const LiteralSettings& settings, const LiteralLens& lens,
                            int kernelSize);

}  // namespace drevin::test

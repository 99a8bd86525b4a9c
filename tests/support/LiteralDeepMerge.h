#pragma once

/// The literal merge of deep samples: plain recursion over plain lists.

#include <cstddef>
#include <map>
#include <vector>

namespace drevin::test {

constexpr int literalZ = 5;
constexpr int literalFront = 6;
constexpr int literalBack = 7;

/// A sample or a piece. The depths stand apart from the values by channel number, which need not
/// hold them.
struct LiteralDeepSample {
  float front = 0.0F;  ///< scene units
  float back = 0.0F;   ///< scene units
  std::map<int, float> values;
};

/// The samples of a pixel in the order that they are given in.
using LiteralDeepPixel = std::vector<LiteralDeepSample>;

/// Appends the pieces of a sample and of those it reaches; returns its back.
float literalAddSample(const LiteralDeepPixel& pixel, std::size_t& index, LiteralDeepPixel& out);

/// Appends the pieces of the pixel.
void literalCombineSamples(const LiteralDeepPixel& pixel, LiteralDeepPixel& out);

/// The pieces as they are read back: by front, then back, then order of emission; a NaN is
/// infinitely far.
LiteralDeepPixel literalReadBack(LiteralDeepPixel pieces);

}  // namespace drevin::test

#include "defocus/SliceComposite.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "support/Draw.h"
#include "support/LiteralComposite.h"

namespace drevin {
namespace {

/// Colour and weight of one slice at one column.
using Layer = std::pair<float, float>;

float composited(const std::vector<Layer>& layers) {
  dvSliceAccumulators accumulators(static_cast<int>(layers.size()), {1}, 0, 1);
  for (std::size_t s = 0; s < layers.size(); ++s) {
    accumulators.use(s);
    accumulators.colour()[s][1][0] = layers[s].first;
    accumulators.weight()[s][1][0] = layers[s].second;
  }
  accumulators.flush();
  float out = -1.0F;
  compositeSlices(accumulators, 0, &out);
  return out;
}

TEST(SliceComposite, oneSlice_isColourByWeight) {
  EXPECT_FLOAT_EQ(composited({{3.0F, 0.5F}}), 6.0F);
  EXPECT_FLOAT_EQ(composited({{3.0F, 1.5F}}), 2.0F);
}

TEST(SliceComposite, fullyCoveringNearSlice_hidesTheFarOne) {
  EXPECT_FLOAT_EQ(composited({{2.0F, 1.0F}, {900.0F, 1.0F}}), 2.0F);
  EXPECT_FLOAT_EQ(composited({{4.0F, 2.0F}, {900.0F, 1.0F}}), 2.0F);
}

TEST(SliceComposite, farSlice_fillsOnlyWhatIsFree) {
  // A quarter near of value 4, the rest of value 8.
  EXPECT_FLOAT_EQ(composited({{1.0F, 0.25F}, {8.0F, 1.0F}}), 0.25F * 4.0F + 0.75F * 8.0F);
}

TEST(SliceComposite, partlyCovered_isDividedByTheCoverage) {
  EXPECT_FLOAT_EQ(composited({{1.0F, 0.25F}, {2.0F, 0.25F}}), 6.0F);
}

TEST(SliceComposite, nothingSplatted_isZero) {
  EXPECT_EQ(composited({{0.0F, 0.0F}, {0.0F, 0.0F}}), 0.0F);
  dvSliceAccumulators untouched(2, {1}, 0, 1);
  float out = -1.0F;
  compositeSlices(untouched, 0, &out);
  EXPECT_EQ(out, 0.0F);
}

TEST(SliceComposite, coverageNotAboveZero_leavesTheUndividedSum) {
  EXPECT_FLOAT_EQ(composited({{3.0F, -0.5F}}), 3.0F);
  EXPECT_FLOAT_EQ(composited({{3.0F, std::nanf("")}}), 3.0F);
}

TEST(SliceComposite, nonFiniteColour_staysSo) {
  constexpr float infinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(composited({{infinity, 0.5F}}), infinity);
  EXPECT_TRUE(std::isnan(composited({{std::nanf(""), 0.5F}})));
}

TEST(SliceComposite, randomLayers_agreeWithTheLiteralComposite) {
  test::Draw draw(3);
  for (int i = 0; i < 5000; ++i) {
    std::vector<Layer> layers;
    test::LiteralSums sums;
    for (int s = draw.whole(1, 6); s > 0; --s) {
      const float weight = draw.real(0.0F, 0.7F);
      layers.emplace_back(weight * draw.real(-1.0F, 3.0F), weight);
      const auto colour = static_cast<double>(layers.back().first);
      sums.push_back({{1,
                       {{colour, static_cast<double>(weight), std::fabs(colour),
                         static_cast<double>(weight)}}}});
    }
    const test::LiteralValue expected = test::literalComposite(sums, 1, 0);
    EXPECT_NEAR(static_cast<double>(composited(layers)), expected.value, 1e-6);
  }
}

}  // namespace
}  // namespace drevin

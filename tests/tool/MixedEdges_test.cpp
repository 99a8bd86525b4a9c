#include "depth/MixedEdges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "DepthPlaneFixture.h"
#include "OddNumbers.h"

namespace drevintool::testing {
namespace {

std::vector<std::size_t> mixedIn(const std::vector<float>& row) {
  std::vector<std::size_t> places;
  for (const MixedPixel& pixel : findMixedPixels(rowOf(row)))
    places.push_back(pixel.index);
  return places;
}

using Places = std::vector<std::size_t>;

TEST(MixedEdges, onePixelBetweenTwoSides_isMixed) {
  const auto pixels = findMixedPixels(rowOf({5, 5, 5, 8, 20, 20, 20}));
  ASSERT_EQ(pixels.size(), 1U);
  EXPECT_EQ(pixels[0].index, 3U);
  EXPECT_EQ(pixels[0].nearer, 5.0F);
  EXPECT_EQ(pixels[0].farther, 20.0F);
}

TEST(MixedEdges, pixelCloserToTheFarSide_hasThatSideNearer) {
  const auto pixels = findMixedPixels(rowOf({20, 20, 20, 16, 5, 5, 5}));
  ASSERT_EQ(pixels.size(), 1U);
  EXPECT_EQ(pixels[0].nearer, 20.0F);
  EXPECT_EQ(pixels[0].farther, 5.0F);
}

TEST(MixedEdges, pixelInTheMiddle_goesWithTheSmallerDepth) {
  const auto pixels = findMixedPixels(rowOf({20, 20, 20, 15, 10, 10, 10}));
  ASSERT_EQ(pixels.size(), 1U);
  EXPECT_EQ(pixels[0].nearer, 10.0F);
}

TEST(MixedEdges, twoPixelsThatRiseAllTheWay_areMixed) {
  EXPECT_EQ(mixedIn({5, 5, 5, 7, 18, 20, 20, 20}), (Places{3, 4}));
}

TEST(MixedEdges, twoPixelsAtOneDepth_areAThingOfTheirOwn) {
  EXPECT_EQ(mixedIn({5, 5, 5, 12, 13, 20, 20, 20}), Places{});
}

TEST(MixedEdges, threePixelsBetweenTheSides_areNotMixed) {
  EXPECT_EQ(mixedIn({5, 5, 5, 8, 12, 16, 20, 20, 20}), Places{});
}

TEST(MixedEdges, hardEdge_hasNoMixedPixel) {
  EXPECT_EQ(mixedIn({5, 5, 5, 20, 20, 20}), Places{});
}

TEST(MixedEdges, slopeBesideAnEdge_isNotMixed) {
  EXPECT_EQ(mixedIn({1.775F, 1.780F, 1.785F, 1.790F, 1.796F, 2.722F, 2.730F, 2.738F}), Places{});
}

TEST(MixedEdges, steepSlope_isNotMixed) {
  EXPECT_EQ(mixedIn({1, 2, 3, 4, 5, 6, 7, 8}), Places{});
}

TEST(MixedEdges, smallSteps_areNoEdges) {
  EXPECT_EQ(mixedIn({10, 10, 10, 10.2F, 10.4F, 10.4F, 10.4F}), Places{});
}

TEST(MixedEdges, thingBeforeBothSides_isNotMixed) {
  EXPECT_EQ(mixedIn({20, 20, 20, 5, 20, 20, 20}), Places{});
}

TEST(MixedEdges, averagesWithAFiniteBackgroundCode_areMixed) {
  EXPECT_EQ(mixedIn({0, 0, 0, 4, 9, 9, 9}), (Places{3}));
  EXPECT_EQ(mixedIn({9, 9, 9, 3e9F, 1e10F, 1e10F, 1e10F}), (Places{3}));
}

TEST(MixedEdges, nanAndInfinity_areNeverMixedNorSides) {
  EXPECT_EQ(mixedIn({5, 5, 5, kNanFloat, 20, 20, 20}), Places{});
  EXPECT_EQ(mixedIn({5, 5, 5, 8, kInfinityFloat, kInfinityFloat}), Places{});
  EXPECT_EQ(mixedIn({kNanFloat, kNanFloat, kNanFloat, 8, 20, 20, 20}), Places{});
}

TEST(MixedEdges, sideOfOnePixelAtTheBorder_isASide) {
  EXPECT_EQ(mixedIn({5, 8, 20}), (Places{1}));
}

TEST(MixedEdges, pixelAtTheBorder_isNotMixedInItsRow) {
  EXPECT_EQ(mixedIn({8, 20, 20, 20}), Places{});
}

TEST(MixedEdges, emptyPlane_hasNone) {
  EXPECT_TRUE(findMixedPixels(planeOf(0, 0, [](int, int) { return 1.0F; })).empty());
}

TEST(MixedEdges, roundingOfHalves_isNoEdgeOfALevelSide) {
  DepthPlane plane = rowOf({10, 10, 10, 9.9921875F, 5, 5, 5});
  EXPECT_EQ(findMixedPixels(plane).size(), 1U);
  plane.half = true;
  EXPECT_TRUE(findMixedPixels(plane).empty());
}

// Two planes with a straight edge, each pixel with the mean depth of its area: in any direction the
// edge's pixels become exactly two depths.
TEST(MixedEdges, averagedStraightEdges_areFoundInAnyDirection) {
  constexpr int kSize = 40;
  constexpr int kGrid = 16;
  for (int degrees = 0; degrees < 360; degrees += 7) {
    const double angle = degrees * 3.14159265358979 / 180.0;
    const auto depth = [&](int x, int y) {
      int near = 0;
      for (int i = 0; i < kGrid * kGrid; ++i) {
        const int column = i % kGrid;
        const int row = i / kGrid;
        const double u = x + (column + 0.5) / kGrid - 19.7;
        const double v = y + (row + 0.5) / kGrid - 20.2;
        near += u * std::cos(angle) + v * std::sin(angle) < 0.0 ? 1 : 0;
      }
      return 20.0F - 15.0F * static_cast<float>(near) / (kGrid * kGrid);
    };
    const DepthPlane plane = planeOf(kSize, kSize, depth);
    std::vector<float> values = *plane.values;
    for (const MixedPixel& pixel : findMixedPixels(plane))
      values[pixel.index] = pixel.nearer;
    int mixed = 0;
    for (int y = 2; y < kSize - 2; ++y) {
      for (int x = 2; x < kSize - 2; ++x) {
        const float value = values[plane.indexOf(x, y)];
        mixed += value != 5.0F && value != 20.0F ? 1 : 0;
      }
    }
    EXPECT_EQ(mixed, 0) << degrees << " degrees";
  }
}

}  // namespace
}  // namespace drevintool::testing

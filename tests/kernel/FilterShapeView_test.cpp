#include "kernel/FilterShapeView.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "kernel/ApertureShape.h"
#include "kernel/HeroKernel.h"

namespace drevin {
namespace {

const std::vector<int> rgba{1, 2, 3, 4};

dvChannelFloatBuffer formatHero(int width, int height) {
  dvHeroRequest request;
  request.sizeToFormat = true;
  request.formatWidth = width;
  request.formatHeight = height;
  dvApertureShape shape;
  shape.softness = 1.0F;
  dvChannelFloatBuffer hero;
  makeHeroKernel(hero, shape, sizeHeroKernel(request), rgba, {});
  return hero;
}

// Columns [x, r) of row y, drawn over 9s.
std::vector<float> drawRow(const dvChannelFloatBuffer& hero, int channel, int y, int x, int r) {
  std::vector<float> row(static_cast<std::size_t>(r - x), 9.0F);
  filterShapeRow(hero, channel, y, x, r, row.data() - x);
  return row;
}

TEST(FilterShapeView, wideFormat_holdsTheKernelAtLeftAndBlackAtRight) {
  const dvChannelFloatBuffer hero = formatHero(1920, 1080);
  ASSERT_EQ(hero.width, 1080);
  for (int y = 0; y < 1080; ++y) {
    const std::vector<float> row = drawRow(hero, 2, y, 0, 1920);
    for (int c = 0; c < 1920; ++c) {
      const float expected = c < 1080 ? hero.plane(2)[y * 1080 + c] : 0.0F;
      ASSERT_EQ(row[static_cast<std::size_t>(c)], expected) << c << " " << y;
    }
  }
}

TEST(FilterShapeView, highFormat_isBlackAboveTheKernel) {
  const dvChannelFloatBuffer hero = formatHero(1080, 1920);
  const float* lastRow = hero.plane(1) + 1079 * 1080;
  EXPECT_EQ(drawRow(hero, 1, 1079, 0, 1080), std::vector<float>(lastRow, lastRow + 1080));
  EXPECT_GT(lastRow[540], 0.0F);
  for (const int y : {1080, 1500, 1919}) {
    EXPECT_EQ(drawRow(hero, 1, y, 0, 1080), std::vector<float>(1080, 0.0F));
  }
}

TEST(FilterShapeView, channelThatTheKernelLacks_isBlack) {
  const dvChannelFloatBuffer hero = formatHero(16, 16);
  for (const int channel : {0, 5, 1023}) {
    EXPECT_EQ(drawRow(hero, channel, 8, 0, 16), std::vector<float>(16, 0.0F));
  }
}

TEST(FilterShapeView, softDisc_isNotNormalisedAndOneAtItsCentre) {
  const int side = 101;
  const dvChannelFloatBuffer hero = formatHero(side, side);
  EXPECT_EQ(drawRow(hero, 1, 50, 0, side)[50], 1.0F);
  const std::vector<float> row = drawRow(hero, 1, 30, 0, side);
  for (int c = 0; c < side; ++c) {
    const double r2 = (c - 50.0) * (c - 50.0) + 400.0;
    EXPECT_NEAR(row[static_cast<std::size_t>(c)], std::max(0.0, 1.0 - r2 / (50.5 * 50.5)), 1e-6);
  }
}

TEST(FilterShapeView, rowsAndColumnsBelowZero_areBlack) {
  const dvChannelFloatBuffer hero = formatHero(8, 8);
  EXPECT_EQ(drawRow(hero, 1, -1, 0, 8), std::vector<float>(8, 0.0F));
  const std::vector<float> row = drawRow(hero, 1, 4, -3, 12);
  for (int c = -3; c < 12; ++c) {
    const float expected = c >= 0 && c < 8 ? hero.plane(1)[4 * 8 + c] : 0.0F;
    EXPECT_EQ(row[static_cast<std::size_t>(c + 3)], expected) << c;
  }
}

TEST(FilterShapeView, spanBesideTheKernel_isBlack) {
  const dvChannelFloatBuffer hero = formatHero(8, 8);
  EXPECT_EQ(drawRow(hero, 1, 4, 8, 20), std::vector<float>(12, 0.0F));
  EXPECT_EQ(drawRow(hero, 1, 4, -9, -2), std::vector<float>(7, 0.0F));
}

TEST(FilterShapeView, emptySpan_writesNothing) {
  const dvChannelFloatBuffer hero = formatHero(8, 8);
  float guard = 9.0F;
  filterShapeRow(hero, 1, 4, 0, 0, &guard);
  EXPECT_EQ(guard, 9.0F);
}

}  // namespace
}  // namespace drevin

#include "engine/TransformRounding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "engine/RowScene.h"
#include "engine/ThreadParallel.h"
#include "support/Draw.h"

namespace drevin::test {
namespace {

constexpr double perRoot = 2e-7;
constexpr int side = dvRoundingCell;

dvKernelTable smallTable() {
  return dvKernelTable(kernelBank(KernelKind::Constant, 1), 1);
}

dvTransformRounding roundingOf(const dvFrameBox& box, int planes = 1) {
  dvSerial serial;
  return {box, planes, smallTable(), serial};
}

/// What was added at a pixel, as the sum under the root.
double squaresAt(const dvTransformRounding& rounding, int x, int y, int plane = 0) {
  const double root = rounding.error(plane, x, y) / perRoot;
  return root * root;
}

TEST(TransformRounding, kernelSquare_isOfTheSumOfTheMagnitudes) {
  const dvKernelBank bank = kernelBank(KernelKind::Random, 7);
  const dvKernelTable kernels(bank, 1);
  for (const int workers : {1, 3}) {
    ThreadParallel parallel(workers);
    const dvTransformRounding rounding({0, 0, 8, 8}, 1, kernels, parallel);
    for (int radius = 0; radius <= 7; ++radius) {
      const auto entry = static_cast<std::size_t>(2 * radius + 1);
      double sum = 0.0;
      for (std::int64_t i = 0; i < bank[entry].count; ++i)
        sum += std::fabs(static_cast<double>(bank[entry].plane(1)[i]));
      EXPECT_NEAR(rounding.kernelSquare(radius), sum * sum, 1e-9 * sum * sum) << radius;
    }
  }
}

TEST(TransformRounding, kernelThatIsNotFinite_hasASquareThatIsNot) {
  dvKernelBank bank = kernelBank(KernelKind::Constant, 2);
  bank[5].plane(1)[7] = std::numeric_limits<float>::infinity();
  dvSerial serial;
  const dvTransformRounding rounding({0, 0, 8, 8}, 1, dvKernelTable(bank, 1), serial);
  EXPECT_FALSE(std::isfinite(rounding.kernelSquare(2)));
  EXPECT_TRUE(std::isfinite(rounding.kernelSquare(1)));
}

TEST(TransformRounding, nothingAdded_isNoError) {
  const dvTransformRounding rounding = roundingOf({-3, 5, 200, 90}, 2);
  for (const int plane : {0, 1}) {
    EXPECT_EQ(rounding.error(plane, -3, 5), 0.0);
    EXPECT_EQ(rounding.error(plane, 199, 89), 0.0);
  }
}

TEST(TransformRounding, tilesOneOverAnother_addTheirSquares) {
  dvTransformRounding rounding = roundingOf({0, 0, side, side});
  rounding.add(0, {0, 0, side, side}, 9.0);
  EXPECT_NEAR(rounding.error(0, 10, 10), 3.0 * perRoot, 1e-15);
  rounding.add(0, {0, 0, side, side}, 16.0);
  EXPECT_NEAR(rounding.error(0, 10, 10), 5.0 * perRoot, 1e-15);
}

TEST(TransformRounding, planes_areApart) {
  dvTransformRounding rounding = roundingOf({0, 0, 100, 100}, 3);
  rounding.add(1, {0, 0, 100, 100}, 4.0);
  EXPECT_EQ(rounding.error(0, 99, 99), 0.0);
  EXPECT_NEAR(rounding.error(1, 99, 99), 2.0 * perRoot, 1e-15);
  EXPECT_EQ(rounding.error(2, 0, 0), 0.0);
}

TEST(TransformRounding, cells_areCountedFromTheBoxesCorner) {
  dvTransformRounding rounding = roundingOf({-10, -70, 200, 150});
  rounding.add(0, {-10, -70, -9, -69}, 1.0);
  EXPECT_GT(rounding.error(0, -10 + side - 1, -70 + side - 1), 0.0);
  EXPECT_EQ(rounding.error(0, -10 + side, -70), 0.0);
  EXPECT_EQ(rounding.error(0, -10, -70 + side), 0.0);
}

TEST(TransformRounding, tileThatEndsWithACell_leavesTheNextAlone) {
  dvTransformRounding rounding = roundingOf({0, 0, 3 * side, 3 * side});
  rounding.add(0, {side, side, 2 * side, 2 * side}, 1.0);
  for (int up = 0; up < 3; ++up) {
    for (int across = 0; across < 3; ++across) {
      const bool reached = up == 1 && across == 1;
      EXPECT_EQ(rounding.error(0, across * side, up * side) > 0.0, reached) << across << ", " << up;
      EXPECT_EQ(rounding.error(0, across * side + side - 1, up * side + side - 1) > 0.0, reached);
    }
  }
}

TEST(TransformRounding, tileBesideTheBox_addsNothing) {
  const dvFrameBox box{0, 0, 100, 100};
  constexpr int far = std::numeric_limits<int>::max() / 4;
  dvTransformRounding rounding = roundingOf(box);
  for (const dvFrameBox& beside :
       {dvFrameBox{-50, 0, 0, 100}, dvFrameBox{100, 0, 150, 100}, dvFrameBox{0, -50, 100, 0},
        dvFrameBox{0, 100, 100, 150}, dvFrameBox{20, 20, 20, 80},
        dvFrameBox{far, far, 2 * far, 2 * far}})
    rounding.add(0, beside, 1.0);
  for (const int x : {0, 63, 64, 99}) {
    for (const int y : {0, 63, 64, 99})
      EXPECT_EQ(rounding.error(0, x, y), 0.0);
  }
}

/// Whether a tile has a pixel of the box in the cell of pixel (x, y).
bool meetsCell(const dvFrameBox& box, const dvFrameBox& tile, int x, int y) {
  const int left = box.left + (x - box.left) / side * side;
  const int bottom = box.bottom + (y - box.bottom) / side * side;
  return std::max({box.left, tile.left, left}) < std::min({box.right, tile.right, left + side}) &&
         std::max({box.bottom, tile.bottom, bottom}) < std::min({box.top, tile.top, bottom + side});
}

TEST(TransformRounding, everyPixel_hasTheTilesThatMeetItsCell) {
  Draw draw(3);
  for (int trial = 0; trial < 20; ++trial) {
    const dvFrameBox box{-30, 17, -30 + draw.whole(1, 200), 17 + draw.whole(1, 200)};
    dvTransformRounding rounding = roundingOf(box);
    std::vector<dvFrameBox> tiles;
    for (int i = 0; i < 4; ++i) {
      const int left = draw.whole(-150, 150);
      const int bottom = draw.whole(-100, 200);
      tiles.push_back({left, bottom, left + draw.whole(0, 130), bottom + draw.whole(0, 130)});
      rounding.add(0, tiles.back(), static_cast<double>(1 << i));
    }
    for (int y = box.bottom; y < box.top; y += 13) {
      for (int x = box.left; x < box.right; x += 13) {
        double squares = 0.0;
        for (int i = 0; i < 4; ++i)
          squares += meetsCell(box, tiles[static_cast<std::size_t>(i)], x, y) ? 1 << i : 0;
        ASSERT_NEAR(squaresAt(rounding, x, y), squares, 1e-9) << trial << ": " << x << ", " << y;
      }
    }
  }
}

}  // namespace
}  // namespace drevin::test

#include "frames/LiteralRows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "frames/Yardstick.h"

namespace drevin::bench {
namespace {

constexpr FrameSize small{96, 54};

/// Worst difference of the plain rows from the literal frame in some rows, in parts of the bound.
double worstOf(const FrameCase& picture) {
  const FramePictures pictures = framePictures(picture);
  const Yardstick yardstick(picture, pictures);
  LiteralRows rows(yardstick.scene(), yardstick.frame(), pictures.deep.get());
  double worst = 0.0;
  for (const int y : {0, 20, small.height - 1})
    worst = std::max(worst, rowError(rows.row(y), yardstick.row(y)));
  return worst;
}

TEST(LiteralRows, flatScenes_areThoseOfTheLiteralFrame) {
  for (const char* scene : {"uniform", "scene", "ramp", "random"})
    EXPECT_LT(worstOf(frameCase(scene, 16.0, small)), 0.5) << scene;
}

TEST(LiteralRows, deepPoints_areThoseOfTheLiteralFrame) {
  EXPECT_LT(worstOf(deepCase("scene", 16.0, small, 2, false)), 0.5);
}

TEST(LiteralRows, thickDeepSamples_areThoseOfTheLiteralFrame) {
  EXPECT_LT(worstOf(deepCase("scene", 16.0, small, 4, true)), 0.5);
}

TEST(LiteralRows, blades_areThoseOfTheLiteralFrame) {
  FrameCase picture = frameCase("ramp", 16.0, small);
  picture.settings.kernelType = 2;
  picture.settings.bladeCurvature = 0.0F;
  EXPECT_LT(worstOf(picture), 0.5);
}

TEST(LiteralRows, effects_areRefused) {
  FrameCase picture = frameCase("scene", 8.0, small);
  picture.settings.bloom = 1.0F;
  const FramePictures pictures = framePictures(picture);
  const Yardstick yardstick(picture, pictures);
  EXPECT_THROW(LiteralRows(yardstick.scene(), yardstick.frame(), nullptr), std::invalid_argument);
}

TEST(RowError, rowOfTheLiteralFrame_isOffByRoundingOnly) {
  const FrameCase picture = frameCase("scene", 8.0, small);
  const Yardstick yardstick(picture, framePictures(picture));
  const test::LiteralRow literal = yardstick.row(10);
  std::vector<float> row;
  for (const auto& entry : literal) {
    for (const test::LiteralValue& value : entry.second)
      row.push_back(static_cast<float>(value.value));
  }
  EXPECT_LT(rowError(row, literal), 0.01);
}

TEST(RowError, oneValueOff_isToldInPartsOfTheBound) {
  const test::LiteralRow literal = {{1, {{2.0, 0.0, true}, {2.0, 0.0, true}}}};
  EXPECT_NEAR(rowError({2.0F, 2.0F + 2.1e-3F}, literal), 10.0, 0.01);
}

TEST(RowError, nanThatIsNotExpected_isInfinite) {
  const test::LiteralRow literal = {{1, {{2.0, 0.0, true}}}};
  EXPECT_TRUE(std::isinf(rowError({std::nanf("")}, literal)));
}

}  // namespace
}  // namespace drevin::bench

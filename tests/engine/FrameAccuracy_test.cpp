/// Whole frames against the literal rows in double, within a part of what a picture may differ by.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "engine/FrameScenes.h"
#include "engine/LiteralComparison.h"
#include "support/Draw.h"
#include "support/PlainScene.h"

namespace drevin::test {
namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr dvTileChoice allChoices[] = {dvTileChoice::Nothing, dvTileChoice::Everything,
                                       dvTileChoice::ByCost};
constexpr int width = 260;
constexpr int height = 180;

/// Both sides of a border between tiles, which begin a padding below the picture, and the last row.
std::vector<int> rowsToCompare(const LiteralScene& scene, int padding) {
  return {127 - padding, 128 - padding, scene.image.formatHeight - 1};
}

void expectLiteralScene(const LiteralScene& scene) {
  const EngineFrame frame(scene);
  const LiteralComparison literal(scene, rowsToCompare(scene, frame.padding()));
  EXPECT_GT(literal.comparableShare(), 0.97);
  const EngineLines lines = frame.lines(formatBox(scene));
  for (const dvTileChoice choice : allChoices) {
    const double share = choice == dvTileChoice::Everything ? transformedShare : engineShare;
    EXPECT_LT(literal.worstDifference(frame, frame.make(lines, choice)), share)
        << "choice " << static_cast<int>(choice);
  }
}

class FrameAccuracyBySlices : public testing::TestWithParam<int> {};

TEST_P(FrameAccuracyBySlices, stagedDepths_areLiteral) {
  expectLiteralScene(stagedScene(36.0F, GetParam(), width, height));
}

TEST_P(FrameAccuracyBySlices, rampOfDepths_isLiteral) {
  expectLiteralScene(rampScene(24.0F, GetParam(), width, height));
}

INSTANTIATE_TEST_SUITE_P(Counts, FrameAccuracyBySlices, testing::Values(1, 2, 10, 256));

TEST(FrameAccuracy, largeUniformBlur_isLiteral) {
  expectLiteralScene(farScene(72.0F, width, height));
}

class FrameAccuracyOfOneSide : public testing::TestWithParam<int> {};

/// Things that stand apart in front of a far ground, so that either side leaves much uncovered.
LiteralScene thingsApart() {
  LiteralScene scene = farScene(24.0F, 300, 200);
  scene.settings.correctiveSlices = 3;
  for (int y = 0; y < 200; ++y) {
    for (int x = 0; x < 300; ++x) {
      const bool square = x > 20 && x < 70 && y > 30 && y < 90;
      const bool speck = x > 150 && x % 50 == 0 && y % 60 == 0;
      pixelAt(scene.image, 5, x, y) = square || speck ? 8.2F : 11.9F;
    }
  }
  return scene;
}

TEST_P(FrameAccuracyOfOneSide, thingsApart_areLiteralAndTheRestExactlyZero) {
  LiteralScene scene = thingsApart();
  scene.settings.focusOutput = GetParam();
  expectLiteralScene(scene);
}

TEST_P(FrameAccuracyOfOneSide, stagedDepths_areLiteral) {
  LiteralScene scene = stagedScene(30.0F, 3, 300, 220);
  scene.settings.focusOutput = GetParam();
  expectLiteralScene(scene);
}

INSTANTIATE_TEST_SUITE_P(FrontAndBack, FrameAccuracyOfOneSide, testing::Values(1, 2));

TEST(FrameAccuracy, frontOfAnEmptyPicture_isZeroEverywhere) {
  LiteralScene scene = farScene(40.0F, width, height);
  scene.settings.focusOutput = 1;
  const EngineFrame frame(scene);
  const EngineLines lines = frame.lines(formatBox(scene));
  for (const dvTileChoice choice : allChoices) {
    for (const auto& plane : frame.make(lines, choice)) {
      for (int y = 0; y < height; ++y)
        EXPECT_TRUE(
            std::all_of(plane.row(y), plane.row(y) + width, [](float v) { return v == 0; }));
    }
  }
}

TEST(FrameAccuracy, oneFrontPixelInAHugeEmptyPicture_isZeroButForItsKernel) {
  LiteralScene scene = farScene(24.0F, 300, 200);
  scene.settings.focusOutput = 1;
  pixelAt(scene.image, 5, 130, 100) = 8.2F;
  expectLiteralScene(scene);
  const EngineFrame frame(scene);
  const EngineLines lines = frame.lines(formatBox(scene));
  for (const dvTileChoice choice : allChoices) {
    const dvFramePlanes planes = frame.make(lines, choice);
    for (int y = 0; y < 200; ++y) {
      for (int x = 0; x < 300; ++x) {
        const bool near = std::abs(x - 130) <= 12 && std::abs(y - 100) <= 12;
        EXPECT_TRUE(near || planes[3].row(y)[x] == 0.0F) << x << ", " << y;
      }
    }
    EXPECT_NEAR(planes[3].row(100)[130], 1.0F, 1e-5F);
  }
}

TEST(FrameAccuracy, lightsOfHundredThousandBesideAThousandth_areLiteral) {
  LiteralScene scene = farScene(40.0F, width, height);
  Draw draw(9);
  for (int channel = 1; channel <= 3; ++channel) {
    for (float& value : scene.image.planes[channel])
      value = draw.chance(0.0005) ? 1e5F : 1e-3F;
  }
  expectLiteralScene(scene);
}

TEST(FrameAccuracy, lightOf1e20AmongLargeBlurs_isLiteralBesideItsReach) {
  // Large enough that kernels are summed by where their constant stretches end.
  LiteralScene scene = farScene(80.0F, width, height);
  for (int channel = 1; channel <= 3; ++channel)
    pixelAt(scene.image, channel, 60, 90) = 1e20F;
  expectLiteralScene(scene);
}

TEST(FrameAccuracy, halfHundredThousandHalfAThousandth_isLiteral) {
  expectLiteralScene(brightSide(1e5F, 1e-3F));
}

TEST(FrameAccuracy, brightWindowInADarkOrBlackPicture_isLiteral) {
  for (const float dark : {0.05F, 0.0F}) {
    LiteralScene scene = farScene(40.0F, 300, 300);
    for (int channel = 1; channel <= 3; ++channel) {
      for (int y = 0; y < 300; ++y) {
        for (int x = 0; x < 300; ++x) {
          const bool window = x >= 20 && x < 90 && y >= 30 && y < 100;
          pixelAt(scene.image, channel, x, y) *= window ? 50.0F : dark;
        }
      }
    }
    expectLiteralScene(scene);
  }
}

TEST(FrameAccuracy, oneChannelBrightTheOthersDim_isLiteral) {
  LiteralScene scene = farScene(40.0F, width, height);
  for (float& value : scene.image.planes[1])
    value *= 1e5F;
  for (float& value : scene.image.planes[3])
    value *= 1e-3F;
  expectLiteralScene(scene);
}

TEST(FrameAccuracy, blackTilesWithOneLight_areLiteral) {
  LiteralScene scene = farScene(40.0F, width, height);
  for (int channel = 1; channel <= 3; ++channel)
    scene.image.planes[channel] = constantPlane(scene.image.box, 0.0F);
  pixelAt(scene.image, 1, 130, 110) = 1e5F;
  pixelAt(scene.image, 2, 91, 92) = 300.0F;
  pixelAt(scene.image, 3, width - 1, height - 1) = 1e-3F;
  expectLiteralScene(scene);
}

TEST(FrameAccuracy, negativeValues_areLiteral) {
  LiteralScene scene = stagedScene(36.0F, 3, width, height);
  Draw draw(3);
  for (int channel = 1; channel <= 3; ++channel) {
    for (float& value : scene.image.planes[channel])
      value = draw.real(-2.0F, channel == 1 ? -1.0F : 2.0F);
  }
  pixelAt(scene.image, 2, 100, 100) = -1e4F;
  expectLiteralScene(scene);
}

/// A dark thing of that blur over the left of a sky that is blurred by 238 px.
LiteralScene darkBeforeASky(float blur, float sky) {
  LiteralScene scene = farScene(238.0F, 300, 10);
  scene.settings.maxKernelSize = 256;
  scene.settings.correctiveSlices = 3;
  for (int y = 0; y < 10; ++y) {
    for (int x = 0; x < 300; ++x) {
      const bool dark = x < 200;
      pixelAt(scene.image, 5, x, y) = dark ? 10.0F - 2.0F * blur / 238.0F : 12.0F;
      pixelAt(scene.image, 1, x, y) = dark ? 0.0F : sky;
      pixelAt(scene.image, 2, x, y) = dark ? 0.05F : sky;
      pixelAt(scene.image, 3, x, y) = dark ? 0.0F : 0.5F * sky;
    }
  }
  return scene;
}

TEST(FrameAccuracy, brightSkyAllButHiddenByADarkBlur_isLiteral) {
  // What is left of room for the sky is a difference of two weights, and the sky makes it large.
  for (const float blur : {60.0F, 100.0F, 200.0F}) {
    const LiteralScene scene = darkBeforeASky(blur, 20.0F);
    const EngineFrame frame(scene);
    const LiteralComparison literal(scene, {3});
    EXPECT_GT(literal.comparableShare(), 0.75) << blur;
    const EngineLines lines = frame.lines(formatBox(scene));
    for (const dvTileChoice choice : {dvTileChoice::Nothing, dvTileChoice::ByCost})
      EXPECT_LT(literal.worstDifference(frame, frame.make(lines, choice)), 2.0 * engineShare)
          << blur;
  }
}

/// NaN and infinities in the middle of tiles, at their borders and in the corners of the picture.
void addSpecials(LiteralPicture& picture) {
  pixelAt(picture, 1, 92, 92) = nan;
  pixelAt(picture, 2, 60, 110) = infinity;
  pixelAt(picture, 2, 70, 112) = -infinity;
  pixelAt(picture, 3, width - 1, height - 1) = -infinity;
  pixelAt(picture, 1, 0, 0) = nan;
  pixelAt(picture, 5, 200, 100) = nan;
  pixelAt(picture, 5, 210, 60) = infinity;
}

TEST(FrameAccuracy, nanAndInfinityBesideStages_areLiteral) {
  LiteralScene scene = stagedScene(30.0F, 4, width, height);
  addSpecials(scene.image);
  expectLiteralScene(scene);
}

TEST(FrameAccuracy, nanAndInfinityBesideLights_areLiteral) {
  LiteralScene scene = farScene(30.0F, width, height);
  pixelAt(scene.image, 1, 93, 93) = 1e5F;
  pixelAt(scene.image, 2, 61, 110) = -1e5F;
  addSpecials(scene.image);
  expectLiteralScene(scene);
}

TEST(FrameAccuracy, nanAndInfinityInOnePass_areLiteral) {
  for (const int side : {1, 2}) {
    LiteralScene scene = stagedScene(30.0F, 2, width, height);
    scene.settings.focusOutput = side;
    addSpecials(scene.image);
    expectLiteralScene(scene);
  }
}

TEST(FrameAccuracy, mattesBloomAndShift_areLiteral) {
  LiteralScene scene = rampScene(30.0F, 2, width, height);
  addMattesAndShift(scene);
  expectLiteralScene(scene);
}

TEST(FrameAccuracy, mattesWithNanAndInfinity_areLiteral) {
  LiteralScene scene = stagedScene(24.0F, 2, width, height);
  addMattesAndShift(scene);
  addSpecials(scene.image);
  addSpecials(*scene.mattes);
  expectLiteralScene(scene);
}

TEST(FrameAccuracy, chromaticShiftOfEitherSign_isLiteral) {
  for (const float amount : {9.0F, -9.0F}) {
    LiteralScene scene = stagedScene(30.0F, 3, width, height);
    scene.settings.chromaticAberration = amount;
    scene.settings.chromaticOffset[0] = 1.4F;
    expectLiteralScene(scene);
  }
}

TEST(FrameAccuracy, kernelsOfEveryShape_areLiteral) {
  LiteralScene scene = farScene(30.0F, width, height);
  LiteralSettings& settings = scene.settings;
  settings.kernelType = 2;
  expectLiteralScene(scene);
  settings.softness = 0.0F;
  expectLiteralScene(scene);
  settings.softness = 1.0F;
  settings.aspectRatio = 1.7F;
  settings.sphericalAberration = -0.8F;
  expectLiteralScene(scene);
}

}  // namespace
}  // namespace drevin::test

/// Frames of several tiles through the node, against the literal yardsticks in double.

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "engine/FrameScenes.h"
#include "node/DeepBench.h"
#include "support/Agreement.h"
#include "support/Draw.h"
#include "support/PlainScene.h"

namespace drevin::test {
namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr int width = 200;
constexpr int height = 150;
/// What a rendered picture may differ by, in parts of what is allowed.
constexpr double share = 0.25;
/// Around a border between tiles, and the edges of the picture.
constexpr int rows[] = {0, 80, 111, 112, 118, height - 1};

/// The largest difference of a row's well-conditioned values, in parts of what is allowed.
double worstDifference(const LiteralRow& expected, const embedded::Image& image, int y) {
  double worst = 0.0;
  for (const auto& [channel, values] : expected) {
    for (std::size_t x = 0; x < values.size(); ++x) {
      if (!isComparable(values[x])) continue;
      const float value = renderedAt(image, channel, static_cast<int>(x), y);
      worst = std::max(worst, differenceInParts(value, values[x].value));
    }
  }
  return worst;
}

void expectLiteralFrame(const LiteralScene& scene) {
  NodeBench bench(scene);
  const embedded::RenderResult result = bench.render();
  ASSERT_EQ(result.status, embedded::RenderStatus::Done);
  ASSERT_EQ(result.image.box, DD::Image::Box(0, 0, width, height));
  const LiteralFrame literal(scene);
  for (const int y : rows)
    EXPECT_LT(worstDifference(literal.row(y, 0, width), result.image, y), share) << "row " << y;
}

TEST(WholeFrames, uniformBlurWithLights_isLiteral) {
  expectLiteralFrame(farScene(36.0F, width, height));
}

class WholeFramesBySlices : public testing::TestWithParam<int> {};

TEST_P(WholeFramesBySlices, stagedDepths_areLiteral) {
  expectLiteralFrame(stagedScene(30.0F, GetParam(), width, height));
}

INSTANTIATE_TEST_SUITE_P(Counts, WholeFramesBySlices, testing::Values(1, 2, 10, 256));

TEST(WholeFrames, mattesBloomAndShift_areLiteral) {
  LiteralScene scene = stagedScene(24.0F, 2, width, height);
  addMattesAndShift(scene);
  expectLiteralFrame(scene);
}

TEST(WholeFrames, eitherSideOfTheFocusAlone_isLiteral) {
  for (const int side : {1, 2}) {
    LiteralScene scene = stagedScene(30.0F, 3, width, height);
    scene.settings.focusOutput = side;
    expectLiteralFrame(scene);
  }
}

TEST(WholeFrames, extremeAndUndefinedValues_areLiteral) {
  LiteralScene scene = stagedScene(30.0F, 3, width, height);
  for (float& value : scene.image.planes[2])
    value *= 1e-3F;
  pixelAt(scene.image, 2, 100, 112) = 1e5F;
  pixelAt(scene.image, 1, 40, 110) = nan;
  pixelAt(scene.image, 3, 160, 20) = -infinity;
  pixelAt(scene.image, 5, 20, 60) = nan;
  pixelAt(scene.image, 5, 180, 118) = infinity;
  expectLiteralFrame(scene);
}

/// A wall behind, panes before it and half-covering things in front; holes without any sample, one
/// larger than a kernel reaches. Colours are noise with some lights.
LiteralDeepScene deepScene() {
  LiteralDeepScene scene;
  scene.flat = stagedScene(26.0F, 3, width, height);
  scene.deep = evenDeepImage(scene.flat.image.box, {});
  Draw draw(15);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const bool hole = (x > 60 && x < 140 && y > 30 && y < 125) || (x / 9 % 5 == 3);
      if (hole) continue;
      const float light = draw.chance(0.002) ? 200.0F : draw.real(0.0F, 1.5F);
      LiteralDeepPixel& pixel = deepPixelAt(scene.deep, x, y);
      if (y / 12 % 3 == 1) pixel.push_back(redSample(8.2F, 9.1F, draw.real(0.0F, 0.5F), 0.4F));
      if (x / 25 % 2 == 1) pixel.push_back(redPoint(9.6F, draw.real(0.0F, 0.5F), 0.6F));
      pixel.push_back(redPoint(11.9F, light, 1.0F));
    }
  }
  return scene;
}

void expectLiteralDeepFrame(const LiteralDeepScene& scene, bool apart) {
  DeepBench bench(scene);
  bench.node().set("integrateFrontAndBackSeperately", apart ? 1.0 : 0.0);
  const embedded::RenderResult result = bench.render();
  ASSERT_EQ(result.status, embedded::RenderStatus::Done);
  const LiteralDeepNode literal(scene, false);
  for (const int y : rows) {
    const LiteralRow expected = literal.row(y, 0, width, apart);
    EXPECT_LT(worstDifference(expected, result.image, y), share) << "row " << y;
  }
}

TEST(WholeFrames, deepWithHoles_isLiteral) {
  const OrderGuard order(false);
  const LiteralDeepScene scene = deepScene();
  expectLiteralDeepFrame(scene, false);
  expectLiteralDeepFrame(scene, true);
}

TEST(WholeFrames, deepHoles_areBlackAndTransparentWhereNothingReaches) {
  const LiteralDeepScene scene = deepScene();
  DeepBench bench(scene);
  const embedded::RenderResult result = bench.render();
  const int reach = bench.drevin().padding();
  ASSERT_LT(reach, 30);
  for (int y = 31 + reach; y < 125 - reach; ++y) {
    for (int x = 61 + reach; x < 140 - reach; ++x) {
      for (int channel = 1; channel <= 4; ++channel)
        EXPECT_EQ(renderedAt(result.image, channel, x, y), 0.0F) << x << ", " << y;
    }
  }
}

TEST(WholeFrames, deepWithShift_isLiteral) {
  const OrderGuard order(false);
  LiteralDeepScene scene = deepScene();
  scene.flat.settings.chromaticAberration = -8.0F;
  scene.flat.settings.chromaticOffset[0] = 1.6F;
  expectLiteralDeepFrame(scene, false);
}

}  // namespace
}  // namespace drevin::test

#include "frames/PlainLens.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "frames/FrameCase.h"
#include "support/LiteralBlur.h"

namespace drevin::bench {
namespace {

void expectTheLiteralBlur(const test::LiteralSettings& settings) {
  const test::LiteralLens lens = test::literalLens(settings, 1920, 1080);
  const PlainLens plain(settings, lens);
  for (int i = 0; i <= 400; ++i) {
    const float depth = 0.05F * static_cast<float>(i);
    const test::LiteralBlur expected = test::literalBlur(depth, settings, lens, 256);
    const PlainBlur blur = plain.blurOf(depth);
    EXPECT_NEAR(blur.diameter, std::max(1.0F, expected.coc), 1e-4F) << depth;
    EXPECT_EQ(blur.slice, test::literalSlice(expected.depth, settings, lens)) << depth;
  }
}

TEST(PlainLens, depthsOnBothSides_areThoseOfTheLiteralLens) {
  expectTheLiteralBlur(frameCase("scene", 100.0, {1920, 1080}).settings);
}

TEST(PlainLens, unequalSides_areThoseOfTheLiteralLens) {
  test::LiteralSettings settings = frameCase("scene", 100.0, {1920, 1080}).settings;
  settings.frontMultiplier = 0.5F;
  settings.backMultiplier = 2.0F;
  expectTheLiteralBlur(settings);
}

TEST(PlainLens, oneSlice_takesEveryDepth) {
  test::LiteralSettings settings = frameCase("scene", 8.0, {1920, 1080}).settings;
  settings.correctiveSlices = 1;
  expectTheLiteralBlur(settings);
}

TEST(PlainLens, anotherLens_isRefused) {
  test::LiteralSettings settings = frameCase("scene", 8.0, {1920, 1080}).settings;
  settings.realWorldLens = true;
  EXPECT_THROW(PlainLens(settings, test::literalLens(settings, 1920, 1080)), std::invalid_argument);
}

}  // namespace
}  // namespace drevin::bench

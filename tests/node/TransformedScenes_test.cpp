#include "node/TransformedScenes.h"

#include <gtest/gtest.h>

#include "node/DeepBench.h"

namespace drevin::test {
namespace {

TEST(TransformedScenes, largeBlurs_goThroughTransforms) {
  EXPECT_TRUE(showsTransforms(transformedScene()));
  EXPECT_TRUE(showsTransforms(transformedEffects()));
  EXPECT_TRUE(showsTransforms(transformedDeepScene()));
}

TEST(TransformedScenes, smallBlurs_doNot) {
  EXPECT_FALSE(showsTransforms(transformedScene(directBlur)));
  EXPECT_FALSE(showsTransforms(transformedEffects(directBlur)));
  EXPECT_FALSE(showsTransforms(transformedDeepScene(directBlur)));
}

/// The hole is wider than the blur, so that stretches of it are made anew.
TEST(TransformedScenes, middleOfTheDeepHole_isCoveredByNothing) {
  DeepBench deep(transformedDeepScene());
  const embedded::RenderResult result = deep.render();
  ASSERT_LT(deep.drevin().padding(), 29);
  for (int channel = 1; channel <= 4; ++channel)
    EXPECT_EQ(renderedAt(result.image, channel, 120, 70), 0.0F) << channel;
}

}  // namespace
}  // namespace drevin::test

#include <gtest/gtest.h>

#include <cmath>

#include "node/DeepStandIns.h"
#include "node/NodeBench.h"
#include "support/PlainScene.h"

namespace drevin::test {
namespace {

using DD::Image::Box;

TEST(Validation, lensValues_areDerivedFromTheControls) {
  LiteralScene scene = plainScene(24, 18, 10.0F);
  scene.settings.realWorldLens = true;
  scene.settings.focalLength = 50.0F;
  scene.settings.fStop = 2.0F;
  scene.settings.worldScale = 3;
  scene.settings.worldScaleMultiplier = 2.0F;
  NodeBench bench(scene);
  bench.validate();
  const DrevinSettings& s = bench.settings();
  EXPECT_EQ(s.halfFocusRegion, 2.0F);
  EXPECT_EQ(s.invHalfFocusRegion, 0.5F);
  EXPECT_EQ(s.focusFar, 12.0F);
  EXPECT_EQ(s.focusNear, 8.0F);
  EXPECT_EQ(s.focusRange, 4.0F);
  EXPECT_FLOAT_EQ(s.filmBackScale, std::sqrt(24.0F * 18.0F) / std::sqrt(22.0F * 16.0F));
  EXPECT_FLOAT_EQ(s.lensCoefficient, 50.0F / (10.0F * 25.4F * 2.0F - 50.0F) * 50.0F / 2.0F);
  EXPECT_EQ(s.uiContextScale, 1.0F);
}

TEST(Validation, interfaceScale_isTheProxyScale) {
  NodeBench bench(plainScene(8, 6, 10.0F));
  bench.options.proxyScale = 0.25F;
  bench.open();
  EXPECT_EQ(bench.settings().uiContextScale, 0.25F);
}

TEST(Validation, notForReal_leavesTheDerivedValues) {
  NodeBench bench(plainScene(8, 6, 10.0F));
  bench.validate();
  bench.set("focalPlane", 50.0);
  bench.node().storeKnobs();
  bench.drevin().invalidate();
  bench.drevin().validate(false);
  EXPECT_EQ(bench.settings().focusFar, 12.0F);
  bench.drevin().validate(true);
  EXPECT_EQ(bench.settings().focusFar, 52.0F);
}

std::vector<float> boundariesFor(int slices, double focalPlane, double regionSize) {
  NodeBench bench(plainScene(8, 6, 10.0F));
  bench.set("correctiveSlices", slices);
  bench.set("focalPlane", focalPlane);
  bench.set("focusRegionSize", regionSize);
  bench.validate();
  return bench.drevin().sliceBoundaries();
}

TEST(Validation, oneSlice_hasNoBoundaries) {
  EXPECT_TRUE(boundariesFor(1, 10.0, 4.0).empty());
}

TEST(Validation, twoSlices_startAtZeroAndTheFocalPlane) {
  EXPECT_EQ(boundariesFor(2, 10.0, 4.0), (std::vector<float>{0.0F, 10.0F}));
}

TEST(Validation, focusRegionBeforeTheLens_hasASliceNearOfZero) {
  // From 0 to 3 in thirds, where -1 to 3 would give 0.333 and 1.667.
  EXPECT_EQ(boundariesFor(3, 1.0, 4.0), (std::vector<float>{0.0F, 1.0F, 2.0F}));
}

TEST(Validation, overriddenVolume_isTakenInEitherOrder) {
  for (const bool swapped : {false, true}) {
    NodeBench bench(plainScene(8, 6, 10.0F));
    bench.set("correctiveSlices", 4);
    bench.set("overrideNearAndFarForSlices", 1);
    bench.set("depthSlicesNearAndFar",
              swapped ? std::vector<double>{10.0, -2.0} : std::vector<double>{-2.0, 10.0});
    bench.validate();
    EXPECT_EQ(bench.drevin().sliceBoundaries(), (std::vector<float>{0.0F, 1.0F, 4.0F, 7.0F}));
  }
}

TEST(Validation, revalidated_rebuildsTheSlices) {
  NodeBench bench(plainScene(8, 6, 10.0F));
  bench.set("correctiveSlices", 5);
  bench.validate();
  EXPECT_EQ(bench.drevin().sliceBoundaries().size(), 5U);
  bench.set("correctiveSlices", 3);
  bench.validate();
  EXPECT_EQ(bench.drevin().sliceBoundaries().size(), 3U);
}

TEST(Validation, kernelSizeAndPadding_comeFromTheMaximum) {
  const int expected[][2] = {{256, 128}, {255, 127}, {1, 0}, {2, 1}, {7, 3}};
  NodeBench bench(plainScene(8, 6, 10.0F));
  for (const auto& [size, padding] : expected) {
    bench.set("max_kernelsize", size);
    bench.validate();
    EXPECT_EQ(bench.drevin().kernelSize(), size);
    EXPECT_EQ(bench.drevin().padding(), padding) << size;
  }
}

TEST(Validation, kernels_areEmptied) {
  NodeBench bench(plainScene(8, 6, 12.0F));
  bench.open();
  EXPECT_FALSE(bench.drevin().kernelBank().empty());
  EXPECT_GT(bench.drevin().heroKernel().width, 0);
  bench.validate();
  EXPECT_TRUE(bench.drevin().kernelBank().empty());
  EXPECT_EQ(bench.drevin().heroKernel().width, 0);
  EXPECT_EQ(bench.drevin().heroKernel().height, 0);
  EXPECT_EQ(bench.drevin().heroKernel().plane(1), nullptr);
}

TEST(Validation, boundingBox_isTheImagesUnlessExpanded) {
  LiteralScene scene = plainScene(8, 6, 12.0F);
  NodeBench bench(scene);
  bench.validate();
  EXPECT_TRUE(bench.drevin().info() == Box(0, 0, 8, 6));
  bench.set("expandBBoxToMaxKernelSize", 1);
  bench.set("max_kernelsize", 256);
  bench.validate();
  EXPECT_TRUE(bench.drevin().info() == Box(-128, -128, 8 + 127, 6 + 127));
  bench.set("max_kernelsize", 5);
  bench.validate();
  EXPECT_TRUE(bench.drevin().info() == Box(-2, -2, 8 + 2, 6 + 2));
}

TEST(Validation, inputKernelWithoutAnImage_isAnError) {
  NodeBench bench(plainScene(8, 6, 12.0F));
  bench.set("kernelType", 0);
  const embedded::RenderResult result = bench.render();
  EXPECT_EQ(result.status, embedded::RenderStatus::Error);
  ASSERT_EQ(result.messages.size(), 1U);
  EXPECT_EQ(result.messages[0].severity, embedded::Severity::Error);
  EXPECT_EQ(result.messages[0].text, "No input kernel connected!");
}

TEST(Validation, inputKernelWithAnImage_isNoError) {
  LiteralScene scene = plainScene(8, 6, 12.0F);
  scene.kernel = scene.image;
  scene.settings.kernelType = 0;
  NodeBench bench(scene);
  const embedded::RenderResult result = bench.render();
  EXPECT_EQ(result.status, embedded::RenderStatus::Done);
  EXPECT_TRUE(result.messages.empty());
}

TEST(Validation, matteChannels_areCollectedAndNeverEmptied) {
  NodeBench bench(plainScene(8, 6, 12.0F));
  bench.connectPicture(dvInput::mattes, plainScene(8, 6, 12.0F).image);
  bench.validate();
  EXPECT_TRUE(bench.drevin().matteChannels().empty());
  bench.set("bloomMatteChannel", 1);
  bench.set("chromicAberrationMatteChannel", 3);
  bench.validate();
  DD::Image::ChannelSet expected(DD::Image::Chan_Red);
  expected += DD::Image::Chan_Blue;
  EXPECT_TRUE(bench.drevin().matteChannels() == expected);
  bench.set("bloomMatteChannel", 0);
  bench.set("defocusMatteChannel", 2);
  bench.validate();
  expected += DD::Image::Chan_Green;
  EXPECT_TRUE(bench.drevin().matteChannels() == expected);
}

TEST(Validation, matteChannelsWithoutMattes_areIgnored) {
  NodeBench bench(plainScene(8, 6, 12.0F));
  bench.set("bloomMatteChannel", 1);
  bench.validate();
  EXPECT_TRUE(bench.drevin().matteChannels().empty());
}

TEST(Validation, deepOperator_isValidatedForRealAndNoted) {
  NodeBench bench(plainScene(8, 6, 12.0F));
  DeepStandIn deep(Box(0, 0, 8, 6), DD::Image::Mask_Deep);
  bench.validate();
  EXPECT_FALSE(bench.settings().deepInput);
  EXPECT_TRUE(bench.connect(dvInput::deep, &deep));
  bench.node().storeKnobs();
  bench.drevin().invalidate();
  bench.drevin().validate(false);
  EXPECT_TRUE(bench.settings().deepInput);
  EXPECT_GE(deep.validations, 1);
  EXPECT_TRUE(deep.forReal);
  EXPECT_TRUE(bench.connect(dvInput::deep, nullptr));
  bench.validate();
  EXPECT_FALSE(bench.settings().deepInput);
}

TEST(Validation, cacheFlag_isHandedToTheDeepOperator) {
  for (const bool flag : {false, true}) {
    NodeBench bench(plainScene(8, 6, 12.0F));
    DeepStandIn deep(Box(0, 0, 8, 6), DD::Image::Mask_Deep);
    deep.cached(!flag);
    EXPECT_TRUE(bench.connect(dvInput::deep, &deep));
    bench.drevin().cached(flag);
    bench.validate();
    EXPECT_EQ(deep.cached(), flag);
    bench.connect(dvInput::deep, nullptr);
  }
}

}  // namespace
}  // namespace drevin::test

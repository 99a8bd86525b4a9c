#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>

#include "node/DeepStandIns.h"
#include "node/NodeBench.h"
#include "support/Draw.h"
#include "support/PlainScene.h"

namespace drevin::test {
namespace {

using DD::Image::Chan_Red;

float pixel(const embedded::RenderResult& result, int channel, int x, int y) {
  const embedded::Image& image = result.image;
  const int at = (y - image.box.y()) * image.box.w() + (x - image.box.x());
  return (*image.planes.at(hostChannel(channel)))[static_cast<std::size_t>(at)];
}

/// Colours at random, in front of focus on the left, on the plane in the middle, behind to the
/// right.
LiteralScene threeDepths() {
  LiteralScene scene = plainScene(12, 6, 10.0F);
  scene.settings.multiplier = 6.0F;
  Draw draw(17);
  for (int y = 0; y < 6; ++y) {
    for (int x = 0; x < 12; ++x) {
      pixelAt(scene.image, 5, x, y) = x < 4 ? 9.0F : (x < 8 ? 10.0F : 11.0F);
      for (int channel = 1; channel <= 4; ++channel) {
        pixelAt(scene.image, channel, x, y) = draw.real(0.0F, 2.0F);
      }
    }
  }
  return scene;
}

embedded::RenderResult renderAs(LiteralScene scene, int outputType) {
  scene.settings.outputType = outputType;
  NodeBench bench(scene);
  return bench.render();
}

TEST(FocalDistanceOutput, sidesOfTheFocalPlane_areTheirColours) {
  LiteralScene scene = threeDepths();
  scene.settings.normalizeVisualization = false;
  const embedded::RenderResult result = renderAs(scene, 2);
  EXPECT_EQ(pixel(result, 1, 5, 2), 1.0F);
  EXPECT_EQ(pixel(result, 2, 5, 2), 0.0F);
  EXPECT_EQ(pixel(result, 3, 5, 2), 0.0F);
  EXPECT_EQ(pixel(result, 2, 1, 2), 3.0F);
  EXPECT_EQ(pixel(result, 3, 1, 2), 0.0F);
  EXPECT_EQ(pixel(result, 3, 9, 2), 3.0F);
  EXPECT_EQ(pixel(result, 1, 9, 2), 0.0F);
}

TEST(FocalDistanceOutput, normalised_isTheShareOfTheMaximumKernelSize) {
  LiteralScene scene = threeDepths();
  scene.settings.multiplier = 15.0F;
  scene.settings.maxKernelSize = 15;
  const embedded::RenderResult result = renderAs(scene, 2);
  EXPECT_EQ(pixel(result, 1, 1, 2), 0.0F);
  EXPECT_EQ(pixel(result, 2, 1, 2), 0.5F);
  EXPECT_EQ(pixel(result, 3, 1, 2), 0.0F);
}

TEST(FocusMatteOutput, everyPixel_isExactlyOneOfFrontAndBack) {
  LiteralScene scene = threeDepths();
  pixelAt(scene.image, 5, 0, 0) = std::nanf("");
  const embedded::RenderResult result = renderAs(scene, 4);
  for (int x = 0; x < 12; ++x) {
    EXPECT_EQ(pixel(result, 1, x, 0), 0.0F);
    const bool front = x > 0 && x < 4;
    EXPECT_EQ(pixel(result, 2, x, 0), front ? 1.0F : 0.0F) << x;
    EXPECT_EQ(pixel(result, 3, x, 0), front ? 0.0F : 1.0F) << x;
  }
}

TEST(DepthViews, alphaAlone_isTheInputs) {
  for (const int type : {2, 4}) {
    LiteralScene scene = threeDepths();
    scene.channels = {4};
    const embedded::RenderResult result = renderAs(scene, type);
    for (int x = 0; x < 12; ++x) {
      EXPECT_EQ(pixel(result, 4, x, 3), scene.image.at(x, 3, 4));
    }
  }
}

TEST(FilterShapeOutput, wideFormat_hasTheApertureAtLeftAndBlackAtRight) {
  LiteralScene scene = plainScene(20, 8, 10.0F);
  scene.settings.softness = 1.0F;
  const embedded::RenderResult result = renderAs(scene, 3);
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 20; ++x) {
      const float dx = static_cast<float>(x) + 0.5F - 4.0F;
      const float dy = static_cast<float>(y) + 0.5F - 4.0F;
      const float expected = x < 8 ? std::max(0.0F, 1.0F - (dx * dx + dy * dy) / 16.0F) : 0.0F;
      EXPECT_NEAR(pixel(result, 2, x, y), expected, 1e-6F);
    }
  }
}

TEST(FilterShapeOutput, highFormat_isBlackAboveTheAperture) {
  const embedded::RenderResult result = renderAs(plainScene(8, 20, 10.0F), 3);
  for (int y = 8; y < 20; ++y) {
    for (int x = 0; x < 8; ++x)
      EXPECT_EQ(pixel(result, 1, x, y), 0.0F);
  }
  EXPECT_EQ(pixel(result, 1, 4, 4), 1.0F);
}

TEST(FilterShapeOutput, channelThatIsNotProcessed_isBlack) {
  LiteralScene scene = plainScene(8, 8, 10.0F);
  scene.settings.bokehChannels = {1};
  const embedded::RenderResult result = renderAs(scene, 3);
  EXPECT_EQ(pixel(result, 1, 4, 4), 1.0F);
  for (int x = 0; x < 8; ++x) {
    EXPECT_EQ(pixel(result, 2, x, 4), 0.0F);
    EXPECT_EQ(pixel(result, 4, x, 4), 0.0F);
  }
}

TEST(FilterShapeOutput, usedRow_isClearedWhereNothingIsProcessed) {
  LiteralScene scene = plainScene(8, 8, 10.0F);
  scene.settings.bokehChannels = {1};
  scene.settings.outputType = 3;
  NodeBench bench(scene);
  const embedded::RenderSession session(bench.node(), bench.options);
  DD::Image::Row row(0, 8);
  float* green = row.writable(DD::Image::Chan_Green);
  for (int x = 0; x < 8; ++x)
    green[x] = 42.0F;
  bench.drevin().engine(4, 0, 8, DD::Image::Mask_RGBA, row);
  for (int x = 0; x < 8; ++x)
    EXPECT_EQ(row[DD::Image::Chan_Green][x], 0.0F);
}

TEST(FilterShapeOutput, boxBelowTheOrigin_isBlackThere) {
  LiteralScene scene = plainScene(8, 8, 10.0F);
  scene.image.box = {-3, -2, 5, 6};
  const embedded::RenderResult result = renderAs(scene, 3);
  for (int y = -2; y < 0; ++y) {
    for (int x = -3; x < 5; ++x)
      EXPECT_EQ(pixel(result, 1, x, y), 0.0F);
  }
  EXPECT_EQ(pixel(result, 1, -1, 4), 0.0F);
  EXPECT_EQ(pixel(result, 1, 4, 4), 1.0F);
}

TEST(DefocusedOutput, channelsThatAreNotProcessed_areTheInputs) {
  LiteralScene scene = threeDepths();
  scene.settings.bokehChannels = {1, 2};
  const embedded::RenderResult result = renderAs(scene, 0);
  bool blurred = false;
  for (int x = 0; x < 12; ++x) {
    EXPECT_EQ(pixel(result, 3, x, 3), scene.image.at(x, 3, 3));
    EXPECT_EQ(pixel(result, 4, x, 3), scene.image.at(x, 3, 4));
    blurred = blurred || pixel(result, 1, x, 3) != scene.image.at(x, 3, 1);
  }
  EXPECT_TRUE(blurred);
}

TEST(DefocusedOutput, pictureInFocus_comesBackUnchanged) {
  LiteralScene scene = threeDepths();
  scene.image.planes[5] = constantPlane(scene.image.box, 10.0F);
  const embedded::RenderResult result = renderAs(scene, 0);
  for (int y = 0; y < 6; ++y) {
    for (int x = 0; x < 12; ++x) {
      const float expected = scene.image.at(x, y, 1);
      EXPECT_NEAR(pixel(result, 1, x, y), expected, 1e-6F * expected);
    }
  }
}

TEST(DefocusedOutput, frontOnlyWithAllBehind_isBlack) {
  LiteralScene scene = threeDepths();
  scene.image.planes[5] = constantPlane(scene.image.box, 11.0F);
  scene.settings.focusOutput = 1;
  const embedded::RenderResult result = renderAs(scene, 0);
  for (int x = 0; x < 12; ++x)
    EXPECT_EQ(pixel(result, 1, x, 3), 0.0F);
}

TEST(DefocusedOutput, lensBloomUnderTheThreshold_isBlackWithItsAlpha) {
  LiteralScene scene = threeDepths();
  scene.settings.bloom = 1.0F;
  scene.settings.bloomThreshold = 5.0F;
  const embedded::RenderResult bloom = renderAs(scene, 1);
  const embedded::RenderResult whole = renderAs(scene, 0);
  for (int x = 0; x < 12; ++x) {
    EXPECT_EQ(pixel(bloom, 1, x, 3), 0.0F);
    EXPECT_EQ(pixel(bloom, 4, x, 3), pixel(whole, 4, x, 3));
  }
}

TEST(DefocusedOutput, matteTakenBack_isNotUsedAnyMore) {
  LiteralScene scene = threeDepths();
  scene.settings.bloom = 1.0F;
  scene.mattes = scene.image;
  NodeBench bench(scene);
  const embedded::RenderResult plain = bench.render();
  const char* const pickers[] = {"bloomMatteChannel", "defocusMatteChannel",
                                 "chromicAberrationMatteChannel"};
  for (const char* name : pickers)
    bench.set(name, 3);
  const embedded::RenderResult matted = bench.render();
  EXPECT_NE(*matted.image.planes.at(Chan_Red), *plain.image.planes.at(Chan_Red));
  for (const char* name : pickers)
    bench.set(name, 0);
  const embedded::RenderResult again = bench.render();
  EXPECT_EQ(*again.image.planes.at(Chan_Red), *plain.image.planes.at(Chan_Red));
}

TEST(DefocusedOutput, nothingConnected_isBlack) {
  NodeBench bench;
  bench.options.region = DD::Image::Box(0, 0, 6, 4);
  const embedded::RenderResult result = bench.render();
  ASSERT_EQ(result.status, embedded::RenderStatus::Done);
  for (const auto& entry : result.image.planes) {
    for (const float value : *entry.second)
      EXPECT_EQ(value, 0.0F);
  }
}

TEST(DeepInputConnected, filterShape_isTheSame) {
  const LiteralScene scene = threeDepths();
  const embedded::RenderResult flat = renderAs(scene, 3);
  LiteralScene deepScene = scene;
  deepScene.settings.outputType = 3;
  NodeBench bench(deepScene);
  DeepStandIn deep({0, 0, 12, 6}, DD::Image::Mask_Deep);
  ASSERT_TRUE(bench.connect(dvInput::deep, &deep));
  const embedded::RenderResult result = bench.render();
  EXPECT_EQ(*result.image.planes.at(Chan_Red), *flat.image.planes.at(Chan_Red));
  bench.connect(dvInput::deep, nullptr);
}

TEST(Aborted, node_leavesTheRowUntouched) {
  NodeBench bench(threeDepths());
  embedded::RenderSession session(bench.node(), bench.options);
  ASSERT_TRUE(session.ok());
  DD::Image::Row row(0, 12);
  float* red = row.writable(Chan_Red);
  for (int x = 0; x < 12; ++x)
    red[x] = 42.0F;
  embedded::requestAbort();
  bench.drevin().engine(2, 0, 12, DD::Image::Mask_RGBA, row);
  embedded::clearAbort();
  for (int x = 0; x < 12; ++x)
    EXPECT_EQ(row[Chan_Red][x], 42.0F);
}

TEST(Convole, throughTheNode_splatsTheProcessedChannelsAsTheImagingCodeDoes) {
  LiteralScene scene = threeDepths();
  scene.settings.bokehChannels = {1, 3};
  NodeBench bench(scene);
  bench.open();
  std::vector<float> sums(2 * 1024, 0.0F);
  std::vector<std::vector<float*>> colour(1, std::vector<float*>(1024, nullptr));
  std::vector<std::vector<float*>> weight(1, std::vector<float*>(1024, nullptr));
  for (const std::size_t c : {std::size_t{1}, std::size_t{2}, std::size_t{3}}) {
    colour[0][c] = &sums[c];
    weight[0][c] = &sums[1024 + c];
  }
  float values[5] = {0.0F, 2.0F, 3.0F, 4.0F, 5.0F};
  float one = 1.0F;
  bench.drevin().convole(0, 0, 0, 0, 1, 0, 0, 1.0F, 0, 0.5F, values, colour, weight,
                         DD::Image::Mask_RGB, one, one);
  EXPECT_FLOAT_EQ(sums[1], 1.0F);
  EXPECT_FLOAT_EQ(sums[1024 + 1], 0.5F);
  EXPECT_FLOAT_EQ(sums[3], 2.0F);
  EXPECT_EQ(sums[2], 0.0F);
  EXPECT_EQ(sums[1024 + 2], 0.0F);
}

TEST(GetPassValue, throughTheNode_readsItsOutputTypeAndKernelSize) {
  LiteralScene scene = threeDepths();
  scene.settings.outputType = 2;
  scene.settings.maxKernelSize = 30;
  NodeBench bench(scene);
  bench.validate();
  float out = 6.0F;
  bench.drevin().getPassValue(7.5F, 1, DD::Image::Chan_Green, &out);
  EXPECT_EQ(out, 0.25F);
  out = 6.0F;
  bench.drevin().getPassValue(7.5F, 1, DD::Image::Chan_Alpha, &out);
  EXPECT_EQ(out, 0.2F);
}

}  // namespace
}  // namespace drevin::test

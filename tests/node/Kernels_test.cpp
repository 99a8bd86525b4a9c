#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "DDImage/Thread.h"
#include "node/NodeBench.h"
#include "support/PlainScene.h"

namespace drevin::test {
namespace {

const float nan = std::nanf("");

/// A scene with everything at a blur of `coc` px.
LiteralScene blurredScene(float coc) {
  LiteralScene scene = plainScene(8, 6, 1000.0F);
  scene.settings.multiplier = coc;
  scene.settings.maxKernelSize = 256;
  return scene;
}

std::vector<int> sidesOf(const dvKernelBank& bank) {
  std::vector<int> sides;
  for (const dvChannelFloatBuffer& entry : bank)
    sides.push_back(entry.width);
  return sides;
}

TEST(OpenedNode, frameAtTheInfinityMarker_hasFiveKernelsAndAPaddingOfTwo) {
  LiteralScene scene = blurredScene(40.0F);
  scene.image.planes[5] = constantPlane(scene.image.box, std::numeric_limits<float>::infinity());
  NodeBench bench(scene);
  bench.open();
  EXPECT_EQ(sidesOf(bench.drevin().kernelBank()), (std::vector<int>{1, 1, 1, 3, 3}));
  EXPECT_EQ(bench.drevin().kernelSize(), 0);
  EXPECT_EQ(bench.drevin().padding(), 2);
}

TEST(OpenedNode, largestDiameterSevenAndEight_havePaddingFiveAndSix) {
  for (const int diameter : {7, 8}) {
    NodeBench bench(blurredScene(static_cast<float>(diameter)));
    bench.open();
    EXPECT_EQ(bench.drevin().kernelSize(), diameter);
    EXPECT_EQ(bench.drevin().padding(), diameter / 2 + 2);
    EXPECT_EQ(bench.drevin().kernelBank().size(), static_cast<std::size_t>(diameter + 5));
  }
}

TEST(OpenedNode, diameterAboveTheMaximum_warnsAndIsHeld) {
  LiteralScene scene = blurredScene(73.0F);
  scene.settings.maxKernelSize = 50;
  NodeBench bench(scene);
  const embedded::RenderResult result = bench.render();
  EXPECT_EQ(result.status, embedded::RenderStatus::Done);
  ASSERT_EQ(result.messages.size(), 1U);
  EXPECT_EQ(result.messages[0].severity, embedded::Severity::Warning);
  EXPECT_EQ(result.messages[0].text,
            "Max kernel size is less than the maximum coc in the result, you may want to consider "
            "increasing the max kernel size above 73.");
  bench.open();
  EXPECT_EQ(bench.drevin().kernelBank().size(), 55U);
  EXPECT_EQ(bench.drevin().padding(), 27);
}

TEST(OpenedNode, nonFiniteReciprocalDepth_countsAsAlmostAtTheLens) {
  LiteralScene scene = blurredScene(9.0F);
  scene.settings.depthStyle = 1;
  scene.image.planes[5] = constantPlane(scene.image.box, nan);
  NodeBench bench(scene);
  bench.open();
  EXPECT_EQ(bench.drevin().kernelSize(), 9);
}

TEST(OpenedNode, nonFiniteRealDepth_raisesNothing) {
  LiteralScene scene = blurredScene(9.0F);
  scene.image.planes[5] = constantPlane(scene.image.box, nan);
  NodeBench bench(scene);
  bench.open();
  EXPECT_EQ(bench.drevin().kernelSize(), 0);
}

TEST(OpenedNode, depthOutsideTheFormat_isNotScanned) {
  LiteralScene scene = plainScene(12, 6, 10.0F);
  scene.settings.multiplier = 30.0F;
  scene.image.formatWidth = 8;
  pixelAt(scene.image, 5, 10, 3) = 1000.0F;
  NodeBench bench(scene);
  bench.open();
  EXPECT_EQ(bench.drevin().kernelSize(), 0);
}

TEST(OpenedNode, depthViews_makeNoKernels) {
  for (const int type : {2, 4}) {
    LiteralScene scene = blurredScene(9.0F);
    scene.settings.outputType = type;
    NodeBench bench(scene);
    bench.open();
    EXPECT_TRUE(bench.drevin().kernelBank().empty());
    EXPECT_EQ(bench.drevin().heroKernel().width, 0);
    EXPECT_EQ(bench.drevin().kernelSize(), 256);
  }
}

TEST(OpenedNode, filterShape_makesTheApertureOnlyInTheFormatsSmallerSide) {
  LiteralScene scene = plainScene(1920, 1080, 1000.0F);
  scene.settings.outputType = 3;
  scene.settings.maxKernelSize = 5;
  scene.settings.bokehChannels = {1};
  NodeBench bench(scene);
  bench.options.channels = DD::Image::Mask_Red;
  bench.open();
  EXPECT_EQ(bench.drevin().heroKernel().width, 1080);
  EXPECT_EQ(bench.drevin().heroKernel().height, 1080);
  EXPECT_TRUE(bench.drevin().kernelBank().empty());
}

TEST(OpenedNode, maximumOfOne_hasAOnePixelAperture) {
  LiteralScene scene = blurredScene(1.0F);
  scene.settings.maxKernelSize = 1;
  const float expected[][2] = {{0.1F, 1.0F}, {1.0F, 1.0F}, {4.0F, 0.25F}};
  for (const auto& [softness, value] : expected) {
    scene.settings.softness = softness;
    NodeBench bench(scene);
    bench.open();
    ASSERT_EQ(bench.drevin().heroKernel().width, 1);
    EXPECT_FLOAT_EQ(bench.drevin().heroKernel().plane(1)[0], value) << softness;
  }
}

TEST(OpenedNode, evenMaximum_hasItsCentreIndexAtTheHalf) {
  NodeBench bench(blurredScene(3.0F));
  bench.open();
  EXPECT_EQ(bench.drevin().heroKernel().width, 256);
  EXPECT_EQ(bench.drevin().heroKernel().centre, 128);
}

/// A picture whose only channels are red, green and blue of one value each.
LiteralPicture aperturePicture(int side, float red, float green, float blue) {
  LiteralPicture picture = plainScene(side, side, 0.0F).image;
  picture.planes.clear();
  picture.planes[1] = constantPlane(picture.box, red);
  picture.planes[2] = constantPlane(picture.box, green);
  picture.planes[3] = constantPlane(picture.box, blue);
  return picture;
}

TEST(OpenedNode, smallKernelImage_showsItsBottomLeftCornerEnlarged) {
  LiteralScene scene = blurredScene(20.0F);
  scene.settings.kernelType = 0;
  scene.kernel = aperturePicture(64, 0.0F, 1.0F, 1.0F);
  for (int y = 0; y < 64; ++y) {
    for (int x = 0; x < 64; ++x) {
      pixelAt(*scene.kernel, 1, x, y) = x >= 18 || y >= 18 ? 100.0F : 0.01F * static_cast<float>(x);
    }
  }
  NodeBench bench(scene);
  bench.open();
  const dvChannelFloatBuffer& hero = bench.drevin().heroKernel();
  ASSERT_EQ(hero.width, 64);
  // Column 40 lies at 40.5 / 4 = 10.125 of the image's 16 x 16 corner.
  EXPECT_NEAR(hero.plane(1)[30 * 64 + 40], 0.10125F, 1e-5F);
  for (int i = 0; i < 61 * 64; ++i) {
    if (i % 64 < 61) {
      ASSERT_LT(hero.plane(1)[i], 1.0F);
    }
  }
}

TEST(OpenedNode, allZeroKernelImage_leavesTheBankZero) {
  LiteralScene scene = blurredScene(5.0F);
  scene.settings.kernelType = 0;
  scene.kernel = aperturePicture(9, 0.0F, 0.0F, 0.0F);
  NodeBench bench(scene);
  bench.open();
  for (const dvChannelFloatBuffer& entry : bench.drevin().kernelBank()) {
    for (int i = 0; i < entry.count; ++i)
      EXPECT_EQ(entry.plane(1)[i], 0.0F);
  }
}

TEST(OpenedNode, channelOfNegativeSum_keepsItsValuesWhileOthersAreScaled) {
  LiteralScene scene = blurredScene(5.0F);
  scene.settings.kernelType = 0;
  scene.settings.maxKernelSize = 9;
  scene.kernel = aperturePicture(9, -2.0F, 4.0F, 2.0F);
  NodeBench bench(scene);
  bench.open();
  const dvChannelFloatBuffer& point = bench.drevin().kernelBank()[1];
  EXPECT_FLOAT_EQ(point.plane(1)[0], -2.0F);
  EXPECT_FLOAT_EQ(point.plane(2)[0], 1.0F);
  EXPECT_FLOAT_EQ(point.plane(3)[0], 0.5F);
}

TEST(OpenedNode, firstThreeKernels_areTheSamePointOfFullWeight) {
  NodeBench bench(blurredScene(5.0F));
  bench.open();
  for (std::size_t i = 0; i < 3; ++i) {
    const dvChannelFloatBuffer& entry = bench.drevin().kernelBank()[i];
    ASSERT_EQ(entry.width, 1);
    EXPECT_FLOAT_EQ(entry.plane(1)[0], 1.0F);
  }
}

TEST(OpenedNode, kernelAsLargeAsTheAperture_hasAZeroFirstRowAndColumnOnly) {
  LiteralScene scene = blurredScene(255.0F);
  scene.settings.maxKernelSize = 255;
  scene.settings.bokehChannels = {1};
  scene.settings.kernelType = 0;
  scene.kernel = aperturePicture(255, 1.0F, 1.0F, 1.0F);
  NodeBench bench(scene);
  bench.open();
  const dvChannelFloatBuffer& entry = bench.drevin().kernelBank()[255];
  ASSERT_EQ(entry.width, 255);
  for (int i = 0; i < 255; ++i) {
    EXPECT_EQ(entry.plane(1)[i], 0.0F);
    EXPECT_EQ(entry.plane(1)[i * 255], 0.0F);
  }
  for (int i = 1; i < 255; ++i) {
    EXPECT_GT(entry.plane(1)[254 * 255 + i], 0.0F);
    EXPECT_GT(entry.plane(1)[i * 255 + 254], 0.0F);
  }
}

TEST(OpenedNode, kernels_haveThePlanesOfTheProcessedChannelsOnly) {
  LiteralScene scene = blurredScene(5.0F);
  scene.settings.bokehChannels = {1, 4};
  NodeBench bench(scene);
  bench.open();
  for (const dvChannelFloatBuffer& entry : bench.drevin().kernelBank()) {
    EXPECT_NE(entry.plane(1), nullptr);
    EXPECT_EQ(entry.plane(2), nullptr);
    EXPECT_NE(entry.plane(4), nullptr);
  }
}

TEST(OpenedNode, anyNumberOfProcessors_buildsTheSameBank) {
  const unsigned processors = DD::Image::Thread::numCPUs;
  std::vector<std::vector<float>> expected;
  for (const unsigned count : {1U, 2U, 5U, 40U}) {
    embedded::setThreadCount(count);
    NodeBench bench(blurredScene(21.5F));
    bench.open();
    std::vector<std::vector<float>> planes;
    for (const dvChannelFloatBuffer& entry : bench.drevin().kernelBank()) {
      planes.push_back(entry.channels[1]);
    }
    if (expected.empty()) expected = planes;
    EXPECT_EQ(planes, expected) << count;
  }
  embedded::setThreadCount(processors);
}

TEST(OpenedNode, openedAgain_keepsNothingOfTheFrameBefore) {
  NodeBench bench(blurredScene(21.0F));
  bench.open();
  EXPECT_EQ(bench.drevin().kernelBank().size(), 26U);
  bench.set("multiplier", 4.0);
  bench.open();
  EXPECT_EQ(bench.drevin().kernelBank().size(), 9U);
  EXPECT_EQ(bench.drevin().padding(), 4);
}

}  // namespace
}  // namespace drevin::test

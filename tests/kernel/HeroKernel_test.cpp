#include "kernel/HeroKernel.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace drevin {
namespace {

const std::vector<int> rgba{1, 2, 3, 4};

dvHeroRequest request(dvKernelType type, int maxKernelSize) {
  dvHeroRequest wanted;
  wanted.type = type;
  wanted.maxKernelSize = maxKernelSize;
  return wanted;
}

dvChannelFloatBuffer shapeHero(const dvApertureShape& shape, int side) {
  dvChannelFloatBuffer hero;
  makeHeroKernel(hero, shape, sizeHeroKernel(request(shape.type, side)), rgba, {});
  return hero;
}

dvApertureShape softDisc(float softness) {
  dvApertureShape shape;
  shape.softness = softness;
  return shape;
}

// Tells where it was read: column + 1000 * row, negative in channels other than red.
dvKernelInput coordinateInput() {
  dvKernelInput input;
  input.channels = {1};
  input.read = [](int column, int row, int channel) {
    return static_cast<float>(column + 1000 * row) * (channel == 1 ? 1.0F : -1.0F);
  };
  return input;
}

TEST(HeroKernel, maxKernelSizeOne_isOneAtFullTransmission) {
  EXPECT_EQ(*shapeHero(softDisc(0.1F), 1).plane(1), 1.0F);
  EXPECT_EQ(*shapeHero(softDisc(1.0F), 1).plane(1), 1.0F);
}

TEST(HeroKernel, maxKernelSizeOneWithSoftnessAboveOne_isItsReciprocal) {
  EXPECT_EQ(*shapeHero(softDisc(2.0F), 1).plane(1), 0.5F);
  EXPECT_EQ(*shapeHero(softDisc(8.0F), 1).plane(1), 0.125F);
}

TEST(HeroKernel, maxKernelSizeOneWithSphericalAberration_isLessByItsTerm) {
  dvApertureShape shape = softDisc(0.1F);
  shape.sphericalAberration = 0.25F;
  EXPECT_EQ(*shapeHero(shape, 1).plane(1), 0.75F);
  shape.sphericalAberration = -0.25F;
  EXPECT_EQ(*shapeHero(shape, 1).plane(1), 1.0F);  // 1 - C is 0 at the centre
}

TEST(HeroKernel, evenSide_isCentredBetweenPixels) {
  const dvChannelFloatBuffer hero = shapeHero(softDisc(1.0F), 256);
  EXPECT_EQ(hero.width, 256);
  EXPECT_EQ(hero.centre, 128);
  const float* plane = hero.plane(1);
  const float expected = 1.0F - 0.5F / (128.0F * 128.0F);
  for (const int pixel : {127 * 256 + 127, 127 * 256 + 128, 128 * 256 + 127, 128 * 256 + 128}) {
    EXPECT_FLOAT_EQ(plane[pixel], expected);
  }
}

TEST(HeroKernel, sizedToFormat_takesTheSmallerFormatSideWhateverTheMaximum) {
  dvHeroRequest wanted = request(dvKernelType::Circular, 50);
  wanted.sizeToFormat = true;
  wanted.formatWidth = 1920;
  wanted.formatHeight = 1080;
  EXPECT_EQ(sizeHeroKernel(wanted).side, 1080);
  wanted.formatWidth = 1080;
  wanted.formatHeight = 1920;
  EXPECT_EQ(sizeHeroKernel(wanted).side, 1080);
  dvChannelFloatBuffer hero;
  makeHeroKernel(hero, softDisc(1.0F), sizeHeroKernel(wanted), {2}, {});
  EXPECT_EQ(hero.channels[2].size(), 1080U * 1080U);
}

TEST(HeroKernel, smallKernelImage_showsItsBottomLeftCornerEnlarged) {
  dvHeroRequest wanted = request(dvKernelType::Input, 256);
  wanted.kernelInput = dvKernelBox{0, 0, 64, 64};
  const dvHeroSizing sizing = sizeHeroKernel(wanted);
  EXPECT_EQ(sizing.side, 64);
  EXPECT_EQ(sizing.sampling.scaleX, 0.25F);
  EXPECT_EQ(sizing.sampling.scaleY, 0.25F);
  dvApertureShape shape;
  shape.type = dvKernelType::Input;
  dvChannelFloatBuffer hero;
  makeHeroKernel(hero, shape, sizing, {1}, coordinateInput());
  // The image is a slope, which the cubic keeps: hero (63, 63) shows image (15.875, 15.875).
  EXPECT_NEAR(hero.plane(1)[63 * 64 + 63], 15.875F + 15875.0F, 0.01F);
  EXPECT_NEAR(hero.plane(1)[40 * 64 + 20], 5.125F + 10125.0F, 0.01F);
}

TEST(HeroKernel, largeKernelImage_isReducedWhole) {
  dvHeroRequest wanted = request(dvKernelType::Input, 16);
  wanted.kernelInput = dvKernelBox{-10, 5, 54, 37};
  const dvHeroSizing sizing = sizeHeroKernel(wanted);
  EXPECT_EQ(sizing.side, 16);
  EXPECT_EQ(sizing.sampling.left, -10);
  EXPECT_EQ(sizing.sampling.bottom, 5);
  EXPECT_EQ(sizing.sampling.width, 64);
  EXPECT_EQ(sizing.sampling.height, 32);
  EXPECT_EQ(sizing.sampling.scaleX, 4.0F);
  EXPECT_EQ(sizing.sampling.scaleY, 2.0F);
}

TEST(HeroKernel, kernelImageNarrowInOneAxis_limitsTheSideOnly) {
  dvHeroRequest wanted = request(dvKernelType::Input, 100);
  wanted.kernelInput = dvKernelBox{0, 0, 200, 30};
  const dvHeroSizing sizing = sizeHeroKernel(wanted);
  EXPECT_EQ(sizing.side, 30);
  EXPECT_EQ(sizing.sampling.scaleX, 2.0F);
  EXPECT_EQ(sizing.sampling.scaleY, 0.3F);
}

TEST(HeroKernel, proceduralShape_ignoresTheKernelImage) {
  dvHeroRequest wanted = request(dvKernelType::Circular, 100);
  wanted.kernelInput = dvKernelBox{0, 0, 8, 8};
  EXPECT_EQ(sizeHeroKernel(wanted).side, 100);
}

TEST(HeroKernel, noKernelImageConnected_isZeroAtTheMaximumSize) {
  const dvHeroSizing sizing = sizeHeroKernel(request(dvKernelType::Input, 12));
  EXPECT_EQ(sizing.side, 12);
  dvApertureShape shape;
  shape.type = dvKernelType::Input;
  dvChannelFloatBuffer hero;
  makeHeroKernel(hero, shape, sizing, {1}, {});
  EXPECT_EQ(hero.channels[1], std::vector<float>(144, 0.0F));
}

TEST(HeroKernel, missingChannelOfTheKernelImage_comesFromTheFallback) {
  dvHeroRequest wanted = request(dvKernelType::Input, 8);
  wanted.kernelInput = dvKernelBox{0, 0, 8, 8};
  dvApertureShape shape;
  shape.type = dvKernelType::Input;
  dvKernelInput input = coordinateInput();
  dvChannelFloatBuffer hero;
  makeHeroKernel(hero, shape, sizeHeroKernel(wanted), {1, 2}, input);
  EXPECT_EQ(hero.plane(2)[9], -hero.plane(1)[9]);
  input.missingKernelChannel = 1;
  makeHeroKernel(hero, shape, sizeHeroKernel(wanted), {1, 2}, input);
  EXPECT_EQ(hero.channels[2], hero.channels[1]);
}

TEST(HeroKernel, equalChannelsOfTheKernelImage_shareAPlane) {
  dvHeroRequest wanted = request(dvKernelType::Input, 8);
  wanted.kernelInput = dvKernelBox{0, 0, 8, 8};
  dvApertureShape shape;
  shape.type = dvKernelType::Input;
  dvChannelFloatBuffer hero;
  makeHeroKernel(hero, shape, sizeHeroKernel(wanted), rgba, coordinateInput());
  const dvChannelFloatBuffer& read = hero;
  EXPECT_NE(read.plane(1), read.plane(2));
  EXPECT_EQ(read.plane(3), read.plane(2));
  EXPECT_EQ(read.plane(4), read.plane(2));
  EXPECT_EQ(read.plane(4)[9], -read.plane(1)[9]);
}

TEST(HeroKernel, proceduralShape_isTheSameInEveryChannelAndInNoOther) {
  const dvChannelFloatBuffer hero = shapeHero(softDisc(0.3F), 31);
  for (const int channel : rgba) {
    EXPECT_EQ(hero.channels[static_cast<std::size_t>(channel)], hero.channels[1]);
  }
  EXPECT_TRUE(hero.channels[0].empty());
  EXPECT_TRUE(hero.channels[5].empty());
}

TEST(HeroKernel, pixels_areTheApertureAtColumnAndRow) {
  dvApertureShape shape = softDisc(1.0F);
  shape.type = dvKernelType::ApertureBlades;
  shape.rotation = 0.2F;
  shape.numSides = 3;
  shape.bladeCurvature = 0.0F;
  const dvChannelFloatBuffer hero = shapeHero(shape, 20);
  EXPECT_EQ(hero.plane(3)[4 * 20 + 11], apertureValue(shape, 1.0F, 10.0F, 100.0F, 11, 4));
  EXPECT_NE(hero.plane(3)[4 * 20 + 11], hero.plane(3)[11 * 20 + 4]);
}

TEST(HeroKernel, rebuilt_keepsNothingOfTheLastBuild) {
  dvChannelFloatBuffer hero = shapeHero(softDisc(0.1F), 40);
  makeHeroKernel(hero, softDisc(1.0F), sizeHeroKernel(request(dvKernelType::Circular, 9)), {2}, {});
  EXPECT_TRUE(hero.channels[1].empty());
  EXPECT_EQ(hero.channels[2], shapeHero(softDisc(1.0F), 9).channels[2]);
}

TEST(HeroKernel, sideBelowOne_hasNoPixels) {
  for (const dvKernelType type :
       {dvKernelType::Input, dvKernelType::Circular, dvKernelType::ApertureBlades}) {
    for (const int side : {0, -7}) {
      dvHeroRequest wanted = request(type, side);
      wanted.kernelInput = dvKernelBox{0, 0, 64, 64};
      dvApertureShape shape;
      shape.type = type;
      dvChannelFloatBuffer hero;
      makeHeroKernel(hero, shape, sizeHeroKernel(wanted), rgba, coordinateInput());
      EXPECT_EQ(hero.count, 0);
      EXPECT_EQ(hero.plane(1), nullptr);
    }
  }
}

TEST(HeroKernel, emptyOrReversedKernelBox_hasNoPixels) {
  for (const dvKernelBox box : {dvKernelBox{3, 3, 3, 9}, dvKernelBox{9, 9, 2, 2}}) {
    dvHeroRequest wanted = request(dvKernelType::Input, 16);
    wanted.kernelInput = box;
    EXPECT_EQ(sizeHeroKernel(wanted).side, 0);
  }
}

TEST(HeroKernel, cancelled_leavesTheRestOfTheRowsAtZero) {
  int rows = 0;
  dvChannelFloatBuffer hero;
  makeHeroKernel(hero, {}, sizeHeroKernel(request(dvKernelType::Circular, 8)), {1}, {},
                 [&] { return ++rows > 4; });
  EXPECT_GT(hero.plane(1)[3 * 8 + 4], 0.0F);
  for (int i = 4 * 8; i < 8 * 8; ++i) {
    EXPECT_EQ(hero.plane(1)[i], 0.0F) << i;
  }
}

TEST(HeroKernel, kernelBoxAsWideAsIntegersGo_isSizedWithoutOverflow) {
  const int least = std::numeric_limits<int>::min();
  const int most = std::numeric_limits<int>::max();
  dvHeroRequest wanted = request(dvKernelType::Input, 4);
  wanted.kernelInput = dvKernelBox{least, least, most, most};
  const dvHeroSizing sizing = sizeHeroKernel(wanted);
  EXPECT_EQ(sizing.side, 4);
  EXPECT_EQ(sizing.sampling.width, most);
  dvApertureShape shape;
  shape.type = dvKernelType::Input;
  dvChannelFloatBuffer hero;
  dvKernelInput input;
  input.read = [](int, int, int) { return 1.0F; };
  makeHeroKernel(hero, shape, sizing, {1}, input);
  EXPECT_EQ(hero.channels[1].size(), 16U);
}

}  // namespace
}  // namespace drevin

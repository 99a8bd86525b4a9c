#include "kernel/KernelImage.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace drevin {
namespace {

TEST(KernelImage, sideOne_hasCentreZero) {
  dvChannelFloatBuffer image;
  image.resize(1, {1});
  EXPECT_EQ(image.centre, 0);
  EXPECT_EQ(image.count, 1);
}

TEST(KernelImage, side256_hasCentre128) {
  dvChannelFloatBuffer image;
  image.resize(256, {1});
  EXPECT_EQ(image.width, 256);
  EXPECT_EQ(image.height, 256);
  EXPECT_EQ(image.centre, 128);
  EXPECT_EQ(image.count, 65536);
}

TEST(KernelImage, resize_makesPlanesOfZerosForTheGivenChannelsOnly) {
  dvChannelFloatBuffer image;
  image.resize(3, {2, 1023});
  ASSERT_EQ(image.channels.size(), 1024U);
  for (std::size_t channel = 0; channel < image.channels.size(); ++channel) {
    const bool wanted = channel == 2 || channel == 1023;
    EXPECT_EQ(image.channels[channel].size(), wanted ? 9U : 0U) << channel;
  }
  EXPECT_EQ(image.channels[2], std::vector<float>(9, 0.0F));
}

TEST(KernelImage, resizeAgain_keepsNothingOfTheOldImage) {
  dvChannelFloatBuffer image;
  image.resize(5, {1, 2});
  std::fill_n(image.plane(1), image.count, 7.0F);
  image.resize(3, {1});
  EXPECT_EQ(image.channels[1], std::vector<float>(9, 0.0F));
  EXPECT_TRUE(image.channels[2].empty());
}

TEST(KernelImage, sideBelowOne_hasNoPixels) {
  for (const int side : {0, -1, -2147483647}) {
    dvChannelFloatBuffer image;
    image.resize(side, {1});
    EXPECT_EQ(image.width, 0);
    EXPECT_EQ(image.centre, 0);
    EXPECT_EQ(image.count, 0);
    EXPECT_EQ(image.plane(1), nullptr);
  }
}

TEST(KernelImage, numbersThatAreNoChannel_arePassedOver) {
  dvChannelFloatBuffer image;
  image.resize(3, {-1, 1, 1024});
  EXPECT_NE(image.plane(1), nullptr);
  EXPECT_EQ(image.plane(-1), nullptr);
  EXPECT_EQ(image.plane(1024), nullptr);
}

TEST(KernelImage, clear_leavesNoPixelsAndNoPlanes) {
  dvChannelFloatBuffer image;
  image.resize(9, {1});
  image.clear();
  EXPECT_EQ(image.width, 0);
  EXPECT_EQ(image.height, 0);
  EXPECT_EQ(image.centre, 0);
  EXPECT_EQ(image.count, 0);
  EXPECT_TRUE(image.channels.empty());
  EXPECT_EQ(image.plane(1), nullptr);
}

TEST(KernelImage, copies_areDeep) {
  dvChannelFloatBuffer image;
  image.resize(1, {1});
  const dvChannelFloatBuffer copy = image;
  *image.plane(1) = 5.0F;
  EXPECT_EQ(*copy.plane(1), 0.0F);
}

TEST(KernelImage, sharedPlane_isOnePlaceInMemory) {
  dvChannelFloatBuffer image;
  image.resize(3, {1});
  image.share(7, 1);
  const dvChannelFloatBuffer& read = image;
  EXPECT_EQ(read.plane(7), read.plane(1));
  EXPECT_NE(read.plane(7), nullptr);
}

TEST(KernelImage, writingASharedPlane_leavesTheOtherAsItIs) {
  dvChannelFloatBuffer image;
  image.resize(2, {1});
  image.share(7, 1);
  image.plane(7)[3] = 5.0F;
  EXPECT_EQ(image.channels[7], (std::vector<float>{0.0F, 0.0F, 0.0F, 5.0F}));
  EXPECT_EQ(image.channels[1], std::vector<float>(4, 0.0F));
  image.share(7, 1);
  image.channels[1][0] = 2.0F;
  EXPECT_EQ(image.channels[1], (std::vector<float>{2.0F, 0.0F, 0.0F, 0.0F}));
  EXPECT_EQ(image.channels[7], std::vector<float>(4, 0.0F));
}

TEST(KernelImage, writingAPlaneOfItsOwn_keepsItsPlace) {
  dvChannelFloatBuffer image;
  image.resize(3, {1});
  const float* place = static_cast<const dvChannelFloatBuffer&>(image).plane(1);
  image.plane(1)[0] = 1.0F;
  EXPECT_EQ(static_cast<const dvChannelFloatBuffer&>(image).plane(1), place);
}

}  // namespace
}  // namespace drevin

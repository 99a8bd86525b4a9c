#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "DDImage/DeepPlane.h"
#include "host/DeepOrderGuard.h"

using namespace DD::Image;

namespace {

/// 3 x 2 pixels beside the origin. Pixel i has i % 3 samples, with front 10 i + sample.
DeepOutputPlane steppedPlane(DeepPixel::Ordering ordering = DeepPixel::eZAscending) {
  DeepOutputPlane plane(Mask_Deep, Box(-1, 4, 2, 6), ordering);
  for (int i = 0; i < 6; ++i) {
    DeepOutPixel pixel;
    for (int sample = 0; sample < i % 3; ++sample) {
      const auto front = static_cast<float>(10 * i + sample);
      pixel.push_back(front);
      pixel.push_back(front + 0.5F);
    }
    plane.addPixel(pixel);
  }
  return plane;
}

class DeepPlaneOrder : public deep::InBothOrders {};
INSTANTIATE_TEST_SUITE_P(Order, DeepPlaneOrder, deep::bothOrders(), deep::orderName);

}  // namespace

TEST(DeepPlane, pixels_goFromLeftToRightAndFromTheBottomUp) {
  const DeepOutputPlane plane = steppedPlane();
  EXPECT_EQ(plane.getPixel(4, 0).getUnorderedSample(0, Chan_DeepFront), 10.0F);
  EXPECT_EQ(plane.getPixel(4, 1).getUnorderedSample(1, Chan_DeepFront), 21.0F);
  EXPECT_EQ(plane.getPixel(5, 0).getUnorderedSample(0, Chan_DeepFront), 40.0F);
  EXPECT_EQ(plane.getPixel(5, 1).getUnorderedSample(0, Chan_DeepBack), 50.5F);
}

TEST(DeepPlane, counts_areThoseOfItsPixels) {
  const DeepOutputPlane plane = steppedPlane();
  EXPECT_EQ(plane.getSampleCount(4, -1), 0U);
  EXPECT_EQ(plane.getSampleCount(4, 0), 1U);
  EXPECT_EQ(plane.getSampleCount(5, 1), 2U);
  EXPECT_EQ(plane.getTotalSampleCount(), 6U);
}

TEST(DeepPlane, covers_theBoxAndNothingElse) {
  const DeepOutputPlane plane = steppedPlane();
  EXPECT_TRUE(plane.covers(4, -1));
  EXPECT_TRUE(plane.covers(5, 1));
  EXPECT_FALSE(plane.covers(4, -2));
  EXPECT_FALSE(plane.covers(4, 2)) << "the right edge is outside";
  EXPECT_FALSE(plane.covers(3, 0));
  EXPECT_FALSE(plane.covers(6, 0)) << "and so is the upper";
}

TEST(DeepPlane, hole_isAPixelWithoutSamples) {
  DeepOutputPlane plane(Mask_Deep, Box(0, 0, 3, 1));
  DeepOutPixel pixel;
  pixel.push_back(7.0F);
  pixel.push_back(8.0F);
  plane.addPixel(pixel);
  plane.addHole();
  plane.addPixel(pixel);
  EXPECT_EQ(plane.getSampleCount(0, 0), 1U);
  EXPECT_EQ(plane.getSampleCount(0, 1), 0U);
  EXPECT_EQ(plane.getPixel(0, 2).getUnorderedSample(0, Chan_DeepBack), 8.0F);
}

TEST(DeepPlane, pixelOfAnotherPlane_isCopied) {
  DeepOutputPlane copy(Mask_Deep, Box(0, 0, 1, 1), DeepPixel::eZAscending);
  {
    const DeepOutputPlane plane = steppedPlane();
    copy.addPixel(plane.getPixel(5, 1));
  }
  EXPECT_EQ(copy.getPixel(0, 0).getUnorderedSample(1, Chan_DeepFront), 51.0F);
}

TEST(DeepPlane, copies_shareTheSamples) {
  DeepPlane plane;
  const float* data = nullptr;
  {
    const DeepOutputPlane made = steppedPlane();
    data = made.getPixel(5, 0).data();
    plane = made;
  }
  EXPECT_EQ(plane.getPixel(5, 0).data(), data);
  EXPECT_EQ(plane.getTotalSampleCount(), 6U);
  EXPECT_EQ(plane.box(), Box(-1, 4, 2, 6));
  EXPECT_EQ(&plane.getPixel(5, 0).channels(), &plane.channels());
}

TEST(DeepPlane, pixel_outlivesThePlaneThatItWasTakenFromWhileACopyLives) {
  auto plane = std::make_unique<DeepPlane>(steppedPlane());
  const DeepPixel pixel = plane->getPixel(5, 1);
  const DeepPlane kept(*plane);
  plane.reset();
  EXPECT_EQ(pixel.getUnorderedSample(1, Chan_DeepFront), 51.0F);
}

TEST(DeepPlane, unsaid_isEmpty) {
  const DeepPlane plane;
  EXPECT_TRUE(plane.box().empty());
  EXPECT_TRUE(plane.channels().empty());
  EXPECT_FALSE(plane.covers(0, 0));
  EXPECT_EQ(plane.getTotalSampleCount(), 0U);
}

TEST(DeepPlane, fill_leavesPixelsEmptyThatWereNotAdded) {
  DeepOutputPlane plane(Mask_Deep, Box(0, 0, 2, 2));
  plane.addValues(std::vector<float>{1.0F, 2.0F}.data(), 2);
  plane.fill();
  EXPECT_EQ(plane.getSampleCount(0, 0), 1U);
  EXPECT_EQ(plane.getSampleCount(0, 1), 0U);
  EXPECT_EQ(plane.getSampleCount(1, 1), 0U);
}

TEST_P(DeepPlaneOrder, pixels_areServedFromTheHostsEnd) {
  const DeepOutputPlane near = steppedPlane();
  const DeepOutputPlane unordered = steppedPlane(DeepPixel::eUnordered);
  const float first = farFirst() ? 51.0F : 50.0F;
  EXPECT_EQ(near.getPixel(5, 1).getOrderedSample(0, Chan_DeepFront), first);
  EXPECT_EQ(unordered.getPixel(5, 1).getOrderedSample(0, Chan_DeepFront), first);
}

TEST_P(DeepPlaneOrder, ordering_isHowTheSamplesAreStored) {
  const DeepOutputPlane plane = steppedPlane(DeepPixel::eZDescending);
  EXPECT_EQ(plane.ordering(), DeepPixel::eZDescending);
  EXPECT_EQ(plane.getPixel(5, 1).ordering(), DeepPixel::eZDescending);
  EXPECT_EQ(plane.getPixel(5, 1).getOrderedSample(0, Chan_DeepFront), farFirst() ? 50.0F : 51.0F);
}

#include "frames/PictureDifference.h"

#include <gtest/gtest.h>

#include <limits>

namespace drevin::bench {
namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();
const double infinitelyFar = std::numeric_limits<double>::infinity();

/// A red plane over a box.
embedded::Image redImage(const DD::Image::Box& box, embedded::Plane values) {
  return {DD::Image::Format(8, 8),
          box,
          {{DD::Image::Chan_Red, std::make_shared<const embedded::Plane>(std::move(values))}}};
}

double differenceOfPixels(float a, float b) {
  const DD::Image::Box box(0, 0, 2, 1);
  return differenceOf(redImage(box, {0.5F, a}), redImage(box, {0.5F, b}));
}

TEST(PictureDifference, equalPictures_doNotDiffer) {
  EXPECT_EQ(differenceOfPixels(0.25F, 0.25F), 0.0);
  EXPECT_EQ(differenceOfPixels(infinity, infinity), 0.0);
  EXPECT_EQ(differenceOfPixels(nan, nan), 0.0);
}

TEST(PictureDifference, difference_isInPartsOfTheBound) {
  EXPECT_NEAR(differenceOfPixels(1e-5F, 0.0F), 1.0, 1e-6);
  EXPECT_NEAR(differenceOfPixels(1.00011F, 1.0F), 1.0, 1e-2);
}

TEST(PictureDifference, oneThatIsNotFinite_isInfinitelyFar) {
  EXPECT_EQ(differenceOfPixels(nan, 0.5F), infinitelyFar);
  EXPECT_EQ(differenceOfPixels(0.5F, nan), infinitelyFar);
  EXPECT_EQ(differenceOfPixels(infinity, 0.5F), infinitelyFar);
  EXPECT_EQ(differenceOfPixels(infinity, -infinity), infinitelyFar);
  EXPECT_EQ(differenceOfPixels(nan, infinity), infinitelyFar);
}

TEST(PictureDifference, nanBeforeALargerDifference_isNotForgotten) {
  const DD::Image::Box box(0, 0, 2, 1);
  EXPECT_EQ(differenceOf(redImage(box, {nan, 1.0F}), redImage(box, {0.0F, 0.0F})), infinitelyFar);
}

TEST(PictureDifference, part_isHeldToItsPlaceInTheWhole) {
  const embedded::Image whole =
      redImage({0, 0, 3, 3}, {0.0F, 1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 6.0F, 7.0F, 8.0F});
  EXPECT_EQ(differenceOf(redImage({1, 1, 3, 3}, {4.0F, 5.0F, 7.0F, 8.0F}), whole), 0.0);
  EXPECT_GT(differenceOf(redImage({0, 1, 2, 3}, {4.0F, 5.0F, 7.0F, 8.0F}), whole), 1.0);
}

}  // namespace
}  // namespace drevin::bench

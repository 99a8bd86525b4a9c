#include "defocus/FloatRules.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace drevin {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
const float nan = std::nanf("");

TEST(FloatRules, minimum_keepsNaNOfTheValueOnly) {
  EXPECT_EQ(minKeepingNaN(1.0F, 2.0F), 1.0F);
  EXPECT_EQ(minKeepingNaN(1.0F, 0.5F), 0.5F);
  EXPECT_EQ(minKeepingNaN(1.0F, infinity), 1.0F);
  EXPECT_TRUE(std::isnan(minKeepingNaN(1.0F, nan)));
}

TEST(FloatRules, maximum_keepsNaNOfTheValueOnly) {
  EXPECT_EQ(maxKeepingNaN(1.0F, 2.0F), 2.0F);
  EXPECT_EQ(maxKeepingNaN(1.0F, -2.0F), 1.0F);
  EXPECT_EQ(maxKeepingNaN(1.0F, -infinity), 1.0F);
  EXPECT_TRUE(std::isnan(maxKeepingNaN(1.0F, nan)));
}

TEST(FloatRules, onlyTheLargestFloat_isInfinitelyFar) {
  EXPECT_TRUE(isInfinitelyFar(std::numeric_limits<float>::max()));
  EXPECT_FALSE(isInfinitelyFar(std::nextafter(std::numeric_limits<float>::max(), 0.0F)));
  EXPECT_FALSE(isInfinitelyFar(infinity));
  EXPECT_FALSE(isInfinitelyFar(-std::numeric_limits<float>::max()));
  EXPECT_FALSE(isInfinitelyFar(0.0F));
  EXPECT_FALSE(isInfinitelyFar(nan));
}

TEST(FloatRules, almostAtLens_hasTheBits00200000) {
  unsigned bits = 0;
  std::memcpy(&bits, &dvAlmostAtLens, sizeof bits);
  EXPECT_EQ(bits, 0x00200000U);
}

TEST(FloatRules, truncation_isTowardZero) {
  EXPECT_EQ(truncateToInt(2.9F), 2);
  EXPECT_EQ(truncateToInt(-2.9F), -2);
  EXPECT_EQ(truncateToInt(-0.0F), 0);
}

TEST(FloatRules, truncationOfWhatNoIntHolds_isTheLeastInt) {
  constexpr int least = std::numeric_limits<int>::min();
  EXPECT_EQ(truncateToInt(0x1p31F), least);
  EXPECT_EQ(truncateToInt(-0x1p31F), least);
  EXPECT_EQ(truncateToInt(infinity), least);
  EXPECT_EQ(truncateToInt(-infinity), least);
  EXPECT_EQ(truncateToInt(nan), least);
}

}  // namespace
}  // namespace drevin

#include "engine/LargeMemory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "engine/FrameBox.h"

namespace drevin::test {
namespace {

template <typename Value>
using LargeVector = std::vector<Value, dvLargeAllocator<Value>>;

TEST(LargeMemory, picture_beginsOnALargePage) {
  const LargeVector<float> picture(2 * dvLargePage / sizeof(float));
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(picture.data()) % dvLargePage, 0U);
}

TEST(LargeMemory, vectorsOfAnySize_holdWhatIsWritten) {
  constexpr std::size_t limit = 2 * dvLargePage / sizeof(double);
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, limit - 1, limit, limit + 7}) {
    LargeVector<double> values(size);
    for (std::size_t i = 0; i < size; ++i) {
      ASSERT_EQ(values[i], 0.0);
      values[i] = static_cast<double>(i);
    }
    const LargeVector<double> copy = values;
    values = LargeVector<double>();
    for (std::size_t i = 0; i < size; ++i)
      ASSERT_EQ(copy[i], static_cast<double>(i));
  }
}

TEST(LargeMemory, planeOfAPicture_isZero) {
  const dvFramePlane<float> plane({-3, 2, 1197, 1002});
  for (int y = 2; y < 1002; ++y) {
    for (int i = 0; i < 1200; ++i)
      ASSERT_EQ(plane.row(y)[i], 0.0F);
  }
}

}  // namespace
}  // namespace drevin::test

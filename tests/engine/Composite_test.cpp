#include "engine/Composite.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace drevin::test {
namespace {

/// One channel over a row.
struct Row {
  explicit Row(std::size_t width) : colour(width, 0.0F), coverage(width, 0.0) {}
  void lay(const std::vector<double>& sums, const std::vector<double>& weights,
           const dvColumnSpan& columns) {
    compositeSlice({sums, weights}, columns, {colour.data()}, coverage.data());
  }
  std::vector<float> colour;
  std::vector<double> coverage;
};

TEST(Composite, sliceWithRoom_isAddedWhole) {
  Row row(1);
  row.lay({0.5}, {0.25}, {0, 1});
  row.lay({0.25}, {0.5}, {0, 1});
  EXPECT_EQ(row.colour[0], 0.75F);
  EXPECT_EQ(row.coverage[0], 0.75);
}

TEST(Composite, sliceWithoutRoomForAll_isScaled) {
  Row row(1);
  row.lay({0.75}, {0.75}, {0, 1});
  row.lay({4.0}, {1.0}, {0, 1});
  EXPECT_EQ(row.colour[0], 1.75F);
  EXPECT_EQ(row.coverage[0], 1.0);
}

TEST(Composite, fullPixel_takesNothingMore) {
  Row row(1);
  row.lay({1.0}, {1.0}, {0, 1});
  row.lay({100.0}, {0.5}, {0, 1});
  EXPECT_EQ(row.colour[0], 1.0F);
  EXPECT_EQ(row.coverage[0], 1.0);
}

TEST(Composite, weightThatIsNan_isAddedWhole) {
  Row row(1);
  row.lay({2.0}, {std::numeric_limits<double>::quiet_NaN()}, {0, 1});
  EXPECT_EQ(row.colour[0], 2.0F);
  EXPECT_TRUE(row.coverage[0] != row.coverage[0]);
}

TEST(Composite, columnsOutsideTheSpan_areLeftAlone) {
  constexpr int width = 700;
  Row row(width);
  row.lay(std::vector<double>(width, 3.0), std::vector<double>(width, 0.5), {5, 690});
  for (int i = 0; i < width; ++i) {
    const bool inside = i >= 5 && i < 690;
    ASSERT_EQ(row.colour[static_cast<std::size_t>(i)], inside ? 3.0F : 0.0F) << i;
    ASSERT_EQ(row.coverage[static_cast<std::size_t>(i)], inside ? 0.5 : 0.0) << i;
  }
}

TEST(Composite, emptySpan_changesNothing) {
  Row row(4);
  row.lay(std::vector<double>(4, 3.0), std::vector<double>(4, 0.5), {});
  EXPECT_EQ(row.colour, std::vector<float>(4, 0.0F));
}

TEST(Composite, division_leavesWhatNothingCovers) {
  std::vector<float> colour{1.0F, 0.0F, 3.0F, 2.0F};
  const std::vector<double> coverage{0.5, 0.0, 1.0, -0.5};
  divideByCoverage({colour.data()}, coverage.data(), 4);
  EXPECT_EQ(colour, (std::vector<float>{2.0F, 0.0F, 3.0F, 2.0F}));
}

TEST(Composite, coverageByItself_isOneWhereAnythingCovers) {
  std::vector<float> colour(4, 7.0F);
  const std::vector<double> coverage{0.5, 0.0, 1e-30, -0.5};
  divideCoverageByItself(coverage.data(), 4, colour.data());
  EXPECT_EQ(colour, (std::vector<float>{1.0F, 0.0F, 1.0F, -0.5F}));
  for (const double special :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    divideCoverageByItself(&special, 1, colour.data());
    EXPECT_TRUE(std::isnan(colour[0]));
  }
}

}  // namespace
}  // namespace drevin::test

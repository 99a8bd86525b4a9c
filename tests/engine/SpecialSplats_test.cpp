#include "engine/SpecialSplats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "defocus/SplatBench.h"

namespace drevin::test {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
const float nan = std::nanf("");
constexpr int left = -6;
constexpr int right = 7;

/// Sums of one value plane and the weight.
class SpecialBench {
 public:
  explicit SpecialBench(const dvKernelBank& bank) : kernels_(bank, 1) { clear(); }

  void clear() { sums_.assign(2, std::vector<double>(right - left, 0.0)); }
  void add(const dvSpecialSplat& splat, int dy, std::uint32_t slice = 0) {
    addSpecialSplats({splat}, slice, dy, kernels_, left, right, sums_);
  }

  double colour(int x) const { return sums_[0][static_cast<std::size_t>(x - left)]; }
  double weight(int x) const { return sums_[1][static_cast<std::size_t>(x - left)]; }
  bool untouched() const {
    const auto isZero = [](double sum) { return sum == 0.0; };
    return std::all_of(sums_[0].begin(), sums_[0].end(), isZero) &&
           std::all_of(sums_[1].begin(), sums_[1].end(), isZero);
  }

 private:
  dvKernelTable kernels_;
  std::vector<std::vector<double>> sums_;
};

/// With a first row and a first column of zeros, as resampling leaves them.
dvKernelBank blankEdges() {
  dvKernelBank bank = countingBank(12, {1});
  for (dvChannelFloatBuffer& entry : bank) {
    for (int i = 0; i < entry.width; ++i)
      entry.plane(1)[i] = entry.plane(1)[i * entry.width] = 0.0F;
  }
  return bank;
}

dvSpecialSplat splatAt(int x, float value) {
  return {0, x, {2, 3}, {0.75F, 0.25F}, {value}};
}

TEST(SpecialSplats, nan_reachesTheWholeSquareZeroKernelValuesIncluded) {
  SpecialBench bench(blankEdges());
  for (int dy = -4; dy <= 4; ++dy) {
    bench.clear();
    bench.add(splatAt(0, nan), dy);
    for (int x = left; x < right; ++x) {
      const bool inside = std::abs(dy) <= 3 && std::abs(x) <= 3;
      EXPECT_EQ(std::isnan(bench.colour(x)), inside) << dy << ", " << x;
      EXPECT_TRUE(std::isfinite(bench.weight(x)));
    }
  }
}

TEST(SpecialSplats, infinityTimesAZeroKernelValue_isNan) {
  SpecialBench bench(blankEdges());
  bench.add({0, 0, {2, 2}, {1.0F, 0.0F}, {infinity}}, 0);
  EXPECT_TRUE(std::isnan(bench.colour(-2)));
  for (int x = -1; x <= 2; ++x)
    EXPECT_EQ(bench.colour(x), static_cast<double>(infinity));
}

TEST(SpecialSplats, bothPasses_areAddedWithTheirShares) {
  const dvKernelBank bank = countingBank(12, {1});
  SpecialBench bench(bank);
  for (const int dy : {-3, -2, 0, 1, 2, 3}) {
    bench.clear();
    bench.add(splatAt(1, infinity), dy);
    for (int x = left; x < right; ++x) {
      double weight = 0.0;
      for (const int radius : {2, 3}) {
        if (std::abs(dy) > radius || std::abs(x - 1) > radius) continue;
        const int side = 2 * radius + 1;
        const int place = (radius - dy) * side + radius + x - 1;
        weight += (radius == 2 ? 0.75 : 0.25) *
                  static_cast<double>(bank[static_cast<std::size_t>(side)].plane(1)[place]);
      }
      EXPECT_NEAR(bench.weight(x), weight, 1e-6) << dy << ", " << x;
    }
  }
}

TEST(SpecialSplats, shareOfZeroOrLess_isPassedOver) {
  SpecialBench bench(countingBank(12, {1}));
  bench.add({0, 0, {2, 3}, {0.0F, -0.5F}, {nan}}, 0);
  EXPECT_TRUE(bench.untouched());
  bench.add({0, 0, {2, 3}, {1.0F, -infinity}, {nan}}, 0);
  EXPECT_TRUE(std::isnan(bench.colour(2)));
  EXPECT_EQ(bench.colour(3), 0.0);
}

TEST(SpecialSplats, shareOfNan_spoilsColourAndWeight) {
  SpecialBench bench(countingBank(12, {1}));
  bench.add({0, 0, {2, 3}, {1.0F, nan}, {1.0F}}, 0);
  for (int x = left; x < right; ++x) {
    EXPECT_EQ(std::isnan(bench.colour(x)), std::abs(x) <= 3);
    EXPECT_EQ(std::isnan(bench.weight(x)), std::abs(x) <= 3);
  }
}

TEST(SpecialSplats, squareAcrossTheEnds_isClipped) {
  SpecialBench bench(countingBank(12, {1}));
  for (int x = left - 5; x <= right + 4; ++x) {
    bench.clear();
    bench.add(splatAt(x, nan), 1);
    for (int i = left; i < right; ++i)
      EXPECT_EQ(std::isnan(bench.colour(i)), std::abs(i - x) <= 3) << x << ", " << i;
  }
}

TEST(SpecialSplats, squareWiderThanTheColumns_fillsThem) {
  SpecialBench bench(countingBank(32, {1}));
  bench.add({0, 2, {14, 15}, {0.5F, 0.5F}, {nan}}, 13);
  for (int x = left; x < right; ++x)
    EXPECT_TRUE(std::isnan(bench.colour(x)));
}

TEST(SpecialSplats, centresFarAway_addNothing) {
  SpecialBench bench(countingBank(12, {1}));
  constexpr int least = std::numeric_limits<int>::min();
  constexpr int most = std::numeric_limits<int>::max();
  for (const int x : {least, least + 3, left - 4, right + 3, most - 3, most}) {
    bench.add(splatAt(x, nan), 0);
    EXPECT_TRUE(bench.untouched()) << x;
  }
}

TEST(SpecialSplats, rowsOutOfReach_areLeftAlone) {
  SpecialBench bench(countingBank(12, {1}));
  for (const int dy : {-4, 4, -5, 5}) {
    bench.add(splatAt(0, nan), dy);
    EXPECT_TRUE(bench.untouched()) << dy;
  }
}

TEST(SpecialSplats, otherSlices_areLeftOut) {
  SpecialBench bench(countingBank(12, {1}));
  bench.add(splatAt(0, nan), 0, 1);
  EXPECT_TRUE(bench.untouched());
}

TEST(SpecialSplats, finiteValuesOfASpecialSplat_areAddedLikeOthers) {
  // One channel of the pixel is NaN, its neighbours are not.
  const dvKernelTable kernels(countingBank(12, {1}), 1);
  std::vector<std::vector<double>> sums(3, std::vector<double>(right - left, 0.0));
  addSpecialSplats({{0, 0, {2, 2}, {0.5F, 0.0F}, {nan, 3.0F}}}, 0, 0, kernels, left, right, sums);
  for (std::size_t i = 0; i < sums[0].size(); ++i) {
    EXPECT_NEAR(sums[1][i], 3.0 * sums[2][i], 1e-6);
    EXPECT_EQ(std::isnan(sums[0][i]), sums[2][i] > 0.0);
  }
}

}  // namespace
}  // namespace drevin::test

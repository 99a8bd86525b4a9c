#include "engine/NotFiniteRuns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "defocus/SplatBench.h"
#include "engine/SpecialSplats.h"

namespace drevin::test {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
const float nan = std::nanf("");
constexpr int left = -6;
constexpr int right = 9;

using Sums = std::vector<std::vector<double>>;

/// A row of two channels and the weight, each column 1.
Sums ones() {
  return Sums(3, std::vector<double>(right - left, 1.0));
}

/// What a column holds, as a letter: finite, NaN, infinite up or down.
std::string lettersOf(const std::vector<double>& sums) {
  std::string letters;
  for (const double sum : sums) {
    letters += std::isnan(sum) ? 'n' : std::isfinite(sum) ? '.' : sum > 0.0 ? 'u' : 'd';
  }
  return letters;
}

/// One kernel of radius 2 whose row above the centre has these values.
class OneKernel {
 public:
  explicit OneKernel(const std::vector<float>& row) : bank_(countingBank(6, {1})) {
    dvChannelFloatBuffer& entry = bank_[5];
    // Kernel rows run against the image: 1 above the centre is the row before the centre's.
    for (int i = 0; i < 5; ++i)
      entry.plane(1)[entry.width + i] = row[static_cast<std::size_t>(i)];
  }

  std::string reached(const dvNotFiniteRun& run, int dy) const {
    const dvKernelTable kernels(bank_, 1);
    dvSerial serial;
    dvNotFiniteRow row(1, left, right);
    row.add(run, dy, dvKernelSigns(kernels, serial));
    Sums sums = ones();
    row.addTo(sums);
    EXPECT_EQ(sums[1], std::vector<double>(right - left, 1.0));
    EXPECT_EQ(sums[2], std::vector<double>(right - left, 1.0));
    return lettersOf(sums[0]);
  }

 private:
  dvKernelBank bank_;
};

TEST(NotFiniteRuns, infinity_takesTheSignOfTheKernelAndIsNanAtItsZeros) {
  const OneKernel kernel({0.0F, 0.5F, -0.25F, 0.5F, -0.0F});
  EXPECT_EQ(kernel.reached({0, 0, 1, {2, -1}, {infinity}}, 1), "....nudun......");
  EXPECT_EQ(kernel.reached({0, 0, 1, {2, -1}, {-infinity}}, 1), "....ndudn......");
}

TEST(NotFiniteRuns, nan_reachesTheWholeSquare) {
  const OneKernel kernel({0.0F, 0.5F, -0.25F, 0.5F, 0.0F});
  EXPECT_EQ(kernel.reached({0, 0, 1, {2, -1}, {nan}}, 1), "....nnnnn......");
  EXPECT_EQ(kernel.reached({0, 0, 1, {2, -1}, {nan}}, 3), std::string(right - left, '.'));
}

TEST(NotFiniteRuns, infinitiesOfBothSigns_areNan) {
  const OneKernel kernel({0.5F, 0.5F, -0.25F, -0.25F, -0.25F});
  // Columns that only one of the two signs reaches keep it.
  EXPECT_EQ(kernel.reached({0, 0, 2, {2, -1}, {infinity}}, 1), "....uunddd.....");
}

TEST(NotFiniteRuns, runAcrossTheEnds_isClipped) {
  const OneKernel kernel({1.0F, 1.0F, 1.0F, 1.0F, 1.0F});
  EXPECT_EQ(kernel.reached({0, -100, 300, {2, -1}, {infinity}}, 1), std::string(right - left, 'u'));
  EXPECT_EQ(kernel.reached({0, std::numeric_limits<int>::min(), 1, {2, -1}, {nan}}, 0),
            std::string(right - left, '.'));
}

TEST(NotFiniteRuns, finiteValues_addNothing) {
  const OneKernel kernel({1.0F, 1.0F, 1.0F, 1.0F, 1.0F});
  EXPECT_EQ(kernel.reached({0, 0, 1, {2, -1}, {0.0F}}, 1), std::string(right - left, '.'));
}

TEST(NotFiniteRuns, kernelThatIsNotSplatted_addsNothing) {
  const OneKernel kernel({1.0F, 1.0F, 1.0F, 1.0F, 1.0F});
  EXPECT_EQ(kernel.reached({0, 0, 1, {-1, -1}, {nan}}, 1), std::string(right - left, '.'));
}

TEST(NotFiniteRuns, runsThatFollowOneAnother_goOnIfAlike) {
  const dvNotFiniteRun run{1, 3, 2, {2, 3}, {nan, 0.0F}};
  EXPECT_TRUE(continues(run, {1, 5, 1, {2, 3}, {nan, 0.0F}}));
  EXPECT_FALSE(continues(run, {1, 6, 1, {2, 3}, {nan, 0.0F}}));
  EXPECT_FALSE(continues(run, {0, 5, 1, {2, 3}, {nan, 0.0F}}));
  EXPECT_FALSE(continues(run, {1, 5, 1, {2, -1}, {nan, 0.0F}}));
  EXPECT_FALSE(continues(run, {1, 5, 1, {2, 3}, {infinity, 0.0F}}));
}

/// Kernels with positive, negative and zero values.
dvKernelBank randomBank(std::mt19937& random) {
  dvKernelBank bank = countingBank(12, {1});
  std::uniform_int_distribution<int> sign(-1, 1);
  for (dvChannelFloatBuffer& entry : bank) {
    for (std::int64_t i = 0; i < entry.count; ++i)
      entry.plane(1)[i] = static_cast<float>(sign(random)) * 0.125F;
  }
  return bank;
}

TEST(NotFiniteRuns, randomRuns_leaveWhatTheirSplatsLeaveOneByOne) {
  std::mt19937 random(5);
  std::uniform_int_distribution<int> column(-9, 12);
  std::uniform_int_distribution<int> count(1, 3);
  std::uniform_int_distribution<int> radius(0, 5);
  std::uniform_int_distribution<std::size_t> which(0, 3);
  const float values[] = {nan, infinity, -infinity, 0.0F};
  for (int trial = 0; trial < 200; ++trial) {
    const dvKernelTable kernels(randomBank(random), 1);
    dvSerial serial;
    const dvKernelSigns signs(kernels, serial);
    dvNotFiniteRow row(2, left, right);
    Sums literal = ones();
    Sums sums = ones();
    for (int i = 0; i < 3; ++i) {
      const dvNotFiniteRun run{0,
                               column(random),
                               count(random),
                               {radius(random), -1},
                               {values[which(random)], values[which(random)]}};
      const int dy = radius(random) - 3;
      row.add(run, dy, signs);
      for (int x = run.x; x < run.x + run.count; ++x)
        addSpecialSplats({{0, x, {run.radius[0], 0}, {0.75F, 0.0F}, run.values}}, 0, dy, kernels,
                         left, right, literal);
    }
    row.addTo(sums);
    for (const int channel : {0, 1}) {
      const auto at = static_cast<std::size_t>(channel);
      EXPECT_EQ(lettersOf(sums[at]), lettersOf(literal[at])) << trial;
    }
  }
}

}  // namespace
}  // namespace drevin::test

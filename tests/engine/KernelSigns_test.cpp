#include "engine/KernelSigns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "engine/RowScene.h"
#include "engine/ThreadParallel.h"

namespace drevin::test {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
const float nan = std::nanf("");

dvKernelSigns signsOf(const dvKernelTable& kernels, int workers = 1) {
  ThreadParallel parallel(workers);
  return {kernels, parallel};
}

/// A letter for each column of a row: kept, turned, or none of both.
std::string lettersOf(const std::vector<dvSignStretch>& stretches) {
  std::string letters;
  for (const dvSignStretch& stretch : stretches) {
    const char letter = stretch.sign == dvSign::Kept     ? 'k'
                        : stretch.sign == dvSign::Turned ? 't'
                                                         : '0';
    letters.append(static_cast<std::size_t>(stretch.end - stretch.begin), letter);
  }
  return letters;
}

std::string lettersOf(const dvKernelTable& kernels, int radius, int dy) {
  std::string letters;
  for (int column = 0; column <= 2 * radius; ++column) {
    const float value = kernels.row(radius, radius - dy)[column];
    letters += value > 0.0F ? 'k' : value < 0.0F ? 't' : '0';
  }
  return letters;
}

/// The stretches of the middle row of a kernel of radius 3 with these values.
std::vector<dvSignStretch> stretchesOf(const std::vector<float>& values) {
  dvKernelBank bank = kernelBank(KernelKind::Constant, 3);
  std::copy(values.begin(), values.end(), bank[7].plane(1) + 3 * 7);
  return signsOf(dvKernelTable(bank, 1)).row(3, 0);
}

TEST(KernelSigns, everyRow_isCoveredFromEndToEndByItsValuesSigns) {
  const dvKernelTable kernels(kernelBank(KernelKind::Random, 9), 1);
  const dvKernelSigns signs = signsOf(kernels);
  for (int radius = 0; radius <= 9; ++radius) {
    for (int dy = -radius; dy <= radius; ++dy) {
      const std::vector<dvSignStretch>& row = signs.row(radius, dy);
      EXPECT_EQ(lettersOf(row), lettersOf(kernels, radius, dy)) << radius << ", " << dy;
      int end = -radius;
      for (const dvSignStretch& stretch : row) {
        EXPECT_EQ(stretch.begin, end) << radius << ", " << dy;
        end = stretch.end;
      }
      EXPECT_EQ(end, radius + 1);
    }
  }
}

TEST(KernelSigns, stretches_areAsLongAsTheyCanBe) {
  const std::vector<dvSignStretch> row =
      stretchesOf({0.5F, 1e-45F, 2.0F, -1.0F, -0.5F, 0.0F, 3.0F});
  ASSERT_EQ(row.size(), 4U);
  EXPECT_EQ(row[0].end, 0);
  EXPECT_EQ(row[1].end, 2);
  EXPECT_EQ(row[2].end, 3);
}

TEST(KernelSigns, zerosOfEitherSignAndNan_areNoSign) {
  EXPECT_EQ(lettersOf(stretchesOf({0.0F, -0.0F, nan, 0.0F, -nan, -0.0F, 0.0F})), "0000000");
  EXPECT_EQ(stretchesOf({0.0F, -0.0F, nan, 0.0F, -nan, -0.0F, 0.0F}).size(), 1U);
}

TEST(KernelSigns, infinitiesAndTheLeastValues_haveTheirSigns) {
  constexpr float least = std::numeric_limits<float>::denorm_min();
  EXPECT_EQ(lettersOf(stretchesOf({infinity, -infinity, least, -least, nan, least, -infinity})),
            "ktkt0kt");
}

TEST(KernelSigns, rowsBeyondTheKernel_haveNoStretches) {
  const dvKernelSigns signs = signsOf(dvKernelTable(kernelBank(KernelKind::Constant, 5), 1));
  for (int radius = 0; radius <= 5; ++radius) {
    for (const int dy : {radius + 1, -radius - 1, 5000, -5000})
      EXPECT_TRUE(signs.row(radius, dy).empty()) << radius << ", " << dy;
    EXPECT_EQ(signs.row(radius, radius).size(), 1U);
    EXPECT_EQ(signs.row(radius, -radius).size(), 1U);
  }
}

TEST(KernelSigns, rowAboveTheCentre_isTheKernelsRowBeforeItsCentre) {
  dvKernelBank bank = kernelBank(KernelKind::Constant, 2);
  // Row 0 of five rows, which are as wide.
  bank[5].plane(1)[0] = -1.0F;
  const dvKernelSigns signs = signsOf(dvKernelTable(bank, 1));
  EXPECT_EQ(lettersOf(signs.row(2, 2)), "tkkkk");
  EXPECT_EQ(lettersOf(signs.row(2, -2)), "kkkkk");
}

TEST(KernelSigns, emptyTable_hasNoRows) {
  EXPECT_TRUE(signsOf(dvKernelTable({}, 1)).row(0, 1).empty());
}

TEST(KernelSigns, anyNumberOfThreads_findsTheSame) {
  const dvKernelTable kernels(kernelBank(KernelKind::Random, 12), 1);
  const dvKernelSigns together = signsOf(kernels, 3);
  for (int radius = 0; radius <= 12; ++radius) {
    for (int dy = -radius; dy <= radius; ++dy)
      EXPECT_EQ(lettersOf(together.row(radius, dy)), lettersOf(kernels, radius, dy));
  }
}

}  // namespace
}  // namespace drevin::test

#include "defocus/KernelPair.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace drevin::test {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
const float nan = std::nanf("");

/// Entries of their sides, without planes.
dvKernelBank sidesAlone(int size) {
  dvKernelBank bank(static_cast<std::size_t>(size));
  for (int i = 0; i < size; ++i)
    bank[static_cast<std::size_t>(i)].resize(kernelSide(i), {});
  return bank;
}

void expectPair(const dvKernelPair& pair, std::size_t first, std::size_t second, float firstShare) {
  EXPECT_EQ(pair.count, 2);
  EXPECT_EQ(pair.index[0], first);
  EXPECT_EQ(pair.index[1], second);
  EXPECT_FLOAT_EQ(pair.share[0], firstShare);
  EXPECT_NEAR(pair.share[1], 1.0F - firstShare, 1e-6F);
}

void expectLastAlone(const dvKernelPair& pair, const dvKernelBank& bank) {
  EXPECT_EQ(pair.count, 1);
  EXPECT_EQ(pair.index[0], bank.size() - 1);
  EXPECT_EQ(pair.index[1], bank.size() - 1);
  EXPECT_EQ(pair.share[0], 1.0F);
  EXPECT_EQ(pair.share[1], 0.0F);
}

TEST(KernelPair, oddWholeBlur_hasItsOwnEntryWithNothingForTheOther) {
  const dvKernelBank bank = sidesAlone(12);
  for (const int coc : {1, 3, 5, 7, 9}) {
    const auto k = static_cast<std::size_t>(coc);
    const dvKernelPair pair = kernelPair(static_cast<float>(coc), bank);
    expectPair(pair, k, k + 2, 1.0F);
    EXPECT_EQ(pair.share[1], 0.0F);
  }
}

TEST(KernelPair, evenWholeBlur_isHalvedBetweenItsNeighbours) {
  const dvKernelBank bank = sidesAlone(12);
  for (const int coc : {2, 4, 6, 8}) {
    const auto k = static_cast<std::size_t>(coc);
    expectPair(kernelPair(static_cast<float>(coc), bank), k, k + 2, 0.5F);
  }
}

TEST(KernelPair, anyBlurInTheBank_isTheMeanSideOfTheTwo) {
  const dvKernelBank bank = sidesAlone(72);
  for (float coc = 1.0F; coc < 68.0F; coc += 0.0625F) {
    const dvKernelPair pair = kernelPair(coc, bank);
    ASSERT_EQ(pair.count, 2);
    float mean = 0.0F;
    for (int i = 0; i < 2; ++i) {
      EXPECT_GE(pair.share[i], 0.0F) << coc;
      mean += pair.share[i] * static_cast<float>(bank[pair.index[i]].width);
    }
    EXPECT_FLOAT_EQ(mean, coc);
    EXPECT_FLOAT_EQ(pair.share[0] + pair.share[1], 1.0F);
  }
}

TEST(KernelPair, blurBetweenEntries_takesThemByTheWholeBlurBelow) {
  const dvKernelBank bank = sidesAlone(12);
  // Side 3 below both 3.5 and 4.5, side 5 above.
  expectPair(kernelPair(3.5F, bank), 3, 5, 0.75F);
  expectPair(kernelPair(4.5F, bank), 4, 6, 0.25F);
  expectPair(kernelPair(std::nextafter(4.0F, 0.0F), bank), 3, 5, 0.5F);
}

TEST(KernelPair, blurBelowOne_readsEntryOneWithANegativeRest) {
  const dvKernelBank bank = sidesAlone(12);
  for (const float coc : {0.0F, -0.0F, 0.25F, 0.5F, 0.999F}) {
    const dvKernelPair pair = kernelPair(coc, bank);
    expectPair(pair, 1, 2, 1.0F - (coc - 1.0F) * 0.5F);
    EXPECT_LT(pair.share[1], 0.0F) << coc;
  }
}

TEST(KernelPair, secondEntryBeyondTheBank_isTheLast) {
  for (const int size : {8, 9}) {
    const dvKernelBank bank = sidesAlone(size);
    const std::size_t last = bank.size() - 1;
    for (const std::size_t k : {last - 1, last}) {
      const float coc = static_cast<float>(k) + 0.5F;
      expectPair(kernelPair(coc, bank), k, last,
                 1.0F - (coc - static_cast<float>(bank[k].width)) * 0.5F);
    }
    expectPair(
        kernelPair(static_cast<float>(last) - 1.5F, bank), last - 2, last,
        1.0F - (static_cast<float>(last) - 1.5F - static_cast<float>(bank[last - 2].width)) * 0.5F);
  }
}

TEST(KernelPair, blurOfTheBanksSizeOrMore_hasTheLastAlone) {
  const dvKernelBank bank = sidesAlone(8);
  EXPECT_EQ(kernelPair(std::nextafter(8.0F, 0.0F), bank).count, 2);
  for (const float coc : {8.0F, 8.5F, 1000.0F, 1e30F, infinity})
    expectLastAlone(kernelPair(coc, bank), bank);
}

TEST(KernelPair, negativeBlur_hasTheLastAlone) {
  const dvKernelBank bank = sidesAlone(8);
  for (const float coc : {-1e-30F, -0.5F, -1.0F, -1e30F, -infinity})
    expectLastAlone(kernelPair(coc, bank), bank);
}

TEST(KernelPair, nanBlur_hasTheLastAlone) {
  for (const int size : {1, 2, 8, 69}) {
    const dvKernelBank bank = sidesAlone(size);
    expectLastAlone(kernelPair(nan, bank), bank);
  }
}

TEST(KernelPair, bankOfOneEntry_hasNoOther) {
  const dvKernelBank bank = sidesAlone(1);
  for (const float coc : {0.0F, 0.5F, 1.0F, 40.0F}) {
    const dvKernelPair pair = kernelPair(coc, bank);
    EXPECT_EQ(pair.index[0], 0U);
    EXPECT_EQ(pair.index[1], 0U);
    EXPECT_EQ(pair.count, coc < 1.0F ? 2 : 1);
  }
}

TEST(KernelPair, bankOfTwoEntries_holdsBothAtTheLast) {
  const dvKernelBank bank = sidesAlone(2);
  expectPair(kernelPair(0.5F, bank), 1, 1, 1.25F);
  expectPair(kernelPair(1.5F, bank), 1, 1, 0.75F);
}

}  // namespace
}  // namespace drevin::test

#include "engine/KernelTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "engine/RowScene.h"
#include "engine/ThreadParallel.h"

namespace drevin::test {
namespace {

/// A table whose only kernel of radius 3 has the given middle row; all else is zero.
dvKernelTable tableWithRow(const std::vector<float>& values) {
  dvKernelBank bank = kernelBank(KernelKind::Constant, 3);
  for (dvChannelFloatBuffer& entry : bank)
    entry.resize(entry.width, {1});
  std::copy(values.begin(), values.end(), bank[7].plane(1) + 3 * 7);
  return {bank, 1};
}

TEST(KernelTable, everyRadius_hasTheRowsOfTheBank) {
  const dvKernelBank bank = kernelBank(KernelKind::Random, 9);
  const dvKernelTable table(bank, 1);
  ASSERT_EQ(table.largestRadius(), 9);
  EXPECT_FALSE(table.empty());
  for (int radius = 0; radius <= 9; ++radius) {
    const int side = 2 * radius + 1;
    const float* plane = bank[static_cast<std::size_t>(side)].plane(1);
    for (int r = 0; r < side; ++r) {
      for (int c = 0; c < side; ++c)
        EXPECT_EQ(table.row(radius, r)[c], plane[r * side + c]);
    }
  }
}

TEST(KernelTable, everyRow_liesBetweenZeros) {
  const dvKernelTable table(kernelBank(KernelKind::Constant, 9), 1);
  for (int radius = 0; radius <= 9; ++radius) {
    for (int r = 0; r <= 2 * radius; ++r) {
      for (int i = 1; i <= dvKernelPad; ++i) {
        EXPECT_EQ(table.row(radius, r)[-i], 0.0F);
        EXPECT_EQ(table.row(radius, r)[2 * radius + i], 0.0F);
      }
    }
  }
}

TEST(KernelTable, rowsAbove_runAgainstTheKernelsRows) {
  const dvKernelTable table(kernelBank(KernelKind::Random, 9), 1);
  for (int dy = -9; dy <= 9; ++dy) {
    for (int radius = std::abs(dy); radius <= 9; ++radius) {
      const float* centre = table.values() + table.rowsAt(dy)[radius].centre;
      for (int c = -radius; c <= radius; ++c)
        EXPECT_EQ(centre[c], table.row(radius, radius - dy)[radius + c]);
    }
  }
}

TEST(KernelTable, rowsOutOfReach_areZeroAsFarAsTheLargestKernelIsRead) {
  const dvKernelTable table(kernelBank(KernelKind::Constant, 9), 1);
  for (int dy = -9; dy <= 9; ++dy) {
    for (int radius = 0; radius < std::abs(dy); ++radius) {
      const dvKernelRow& row = table.rowsAt(dy)[radius];
      EXPECT_LT(row.end, row.begin);
      for (int c = -9 - dvKernelPad; c <= 9 + dvKernelPad; ++c)
        EXPECT_EQ(table.values()[row.centre + c], 0.0F);
    }
  }
}

TEST(KernelTable, rowWithZeroRims_beginsAndEndsAtItsValues) {
  const dvKernelTable table = tableWithRow({0.0F, -0.0F, -1.0F, 0.0F, 2.0F, 0.0F, 0.0F});
  EXPECT_EQ(table.rowsAt(0)[3].begin, -1);
  EXPECT_EQ(table.rowsAt(0)[3].end, 2);
}

TEST(KernelTable, longestConstantStretch_isFound) {
  const dvKernelTable table = tableWithRow({1.0F, 1.0F, 2.0F, 2.0F, 2.0F, 1.0F, 0.0F});
  EXPECT_EQ(table.constant(3, 3).begin, 2);
  EXPECT_EQ(table.constant(3, 3).end, 5);
  const dvKernelRow& row = table.rowsAt(0)[3];
  EXPECT_EQ(row.constantBegin, -1);
  EXPECT_EQ(row.constantEnd, 2);
  EXPECT_EQ(row.constantValue, 2.0F);
}

TEST(KernelTable, stretchOfZeros_isNoConstantStretch) {
  const dvKernelTable table = tableWithRow({1.0F, 0.0F, 0.0F, 0.0F, 0.0F, 3.0F, 3.0F});
  EXPECT_EQ(table.constant(3, 3).begin, 5);
  EXPECT_EQ(table.constant(3, 3).end, 7);
}

TEST(KernelTable, valuesOneBitApart_areNotConstant) {
  const float next = std::nextafter(1.0F, 2.0F);
  const dvKernelTable table = tableWithRow({1.0F, 1.0F, next, next, next, next, 1.0F});
  EXPECT_EQ(table.constant(3, 3).begin, 2);
  EXPECT_EQ(table.constant(3, 3).end, 6);
}

TEST(KernelTable, rowOfZeros_hasNoStretch) {
  const dvKernelTable table = tableWithRow({});
  EXPECT_EQ(table.constant(3, 3).begin, table.constant(3, 3).end);
  EXPECT_LT(table.rowsAt(0)[3].end, table.rowsAt(0)[3].begin);
}

TEST(KernelTable, everyStretch_isConstantAndCannotGrow) {
  for (const KernelKind kind : {KernelKind::Disc, KernelKind::Random, KernelKind::Constant,
                                KernelKind::BlankEdges, KernelKind::SeveralSteps}) {
    const dvKernelTable table(kernelBank(kind, 20), 1);
    for (int radius = 0; radius <= 20; ++radius) {
      for (int r = 0; r <= 2 * radius; ++r) {
        const float* row = table.row(radius, r);
        const dvConstantStretch stretch = table.constant(radius, r);
        for (int c = stretch.begin; c < stretch.end; ++c)
          EXPECT_EQ(row[c], row[stretch.begin]);
        if (stretch.begin == stretch.end) continue;
        EXPECT_NE(row[stretch.begin - 1], row[stretch.begin]);
        EXPECT_NE(row[stretch.end], row[stretch.begin]);
      }
    }
  }
}

TEST(KernelTable, sameBank_givesEqualTables) {
  const dvKernelBank bank = kernelBank(KernelKind::Random, 5);
  EXPECT_TRUE(dvKernelTable(bank, 1) == dvKernelTable(bank, 1));
}

TEST(KernelTable, anyNumberOfThreads_givesTheSameTable) {
  const dvKernelBank bank = kernelBank(KernelKind::Random, 30);
  const dvKernelTable alone(bank, 1);
  for (const int threads : {1, 2, 5}) {
    ThreadParallel parallel(threads);
    const dvKernelTable table(bank, 1, parallel);
    EXPECT_TRUE(table == alone);
    for (int dy = -30; dy <= 30; ++dy) {
      for (int radius = 0; radius <= 30; ++radius) {
        EXPECT_EQ(table.rowsAt(dy)[radius].centre, alone.rowsAt(dy)[radius].centre);
        EXPECT_EQ(table.rowsAt(dy)[radius].begin, alone.rowsAt(dy)[radius].begin);
        EXPECT_EQ(table.rowsAt(dy)[radius].constantEnd, alone.rowsAt(dy)[radius].constantEnd);
      }
    }
  }
}

TEST(KernelTable, oneValueApart_isUnequal) {
  dvKernelBank bank = kernelBank(KernelKind::Random, 5);
  const dvKernelTable before(bank, 1);
  bank[11].plane(1)[17] += 1.0F;
  EXPECT_FALSE(before == dvKernelTable(bank, 1));
}

TEST(KernelTable, zerosOfOtherSign_areUnequal) {
  const dvKernelTable positive = tableWithRow({1.0F, 0.0F});
  EXPECT_FALSE(positive == tableWithRow({1.0F, -0.0F}));
}

TEST(KernelTable, fewerRadii_areUnequal) {
  const dvKernelBank bank = kernelBank(KernelKind::Constant, 5);
  const dvKernelBank fewer(bank.begin(), bank.begin() + 8);
  EXPECT_FALSE(dvKernelTable(bank, 1) == dvKernelTable(fewer, 1));
}

TEST(KernelTable, copy_readsItsOwnValues) {
  const dvKernelBank bank = kernelBank(KernelKind::Random, 5);
  dvKernelTable copy(kernelBank(KernelKind::Constant, 1), 1);
  {
    const dvKernelTable original(bank, 1);
    copy = original;
    EXPECT_NE(copy.values(), original.values());
  }
  EXPECT_TRUE(copy == dvKernelTable(bank, 1));
  EXPECT_EQ(copy.values()[copy.rowsAt(0)[5].centre], bank[11].plane(1)[5 * 11 + 5]);
}

TEST(KernelTable, emptyBank_givesAnEmptyTable) {
  const dvKernelTable table(dvKernelBank{}, 1);
  EXPECT_TRUE(table.empty());
  EXPECT_EQ(table.largestRadius(), -1);
}

TEST(KernelTable, channelWithoutPlanes_givesAnEmptyTable) {
  const dvKernelBank bank = kernelBank(KernelKind::Constant, 2);
  EXPECT_TRUE(dvKernelTable(bank, 2).empty());
  EXPECT_TRUE(dvKernelTable(bank, -1).empty());
}

TEST(KernelTable, valuesThatAreNotFinite_areKnownByTheirRadius) {
  for (const float value :
       {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
        -std::numeric_limits<float>::infinity()}) {
    dvKernelBank bank = kernelBank(KernelKind::Disc, 9);
    // The last value of the kernel of radius 6.
    bank[13].plane(1)[13 * 13 - 1] = value;
    const dvKernelTable table(bank, 1);
    for (int radius = 0; radius <= 9; ++radius)
      EXPECT_EQ(table.isFinite(radius), radius != 6) << radius;
  }
}

TEST(KernelTable, greatestFiniteValues_areFinite) {
  dvKernelBank bank = kernelBank(KernelKind::Constant, 3);
  std::fill_n(bank[7].plane(1), 49, std::numeric_limits<float>::max());
  EXPECT_TRUE(dvKernelTable(bank, 1).isFinite(3));
}

TEST(KernelTable, stretchThatIsNotFinite_isNoConstantStretch) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const dvConstantStretch stretch =
      tableWithRow({nan, nan, nan, nan, 0.5F, 0.5F, 0.25F}).constant(3, 3);
  EXPECT_EQ(stretch.begin, 4);
  EXPECT_EQ(stretch.end, 6);
}

}  // namespace
}  // namespace drevin::test

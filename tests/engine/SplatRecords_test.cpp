#include "engine/SplatRecords.h"

#include <gtest/gtest.h>

#include <limits>

namespace drevin::test {
namespace {

/// Records of two slices: columns -5, 0, 0, 3 and 1, 7.
dvSplatRow twoSlices() {
  dvSplatRow row;
  for (const int x : {-5, 0, 0, 3, 1, 7})
    row.records.push_back({x, 0, 1.0F, 0.0F});
  row.sliceBegin = {0, 4, 6};
  return row;
}

void expectRange(const dvRecordRange& range, std::size_t begin, std::size_t end) {
  EXPECT_EQ(range.begin, begin);
  EXPECT_EQ(range.end, end);
}

TEST(SplatRecords, columnsWithin_areFromTheLeftUpToTheRight) {
  const dvSplatRow row = twoSlices();
  expectRange(row.within(0, -5, 0), 0, 1);
  expectRange(row.within(0, 0, 1), 1, 3);
  expectRange(row.within(0, -4, 4), 1, 4);
  expectRange(row.within(0, 3, 3), 3, 3);
}

TEST(SplatRecords, within_keepsToItsSlice) {
  const dvSplatRow row = twoSlices();
  expectRange(row.within(0, -100, 100), 0, 4);
  expectRange(row.within(1, -100, 100), 4, 6);
  expectRange(row.within(1, -100, 1), 4, 4);
  expectRange(row.within(1, 8, 100), 6, 6);
}

TEST(SplatRecords, columnsBeyondAnyInt_areAllowed) {
  constexpr std::int64_t least = std::numeric_limits<int>::min();
  constexpr std::int64_t most = std::numeric_limits<int>::max();
  expectRange(twoSlices().within(0, least - 1000, most + 1000), 0, 4);
}

TEST(SplatRecords, emptySlice_hasNothingWithin) {
  dvSplatRow row;
  row.sliceBegin = {0, 0, 0};
  expectRange(row.within(0, -100, 100), 0, 0);
  expectRange(row.within(1, -100, 100), 0, 0);
}

}  // namespace
}  // namespace drevin::test

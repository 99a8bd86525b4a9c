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

/// Two values a record, which tell its place before.
dvSplatRow disordered() {
  dvSplatRow row;
  for (const int x : {3, -5, 3, 0, 7, 1}) {
    const auto place = static_cast<float>(row.records.size());
    row.records.push_back({x, 0, 1.0F, 0.0F});
    row.values.insert(row.values.end(), {place, -place});
  }
  row.sliceBegin = {0, 4, 4, 6};
  return row;
}

TEST(SplatRecords, disorderedSlices_areSortedEachByItself) {
  dvSplatRow row = disordered();
  row.sortByColumn();
  std::vector<int> columns;
  for (const dvSplatRecord& record : row.records)
    columns.push_back(record.x);
  EXPECT_EQ(columns, (std::vector<int>{-5, 0, 3, 3, 1, 7}));
  EXPECT_EQ(row.values, (std::vector<float>{1, -1, 3, -3, 0, -0.0F, 2, -2, 5, -5, 4, -4}));
  EXPECT_EQ(row.sliceBegin, (std::vector<std::uint32_t>{0, 4, 4, 6}));
}

TEST(SplatRecords, recordsInOrder_stayAsTheyAre) {
  dvSplatRow row = twoSlices();
  row.values = {1, 2, 3, 4, 5, 6};
  row.sortByColumn();
  EXPECT_EQ(row.values, (std::vector<float>{1, 2, 3, 4, 5, 6}));
}

TEST(SplatRecords, noRecords_areSorted) {
  dvSplatRow row;
  row.sortByColumn();
  row.sliceBegin = {0, 0, 0};
  row.sortByColumn();
  EXPECT_TRUE(row.records.empty());
}

}  // namespace
}  // namespace drevin::test

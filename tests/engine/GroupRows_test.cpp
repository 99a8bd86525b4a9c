#include "engine/GroupRows.h"

#include <gtest/gtest.h>

#include <limits>

#include "engine/ThreadParallel.h"

namespace drevin::test {
namespace {

/// Splats of two slices centred on a row, `count` in the second.
dvCentredSplats centredOn(int y, int count) {
  dvCentredSplats splats;
  splats.centreY = y;
  for (int i = 0; i < count; ++i) {
    splats.row.records.push_back({i, 2, 1.0F, 0.0F});
    splats.row.values.push_back(1.0F);
  }
  splats.row.sliceBegin = {0, 0, static_cast<std::uint32_t>(count)};
  return splats;
}

/// Source rows 10 to 13, of which 12 is not known; those of 11 are centred on 11 and 14.
class Lines {
 public:
  Lines() {
    for (dvSplatLine& line : lines_)
      line.groups.resize(1);
    lines_[0].groups[0] = {centredOn(10, 3)};
    lines_[1].groups[0] = {centredOn(11, 1), centredOn(14, 2)};
    lines_[3].groups[0] = {centredOn(13, 0)};
  }
  dvGroupRows rows(int padding = 2) const {
    ThreadParallel parallel(2);
    return {{&lines_[0], &lines_[1], nullptr, &lines_[3]}, 0, 10, padding, parallel};
  }
  dvSplatLine& operator[](std::size_t line) { return lines_[line]; }

 private:
  std::vector<dvSplatLine> lines_ = std::vector<dvSplatLine>(4);
};

std::vector<int> centresOf(const dvGroupRows& rows, const dvGroupRows::Span& span) {
  std::vector<int> centres;
  for (const std::size_t row : span)
    centres.push_back(rows[row].splats->centreY);
  return centres;
}

TEST(GroupRows, rows_areBySourceThenCentre) {
  const Lines lines;
  const dvGroupRows rows = lines.rows();
  ASSERT_EQ(rows.size(), 4U);
  const int sources[] = {10, 11, 11, 13};
  const int shifts[] = {0, 0, 3, 0};
  for (std::size_t row = 0; row < 4; ++row) {
    EXPECT_EQ(rows[row].sourceY, sources[row]);
    EXPECT_EQ(rows[row].shift(), shifts[row]);
  }
  EXPECT_EQ(rows.greatestShift(), 3);
}

TEST(GroupRows, reaching_isByTheSourceWhateverTheCentre) {
  const Lines lines;
  const dvGroupRows rows = lines.rows(2);
  const auto reaching = [&](int y) {
    const dvRecordRange range = rows.reaching(y);
    return std::make_pair(range.begin, range.end);
  };
  EXPECT_EQ(reaching(7), std::make_pair(std::size_t{0}, std::size_t{0}));
  EXPECT_EQ(reaching(8), std::make_pair(std::size_t{0}, std::size_t{1}));
  EXPECT_EQ(reaching(12), std::make_pair(std::size_t{0}, std::size_t{4}));
  EXPECT_EQ(reaching(13), std::make_pair(std::size_t{1}, std::size_t{4}));
  EXPECT_EQ(reaching(15), std::make_pair(std::size_t{3}, std::size_t{4}));
  EXPECT_EQ(reaching(16), std::make_pair(std::size_t{4}, std::size_t{4}));
}

TEST(GroupRows, centred_areTheRowsOfTheirCentresInOrder) {
  const Lines lines;
  const dvGroupRows rows = lines.rows();
  EXPECT_EQ(centresOf(rows, rows.centred(0, 100)), (std::vector<int>{10, 11, 13, 14}));
  EXPECT_EQ(centresOf(rows, rows.centred(11, 14)), (std::vector<int>{11, 13}));
  EXPECT_EQ(centresOf(rows, rows.centred(15, 99)), std::vector<int>{});
}

TEST(GroupRows, emptySlices_areKnown) {
  const Lines lines;
  EXPECT_TRUE(lines.rows().isEmpty(0));
  EXPECT_FALSE(lines.rows().isEmpty(1));
}

TEST(GroupRows, specialSplats_emptyNoSlice) {
  Lines lines;
  EXPECT_FALSE(lines.rows().hasSpecials());
  lines[3].groups[0].front().specials.emplace_back();
  EXPECT_TRUE(lines.rows().hasSpecials());
  EXPECT_FALSE(lines.rows().isEmpty(0));
}

TEST(GroupRows, reach_isThatOfTheRow) {
  const Lines lines;
  const dvGroupRows rows = lines.rows();
  EXPECT_EQ(rows.reach(0).largest(0, 3), 2);
  EXPECT_EQ(rows.reach(2).largest(0, 2), 2);
}

TEST(GroupRows, largestRadius_isThatOfTheSlice) {
  const Lines lines;
  EXPECT_EQ(lines.rows().largestRadius(0), -1);
  EXPECT_EQ(lines.rows().largestRadius(1), 2);
}

TEST(GroupRows, lastValueOfAllSplats_isOneOrNot) {
  Lines lines;
  EXPECT_FALSE(lines.rows().lastIsOne());
  for (const std::size_t line : {0, 1, 3}) {
    for (dvCentredSplats& splats : lines[line].groups[0])
      splats.lastIsOne = true;
  }
  EXPECT_TRUE(lines.rows().lastIsOne());
}

TEST(GroupRows, centresFarOff_haveAShiftThatDoesNotOverflow) {
  for (const int centreY : {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    Lines lines;
    lines[3].groups[0] = {centredOn(centreY, 2)};
    const dvGroupRows rows = lines.rows();
    EXPECT_GT(rows.greatestShift(), 1000000);
    EXPECT_EQ(rows[3].shift() < 0, centreY < 0);
  }
}

TEST(GroupRows, noLines_haveNoRows) {
  ThreadParallel parallel(1);
  const dvGroupRows rows({}, 0, 10, 2, parallel);
  EXPECT_EQ(rows.size(), 0U);
  EXPECT_EQ(rows.reaching(10).begin, rows.reaching(10).end);
  EXPECT_TRUE(rows.isEmpty(0));
}

}  // namespace
}  // namespace drevin::test

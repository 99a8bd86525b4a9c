#include "engine/DirectSums.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "engine/RowScene.h"
#include "support/Draw.h"

namespace drevin::test {
namespace {

constexpr int largestRadius = 6;
constexpr int padding = 7;
constexpr int bottom = 20;  ///< first source row
constexpr int sourceRows = 30;
constexpr int left = -5;
constexpr int right = 60;
constexpr int channels = 2;
constexpr float infinity = std::numeric_limits<float>::infinity();
const float nan = std::nanf("");

using Sums = std::vector<std::vector<double>>;

Sums zeros() {
  return Sums(channels + 1, std::vector<double>(right - left, 0.0));
}

dvCentredSplats centredOn(int y) {
  dvCentredSplats splats;
  splats.centreY = y;
  splats.row.sliceBegin.assign(3, 0);
  return splats;
}

/// Source rows of one group with two slices, at first without splats.
class Rows {
 public:
  Rows() : lines_(sourceRows) {
    for (int i = 0; i < sourceRows; ++i) {
      line(bottom + i).groups.resize(1);
      line(bottom + i).groups[0] = {centredOn(bottom + i)};
    }
  }

  dvSplatLine& line(int y) { return lines_[static_cast<std::size_t>(y - bottom)]; }
  dvCentredSplats& row(int y) { return line(y).groups[0].front(); }
  const dvKernelBank& bank() const { return bank_; }
  const dvKernelTable& kernels() const { return kernels_; }

  /// Splats of each slice, by ascending column, in every row.
  void draw(unsigned seed) {
    Draw draw(seed);
    for (int y = bottom; y < bottom + sourceRows; ++y) {
      for (std::uint32_t slice = 0; slice < 2; ++slice)
        drawSlice(draw, slice, row(y).row);
    }
  }
  dvGroupRows rows() const {
    dvSplatLines places;
    for (const dvSplatLine& line : lines_)
      places.push_back(&line);
    dvSerial serial;
    return {places, 0, bottom, padding, serial};
  }

 private:
  static void drawSlice(Draw& draw, std::uint32_t slice, dvSplatRow& row) {
    for (int x = left - 20; x < right + 20; x += draw.whole(1, 9)) {
      row.records.push_back(
          {x, draw.whole(0, largestRadius - 1), draw.real(0.1F, 1.0F), draw.real(0.0F, 0.5F)});
      row.values.insert(row.values.end(), {draw.real(0.0F, 1.0F), draw.real(-1.0F, 1.0F)});
    }
    row.sliceBegin[slice + 1] = static_cast<std::uint32_t>(row.records.size());
  }

  dvKernelBank bank_ = kernelBank(KernelKind::Random, largestRadius);
  dvKernelTable kernels_{bank_, 1};
  std::vector<dvSplatLine> lines_;
};

/// K(dx, dy) of a radius; 0 outside the kernel.
double kernelAt(const dvKernelBank& bank, int radius, int dx, int dy) {
  if (std::abs(dx) > radius || std::abs(dy) > radius) return 0.0;
  const dvChannelFloatBuffer& kernel = bank[2 * static_cast<std::size_t>(radius) + 1];
  return static_cast<double>(kernel.plane(1)[(radius - dy) * kernel.width + radius + dx]);
}

void addByFormula(const dvKernelBank& bank, const dvSplatRecord& record, const float* values,
                  int dy, Sums& sums) {
  for (int x = left; x < right; ++x) {
    const int dx = x - record.x;
    const double k = static_cast<double>(record.near) * kernelAt(bank, record.radius, dx, dy) +
                     static_cast<double>(record.far) * kernelAt(bank, record.radius + 1, dx, dy);
    const auto at = static_cast<std::size_t>(x - left);
    for (std::size_t c = 0; c < channels; ++c)
      sums[c][at] += k * static_cast<double>(values[c]);
    sums[channels][at] += k;
  }
}

/// The sums of a row by the formula: every splat of a slice whose source is within the padding.
Sums formula(Rows& rows, std::size_t slice, int y) {
  Sums sums = zeros();
  for (int source = bottom; source < bottom + sourceRows; ++source) {
    if (std::abs(source - y) > padding) continue;
    for (const dvCentredSplats& splats : rows.line(source).groups[0]) {
      const dvSplatRow& row = splats.row;
      for (std::size_t i = row.begin(slice); i < row.end(slice); ++i)
        addByFormula(rows.bank(), row.records[i], &row.values[channels * i], y - splats.centreY,
                     sums);
    }
  }
  return sums;
}

Sums summed(const Rows& rows, std::size_t slice, int y, dvRowSums& sums) {
  sumSplats(rows.rows(), rows.kernels(), slice, y, sums);
  Sums planes = zeros();
  for (int p = 0; p <= channels; ++p)
    sums.store(p, planes[static_cast<std::size_t>(p)].data());
  return planes;
}

void expectNear(const Sums& sums, const Sums& wanted, int y) {
  for (std::size_t p = 0; p < wanted.size(); ++p) {
    for (std::size_t i = 0; i < wanted[p].size(); ++i)
      EXPECT_NEAR(sums[p][i], wanted[p][i], 1e-5) << "plane " << p << ", row " << y;
  }
}

/// Source row and dy of what reaches a row.
std::vector<std::pair<int, int>> reaching(const Rows& rows, int y) {
  std::vector<std::pair<int, int>> found;
  const dvGroupRows made = rows.rows();
  forEachReaching(made, rows.kernels(), y,
                  [&](std::size_t row, int dy) { found.emplace_back(made[row].sourceY, dy); });
  return found;
}

TEST(DirectSums, rowsWithinTheLargestRadius_reachSourceRowBySourceRow) {
  const Rows rows;
  std::vector<std::pair<int, int>> wanted;
  for (int source = 30 - largestRadius; source <= 30 + largestRadius; ++source)
    wanted.emplace_back(source, 30 - source);
  // The padding is one row more: none of the kernels is as large.
  EXPECT_EQ(reaching(rows, 30), wanted);
}

TEST(DirectSums, shiftedCentres_countByTheCentreWithinThePaddingOfTheSource) {
  Rows rows;
  rows.row(32).centreY = 32 + 5;
  rows.row(25).centreY = 25 + 5;
  rows.row(22).centreY = 22 + 7;  // its source is 8 rows off
  std::vector<std::pair<int, int>> found;
  for (const auto& [source, dy] : reaching(rows, 30)) {
    if (source != 30 - dy) found.emplace_back(source, dy);
  }
  EXPECT_EQ(found, (std::vector<std::pair<int, int>>{{25, 0}}));
}

TEST(DirectSums, centresFarOff_doNotReach) {
  for (const int far : {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    Rows rows;
    for (int y = bottom; y < bottom + sourceRows; ++y)
      rows.row(y).centreY = far;
    EXPECT_TRUE(reaching(rows, 30).empty()) << far;
    EXPECT_TRUE(reaching(rows, bottom).empty()) << far;
  }
}

TEST(DirectSums, rowsBeyondThePadding_reachNothing) {
  const Rows rows;
  for (const int y : {-1000, bottom - padding - 1, bottom + sourceRows + padding, 5000})
    EXPECT_TRUE(reaching(rows, y).empty()) << y;
}

TEST(DirectSums, splatsOfASlice_areTheSumsOfTheFormula) {
  Rows rows;
  rows.draw(1);
  dvRowSums sums(channels, left, right);
  for (const int y : {bottom - 6, bottom, 31, bottom + sourceRows - 1, bottom + sourceRows + 5}) {
    for (const std::size_t slice : {0U, 1U})
      expectNear(summed(rows, slice, y, sums), formula(rows, slice, y), y);
  }
}

TEST(DirectSums, shiftedRows_areTheSumsOfTheFormula) {
  Rows rows;
  rows.draw(2);
  for (int y = bottom; y < bottom + sourceRows; ++y) {
    // Two rows of centres for every source row.
    rows.line(y).groups[0].push_back(rows.row(y));
    rows.row(y).centreY = y - 3;
  }
  dvRowSums sums(channels, left, right);
  for (const int y : {bottom, 30, bottom + sourceRows - 2})
    expectNear(summed(rows, 1, y, sums), formula(rows, 1, y), y);
}

TEST(DirectSums, splatsCentredOutOfReach_changeNoBit) {
  Rows near;
  near.draw(3);
  Rows all;
  all.draw(3);
  for (int y = bottom; y < bottom + sourceRows; ++y) {
    dvSplatRow& row = all.row(y).row;
    row.records.insert(row.records.begin(), {-4000, 5, 1.0F, 0.0F});
    row.values.insert(row.values.begin(), {1.0F, 1.0F});
    row.records.push_back({4000, 5, 1.0F, 0.0F});
    row.values.insert(row.values.end(), {1.0F, 1.0F});
    row.sliceBegin[1] += 1;
    row.sliceBegin[2] += 2;
  }
  dvRowSums sums(channels, left, right);
  for (const std::size_t slice : {0U, 1U})
    EXPECT_EQ(summed(all, slice, 30, sums), summed(near, slice, 30, sums));
}

TEST(DirectSums, sumsOfARow_doNotStayForTheNext) {
  Rows rows;
  rows.draw(4);
  dvRowSums used(channels, left, right);
  summed(rows, 0, 25, used);
  dvRowSums fresh(channels, left, right);
  EXPECT_EQ(summed(rows, 1, 33, used), summed(rows, 1, 33, fresh));
}

TEST(DirectSums, specialSplats_areLeftToTheirOwnSums) {
  Rows rows;
  rows.row(30).specials = {{0, 10, {3, 0}, {1.0F, 0.0F}, {nan, 1.0F}}};
  dvRowSums sums(channels, left, right);
  EXPECT_EQ(summed(rows, 0, 30, sums), zeros());
}

TEST(DirectSums, specials_areAddedByRowAndSlice) {
  Rows rows;
  rows.row(28).specials = {{0, 10, {3, 0}, {0.5F, 0.0F}, {2.0F, -1.0F}},
                           {1, 10, {3, 0}, {9.0F, 0.0F}, {9.0F, 9.0F}}};
  rows.row(33).specials = {{0, 12, {5, 6}, {0.25F, 0.75F}, {4.0F, 8.0F}}};
  Sums sums = zeros();
  Sums wanted = zeros();
  for (int x = left; x < right; ++x) {
    const auto at = static_cast<std::size_t>(x - left);
    const double first = 0.5 * kernelAt(rows.bank(), 3, x - 10, 30 - 28);
    const double second = 0.25 * kernelAt(rows.bank(), 5, x - 12, 30 - 33) +
                          0.75 * kernelAt(rows.bank(), 6, x - 12, 30 - 33);
    wanted[0][at] = sums[0][at] = 3.0;  // they add to what is there
    wanted[0][at] += 2.0 * first + 4.0 * second;
    wanted[1][at] = -first + 8.0 * second;
    wanted[2][at] = first + second;
  }
  addSpecials(rows.rows(), rows.kernels(), 0, 30, left, right, sums);
  expectNear(sums, wanted, 30);
  Sums none = zeros();
  addSpecials(rows.rows(), rows.kernels(), 0, 40, left, right, none);
  EXPECT_EQ(none, zeros());
}

/// What the not finite values of a slice leave in row 30 of the first channel, as letters.
std::string lettersOf(const Rows& rows, std::size_t slice) {
  dvSerial serial;
  Sums sums = zeros();
  addNotFinite(rows.rows(), rows.kernels(), dvKernelSigns(rows.kernels(), serial), slice, 30, left,
               right, sums);
  EXPECT_EQ(sums[1], zeros()[1]);
  EXPECT_EQ(sums[2], zeros()[2]);
  std::string letters;
  for (const double sum : sums[0])
    letters += std::isnan(sum) ? 'n' : std::isfinite(sum) ? '.' : sum > 0.0 ? 'u' : 'd';
  return letters;
}

TEST(DirectSums, valuesThatAreNotFinite_reachByTheSignsOfTheirKernelRow) {
  Rows rows;
  rows.row(28).notFinite = {{0, 10, 1, {4, -1}, {infinity, 0.0F}}};
  std::string wanted;
  for (int x = left; x < right; ++x) {
    const double k = kernelAt(rows.bank(), 4, x - 10, 2);
    const bool reached = std::abs(x - 10) <= 4;
    wanted += !reached ? '.' : k > 0.0 ? 'u' : k < 0.0 ? 'd' : 'n';
  }
  EXPECT_NE(wanted.find('u'), std::string::npos);
  EXPECT_EQ(lettersOf(rows, 0), wanted);
}

TEST(DirectSums, valuesThatAreNotFinite_reachFromSeveralRowsInTheirSlice) {
  Rows rows;
  rows.row(25).notFinite = {{0, 3, 2, {6, -1}, {nan, 0.0F}}, {1, 20, 1, {6, -1}, {nan, 0.0F}}};
  rows.row(35).notFinite = {{0, 40, 1, {6, -1}, {nan, 0.0F}}, {0, 55, 1, {4, -1}, {nan, 0.0F}}};
  std::string wanted(right - left, '.');
  for (int x = 3 - 6; x <= 4 + 6; ++x)
    wanted[static_cast<std::size_t>(x - left)] = 'n';
  for (int x = 40 - 6; x <= 40 + 6; ++x)
    wanted[static_cast<std::size_t>(x - left)] = 'n';
  EXPECT_EQ(lettersOf(rows, 0), wanted);
  std::string other(right - left, '.');
  for (int x = 20 - 6; x <= 20 + 6; ++x)
    other[static_cast<std::size_t>(x - left)] = 'n';
  EXPECT_EQ(lettersOf(rows, 1), other);
}

TEST(DirectSums, finiteValues_leaveNothingNotFinite) {
  Rows rows;
  rows.draw(5);
  EXPECT_EQ(lettersOf(rows, 0), std::string(right - left, '.'));
}

}  // namespace
}  // namespace drevin::test

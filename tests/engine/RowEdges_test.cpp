#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "engine/RowCode.h"
#include "engine/SimdLevels.h"
#include "support/Draw.h"

namespace drevin::test {
namespace {

constexpr int cells = 6;
constexpr int columns = cells * dvCellColumns;

/// Splats of one run and their values.
struct Splats {
  int channels = 2;
  dvRowRun run{};
  std::vector<dvRowRecord> records;
  std::vector<float> values;

  void add(int x, float near, float far) {
    records.push_back({nullptr, near, far, x});
    for (int p = 0; p < channels; ++p)
      values.push_back(0.5F + static_cast<float>(p) + 0.125F * static_cast<float>(records.size()));
  }
  /// The run, with its places in the lists as they now are.
  dvRowRun made() {
    for (std::size_t i = 0; i < records.size(); ++i)
      records[i].values = values.data() + i * static_cast<std::size_t>(channels);
    dvRowRun all = run;
    all.records = records.data();
    all.count = static_cast<int>(records.size());
    return all;
  }
};

/// Splats whose inner parts are the columns x + [begin, end), with 0.5 and 0.25 as their constants.
Splats splatsOfInner(int begin, int end, int channels = 2) {
  Splats splats;
  splats.channels = channels;
  splats.run.begin = begin - 3;
  splats.run.end = end + 3;
  splats.run.innerBegin = begin;
  splats.run.innerEnd = end;
  splats.run.nearInner = 0.5F;
  splats.run.farInner = 0.25F;
  return splats;
}

using Planes = std::vector<std::vector<double>>;

/// What each cell has of inner parts: a plane for each value, then weight and count.
Planes innerParts(Splats& splats) {
  Planes planes(static_cast<std::size_t>(splats.channels + dvEdgeExtras),
                std::vector<double>(cells, 0.0));
  const dvRowRun run = splats.made();
  for (const dvRowRecord& record : splats.records) {
    const double k = static_cast<double>(record.near) * static_cast<double>(run.nearInner) +
                     static_cast<double>(record.far) * static_cast<double>(run.farInner);
    for (int cell = 0; cell < cells; ++cell) {
      const int left = cell * dvCellColumns;
      if (left < record.x + run.innerBegin || left + dvCellColumns > record.x + run.innerEnd)
        continue;
      const auto at = static_cast<std::size_t>(cell);
      for (int p = 0; p < splats.channels; ++p)
        planes[static_cast<std::size_t>(p)][at] += k * static_cast<double>(record.values[p]);
      planes[planes.size() - 2][at] += k;
      planes.back()[at] += 1.0;
    }
  }
  return planes;
}

/// The same from the edges that the vector code of a level leaves, summed up from the left.
Planes summedEdges(Splats& splats, dvSimdLevel level) {
  const auto extent = static_cast<std::size_t>(splats.channels + dvEdgeExtras);
  std::vector<double> edges(extent * (cells + 1), 0.0);
  const dvRowRun run = splats.made();
  rowCode(level).addInnerEdges(&run, 1, {nullptr, edges.data(), splats.channels, cells});
  Planes planes(extent, std::vector<double>(cells));
  for (std::size_t p = 0; p < extent; ++p) {
    double running = 0.0;
    for (std::size_t cell = 0; cell < cells; ++cell)
      planes[p][cell] = running += edges[cell * extent + p];
    EXPECT_NEAR(running + edges[cells * extent + p], 0.0, 1e-12) << "what begins also ends";
  }
  return planes;
}

/// Compares at every instruction set; gives back how many cells have any inner part.
int expectInnerParts(Splats& splats) {
  const Planes wanted = innerParts(splats);
  for (const dvSimdLevel level : usableLevels()) {
    const Planes sums = summedEdges(splats, level);
    EXPECT_EQ(sums.back(), wanted.back()) << simdLevelName(level);
    for (std::size_t p = 0; p < wanted.size(); ++p) {
      for (std::size_t cell = 0; cell < cells; ++cell)
        EXPECT_NEAR(sums[p][cell], wanted[p][cell], 1e-12)
            << simdLevelName(level) << ", plane " << p << ", cell " << cell;
    }
  }
  return static_cast<int>(
      std::count_if(wanted.back().begin(), wanted.back().end(), [](double n) { return n > 0.0; }));
}

TEST(RowEdges, wholeCellsWithinAnInnerPart_haveIt) {
  Splats splats = splatsOfInner(-20, 21);
  splats.add(40, 0.75F, 0.5F);  // columns [20, 61): the cells [32, 48)
  EXPECT_EQ(expectInnerParts(splats), 1);
  Splats exact = splatsOfInner(-16, 16);
  exact.add(32, 0.75F, 0.5F);
  EXPECT_EQ(expectInnerParts(exact), 2);
}

TEST(RowEdges, innerPartWithoutAWholeCell_addsNothing) {
  Splats splats = splatsOfInner(-12, 13);
  for (const int x : {29, 34, 61})
    splats.add(x, 0.75F, 0.5F);
  EXPECT_EQ(expectInnerParts(splats), 0);
}

TEST(RowEdges, runWithoutAnInnerPart_addsNothing) {
  Splats splats = splatsOfInner(30, 30);
  splats.add(2, 1.0F, 1.0F);
  EXPECT_EQ(expectInnerParts(splats), 0);
}

TEST(RowEdges, innerPartsAcrossTheEnds_areClipped) {
  Splats splats = splatsOfInner(-40, 41);
  for (const int x : {-60, -41, -20, 0, columns - 20, columns + 24, columns + 60})
    splats.add(x, 0.5F, 0.5F);
  EXPECT_GT(expectInnerParts(splats), 0);
  Splats whole = splatsOfInner(-200, 201);
  whole.add(50, 0.5F, 0.25F);
  EXPECT_EQ(expectInnerParts(whole), cells);
}

TEST(RowEdges, innerPartsBesideTheRow_addNothing) {
  Splats splats = splatsOfInner(-40, 41);
  for (const int x : {-500, -41, columns + 40, columns + 500})
    splats.add(x, 0.5F, 0.5F);
  EXPECT_EQ(expectInnerParts(splats), 0);
}

TEST(RowEdges, manySplatsOfACell_addUp) {
  Splats splats = splatsOfInner(-24, 25);
  for (int i = 0; i < 40; ++i)
    splats.add(30 + i / 8, 0.5F, 0.01F * static_cast<float>(i));
  EXPECT_EQ(expectInnerParts(splats), 2);
}

TEST(RowEdges, splatWithoutShares_isCountedAllTheSame) {
  Splats splats = splatsOfInner(-40, 41);
  splats.add(40, 0.0F, 0.0F);
  EXPECT_EQ(expectInnerParts(splats), 5);
}

TEST(RowEdges, everyNumberOfPlanes_isAdded) {
  for (int channels = 1; channels <= 15; ++channels) {
    Splats splats = splatsOfInner(-30, 26, channels);
    for (const int x : {5, 6, 22, 40, 41, 90})
      splats.add(x, 0.25F, 0.5F);
    EXPECT_GT(expectInnerParts(splats), 0) << channels;
  }
}

TEST(RowEdges, drawnSplats_haveTheInnerPartsOfTheFormula) {
  Draw draw(11);
  for (int trial = 0; trial < 50; ++trial) {
    Splats splats = splatsOfInner(-draw.whole(1, 60), draw.whole(1, 60), draw.whole(1, 7));
    int x = -50;
    for (int i = 0; i < 60; ++i)
      splats.add(x += draw.whole(0, 5), draw.real(0.0F, 1.0F), draw.real(0.0F, 1.0F));
    expectInnerParts(splats);
  }
}

TEST(RowEdges, edges_areAddedToThoseThatAreThere) {
  Splats splats = splatsOfInner(-16, 16, 1);
  splats.add(32, 1.0F, 0.0F);
  const dvRowRun run = splats.made();
  const dvRowRun twice[] = {run, run};
  for (const dvSimdLevel level : usableLevels()) {
    std::vector<double> edges(3 * (cells + 1), 0.0);
    edges[3] = 7.0;
    rowCode(level).addInnerEdges(twice, 2, {nullptr, edges.data(), 1, cells});
    // Value, weight and count of the cells 1, where both begin, and 3, where they end.
    std::vector<double> wanted(edges.size(), 0.0);
    const double value = 0.5 * static_cast<double>(splats.values[0]);
    const double first[] = {7.0 + 2.0 * value, 1.0, 2.0, -2.0 * value, -1.0, -2.0};
    std::copy(first, first + 3, wanted.begin() + 3);
    std::copy(first + 3, first + 6, wanted.begin() + 9);
    EXPECT_EQ(edges, wanted) << simdLevelName(level);
  }
}

struct alignas(64) Cell {
  float sums[dvCellColumns];
};

TEST(RowEdges, emptiedSums_goIntoTheTotals) {
  for (const dvSimdLevel level : usableLevels()) {
    std::vector<Cell> emptied(3);
    std::vector<double> totals(3 * dvCellColumns, 1.0);
    float* sums = emptied[0].sums;
    for (int i = 0; i < 3 * dvCellColumns; ++i)
      sums[i] = 0.25F * static_cast<float>(i) - 4.0F;
    rowCode(level).emptySums(sums, totals.data(), 2 * dvCellColumns);
    for (int i = 0; i < 3 * dvCellColumns; ++i) {
      const bool within = i < 2 * dvCellColumns;
      const double before = 0.25 * i - 4.0;
      EXPECT_EQ(static_cast<double>(sums[i]), within ? 0.0 : before) << simdLevelName(level);
      EXPECT_EQ(totals[static_cast<std::size_t>(i)], within ? 1.0 + before : 1.0) << i;
    }
  }
}

TEST(RowEdges, totals_keepWhatFloatsWouldLose) {
  for (const dvSimdLevel level : usableLevels()) {
    std::vector<Cell> cell(1);
    std::vector<double> totals(dvCellColumns, 1e8);
    std::fill_n(cell[0].sums, dvCellColumns, 0.125F);
    rowCode(level).emptySums(cell[0].sums, totals.data(), dvCellColumns);
    EXPECT_EQ(totals, std::vector<double>(dvCellColumns, 1e8 + 0.125)) << simdLevelName(level);
  }
}

}  // namespace
}  // namespace drevin::test

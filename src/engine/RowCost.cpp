#include "engine/RowCost.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace drevin {

namespace {

constexpr double cellColumns = dvCellColumns;
/// Neighbours among which runs are looked for: a chunk of dvReadyRow.
constexpr double runColumns = 256.0;

/// Cells that `columns` columns take, on average over where they begin; whole grains of them.
double cellsOf(double columns, const dvRowTimes& times) {
  return (columns + times.grain - 1.0) / cellColumns;
}

/// Those that are added column by column, if `inner` columns need not be where they fill cells.
double cellsBeside(double columns, double inner, const dvRowTimes& times) {
  return cellsOf(columns, times) - std::max(0.0, (inner - cellColumns + 1.0) / cellColumns);
}

double scatterTime(const dvRowTimes& times, double splats, double cells) {
  return splats * times.scattered + cells * times.scatterCell;
}
double gatherTime(const dvRowTimes& times, double cells, double blocks) {
  return cells * times.gatherCell + std::min(blocks, cells) * times.gatherBlock;
}

/// For another number of planes: vectors of kernel values are formed once for all of them.
dvRowTimes forPlanes(dvRowTimes times, int planes) {
  const double factor = (planes + 3) / 8.0;
  for (double* time : {&times.edges, &times.scatterCell, &times.gatherCell, &times.gatherBlock})
    *time *= factor;
  return times;
}

}  // namespace

const dvRowTimes& rowTimes(dvSimdLevel level) {
  // splat, run, edges, scattered, scatterCell, gatherCell, gatherBlock, grain
  static constexpr dvRowTimes baseline{1.5, 12.0, 5.0, 1.5, 7.2, 6.7, 11.0, 8.0};
  static constexpr dvRowTimes avx2{1.3, 12.0, 4.7, 2.1, 3.7, 3.2, 4.2, 16.0};
  static constexpr dvRowTimes avx512{1.6, 12.0, 4.7, 2.6, 3.9, 2.0, 7.0, 16.0};
  switch (level) {
    case dvSimdLevel::Baseline:
      return baseline;
    case dvSimdLevel::Avx2:
      return avx2;
    case dvSimdLevel::Avx512:
      break;
  }
  return avx512;
}

int leastInnerPart(const dvRowTimes& times) {
  const double cells = std::max(1.0, times.edges / times.gatherCell);
  return static_cast<int>(std::ceil((cells + 1.0) * cellColumns)) - 1;
}

bool gatherIsQuicker(const dvRowRun& run, const dvRowTimes& times) {
  const double columns = run.end - run.begin;
  const double cells = run.count * cellsBeside(columns, run.innerEnd - run.innerBegin, times);
  const double apart = run.records[run.count - 1].x - run.records[0].x;
  return gatherTime(times, cells, cellsOf(apart + columns, times)) <
         scatterTime(times, run.count, cells);
}

dvRowCost::dvRowCost(const dvKernelTable& kernels, int channels)
    : dvRowCost(kernels, channels, rowTimes(simdLevel())) {}

dvRowCost::dvRowCost(const dvKernelTable& kernels, int channels, const dvRowTimes& times)
    : times_(forPlanes(times, channels + 1)) {
  const int leastInner = leastInnerPart(times);
  for (int radius = 0; radius <= kernels.largestRadius(); ++radius) {
    const int next = std::min(radius + 1, kernels.largestRadius());
    pairs_.push_back(workOf(kernels, radius, next, leastInner));
    kernels_.push_back(workOf(kernels, radius, radius, leastInner));
  }
}

dvRowCost::Work dvRowCost::workOf(const dvKernelTable& kernels, int near, int far,
                                  int leastInner) const {
  Work work;
  for (int dy = -far; dy <= far; ++dy) {
    const dvKernelRow* rows = kernels.rowsAt(dy);
    const int columns =
        std::max(rows[near].end, rows[far].end) - std::min(rows[near].begin, rows[far].begin);
    if (columns <= 0) continue;
    const int inner = std::min(rows[near].constantEnd, rows[far].constantEnd) -
                      std::max(rows[near].constantBegin, rows[far].constantBegin);
    const bool leavesOut = inner >= leastInner;
    work.rows += 1.0;
    work.innerRows += leavesOut ? 1.0 : 0.0;
    work.cells += cellsBeside(columns, leavesOut ? inner : 0, times_);
  }
  return work;
}

double dvRowCost::splat(int radius, double spacing) const {
  return timeOf(pairs_[static_cast<std::size_t>(radius)], spacing);
}

double dvRowCost::kernel(int radius, double spacing) const {
  return timeOf(kernels_[static_cast<std::size_t>(radius)], spacing);
}

double dvRowCost::timeOf(const Work& work, double spacing) const {
  const double runs = work.rows * std::min(1.0, spacing / runColumns);
  const double gathered = gatherTime(times_, work.cells, work.rows * spacing / cellColumns);
  const double scattered = scatterTime(times_, work.rows, work.cells);
  return work.rows * times_.splat + runs * times_.run + work.innerRows * times_.edges +
         std::min(gathered, scattered);
}

}  // namespace drevin

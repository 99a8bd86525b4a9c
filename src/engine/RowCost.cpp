#include "engine/RowCost.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace drevin {

namespace {

constexpr double cellColumns = dvCellColumns;
/// Splats among which runs are looked for.
constexpr double runColumns = 256.0;

/// Cells that `columns` columns lie in, on average over where they begin.
double cellsOf(double columns) {
  return (columns + cellColumns - 1.0) / cellColumns;
}

/// Of those, the ones that are added column by column, if `inner` columns need not be.
double cellsBeside(double columns, double inner) {
  return cellsOf(columns) - std::max(0.0, (inner - cellColumns + 1.0) / cellColumns);
}

/// The time in the quicker order of that in which splats take `cells` cells each.
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
  static constexpr dvRowTimes baseline{1.5, 8.0, 6.0, 1.0, 8.6, 8.2, 5.0};
  static constexpr dvRowTimes avx2{1.5, 8.0, 6.0, 1.0, 4.0, 3.3, 2.5};
  static constexpr dvRowTimes avx512{1.5, 8.0, 6.0, 2.0, 3.9, 2.1, 5.0};
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
  const double cells = run.count * cellsBeside(columns, run.innerEnd - run.innerBegin);
  const double apart = run.records[run.count - 1].x - run.records[0].x;
  return gatherTime(times, cells, cellsOf(apart + columns)) < scatterTime(times, run.count, cells);
}

dvRowCost::dvRowCost(const dvKernelTable& kernels, int channels)
    : times_(forPlanes(rowTimes(simdLevel()), channels + 1)) {
  for (int radius = 0; radius <= kernels.largestRadius(); ++radius)
    works_.push_back(workOf(kernels, radius));
}

dvRowCost::Work dvRowCost::workOf(const dvKernelTable& kernels, int radius) const {
  const int far = std::min(radius + 1, kernels.largestRadius());
  const int leastInner = leastInnerPart(rowTimes(simdLevel()));
  Work work;
  for (int dy = -far; dy <= far; ++dy) {
    const dvKernelRow* rows = kernels.rowsAt(dy);
    const int columns =
        std::max(rows[radius].end, rows[far].end) - std::min(rows[radius].begin, rows[far].begin);
    if (columns <= 0) continue;
    const int inner = std::min(rows[radius].constantEnd, rows[far].constantEnd) -
                      std::max(rows[radius].constantBegin, rows[far].constantBegin);
    const bool leavesOut = inner >= leastInner;
    work.rows += 1.0;
    work.innerRows += leavesOut ? 1.0 : 0.0;
    work.cells += cellsBeside(columns, leavesOut ? inner : 0);
  }
  return work;
}

double dvRowCost::splat(int radius, double spacing) const {
  const Work& work = works_[static_cast<std::size_t>(radius)];
  const double runs = work.rows * std::min(1.0, spacing / runColumns);
  const double gathered = gatherTime(times_, work.cells, work.rows * spacing / cellColumns);
  const double scattered = scatterTime(times_, work.rows, work.cells);
  return work.rows * times_.splat + runs * times_.run + work.innerRows * times_.edges +
         std::min(gathered, scattered);
}

}  // namespace drevin

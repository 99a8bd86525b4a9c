#pragma once

/// What it takes to add splats row by row, for choosing between ways to do it.
///
///   time = rows * splat + rows * min(1, s / 256) * run + inner rows * edges
///        + min(gathered, scattered)
///
///   gathered  = cells * gatherCell + min(rows * s / 16, cells) * gatherBlock
///   scattered = cells * scatterCell + rows * scattered
///
///   rows, inner rows  that a splat reaches; of them those of which an inner part is left out
///   cells             of 16 columns that are added column by column, on all rows
///   s                 columns from one splat to the next
///
/// The other terms are those of dvRowTimes. Tests: RowCost_test.cpp

#include <vector>

#include "engine/KernelTable.h"
#include "engine/RowRun.h"
#include "engine/Simd.h"

namespace drevin {

/// Nanoseconds on one processor of about 3.5 GHz, fitted to measurements with four value planes and
/// a weight (benchmarks/Direct_bench.cpp). Only their ratios matter.
struct dvRowTimes {
  double splat;        ///< of a splat on a row, however it is added
  double run;          ///< of a run; most of it the way to kernel rows that are not in the cache
  double edges;        ///< of a splat's inner part on a row
  double scattered;    ///< of a splat on a row more, if it is scattered
  double scatterCell;  ///< of a cell of a splat, scattered
  double gatherCell;   ///< likewise gathered
  double gatherBlock;  ///< of a cell of a run more, if it is gathered
  double grain;        ///< columns that are added at once
};

const dvRowTimes& rowTimes(dvSimdLevel level);

/// The least inner part that is quicker than adding its columns, columns.
int leastInnerPart(const dvRowTimes& times);

/// Whether gathering the run's splats is expected to be quicker than scattering them.
bool gatherIsQuicker(const dvRowRun& run, const dvRowTimes& times);

/// Expected time of splats whose kernels are of one table.
class dvRowCost {
 public:
  /// For the instruction set of simdLevel() at this moment. channels >= 1.
  dvRowCost(const dvKernelTable& kernels, int channels);
  /// For a processor of those times.
  dvRowCost(const dvKernelTable& kernels, int channels, const dvRowTimes& times);

  /// Nanoseconds to add a splat of both the kernels of `radius` and of the next, where the table
  /// has it, to all rows that it reaches.
  ///
  /// `spacing` is how many columns apart the splats of this radius are on a row, on average: 1 for
  /// a row full of them. Infinite for a splat that has no others of its radius near it.
  double splat(int radius, double spacing) const;
  /// Likewise one of the kernel of `radius` alone.
  double kernel(int radius, double spacing) const;

 private:
  /// Of a splat, over all rows that it reaches.
  struct Work {
    double rows = 0.0;
    double innerRows = 0.0;  ///< on which an inner part is left out
    double cells = 0.0;      ///< added column by column
  };

  Work workOf(const dvKernelTable& kernels, int near, int far, int leastInner) const;
  double timeOf(const Work& work, double spacing) const;

  dvRowTimes times_;
  std::vector<Work> pairs_;    ///< of a radius and the next, by radius
  std::vector<Work> kernels_;  ///< by radius
};

}  // namespace drevin

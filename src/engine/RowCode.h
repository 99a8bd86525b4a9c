#pragma once

/// The vector code of the row sums: one copy for each instruction set, which differ by the rounding
/// of products that are added.
///
/// Cells are as in RowRun.h. Sums and totals hold channels + 1 planes, the last the weight, and
/// begin at a multiple of 64 bytes.

#include "engine/RowRun.h"

namespace drevin {

enum class dvSimdLevel;

/// What a cell's edges hold besides a difference for each value plane: that of the weight, and that
/// of the number of splats.
constexpr int dvEdgeExtras = 2;

/// The sums that runs are added to.
struct dvRowTarget {
  float* sums;
  double* edges;  ///< cells + 1 cells of channels + dvEdgeExtras doubles
  int channels;   ///< >= 1
  int cells;
};

struct dvRowCode {
  /// Adds the runs' splats but for their inner parts, splat after splat.
  void (*scatterRuns)(const dvRowRun* runs, int count, const dvRowTarget& target);
  /// Likewise, a few columns of all splats of a run after the other: quicker if the splats of a run
  /// overlap.
  void (*gatherRuns)(const dvRowRun* runs, int count, const dvRowTarget& target);
  /// Adds the inner parts: what they add to each plane, and 1 to the count, is added where they
  /// begin and taken away where they end. A sum from the left gives them back (RowSums.h).
  void (*addInnerEdges)(const dvRowRun* runs, int count, const dvRowTarget& target);
  /// totals += sums, sums = 0.
  void (*emptySums)(float* sums, double* totals, std::ptrdiff_t count);
};

const dvRowCode& rowCode(dvSimdLevel level);

}  // namespace drevin

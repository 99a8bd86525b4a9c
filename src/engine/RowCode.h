#pragma once

/// The vector code of the row sums: one copy for each instruction set, which differ by the rounding
/// of products that are added.
///
/// Cells are as in RowSplat.h. Sums and totals hold channels + 1 planes, the last the weight, and
/// begin at a multiple of 64 bytes; a splat lies within them.

#include "engine/RowSplat.h"

namespace drevin {

enum class dvSimdLevel;

/// What a cell's edges hold besides a difference for each value plane: that of the weight, and that
/// of the number of splats.
constexpr int dvEdgeExtras = 2;

struct dvRowCode {
  /// Adds the splats, but for their inner parts, one after the other. channels >= 1.
  void (*scatterSplats)(const dvRowSplat* splats, int count, int channels, float* sums);
  /// Adds the inner parts: what they add to each plane, and 1 to the count, is added where they
  /// begin and taken away where they end. A sum from the left gives them back (RowSums.h).
  void (*scatterEdges)(const dvRowSplat* splats, int count, int channels, double* edges);
  /// totals += sums, sums = 0.
  void (*emptySums)(float* sums, double* totals, std::ptrdiff_t count);
};

const dvRowCode& rowCode(dvSimdLevel level);

}  // namespace drevin

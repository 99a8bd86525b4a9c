#pragma once

/// One splat made ready for one output row, and the cells that the row's sums are kept in. Plain
/// data: it is shared with the vector code.

#include <cstddef>

namespace drevin {

/// Columns of a cell. The sums of a row are kept cell after cell, in each the columns of plane
/// after plane: a splat then writes whole vectors, side by side.
constexpr int dvCellColumns = 16;

/// What a splat adds to a row:
///
///   K(c) = nearShare * near[c - x] + farShare * far[c - x]
///   sums[p](c) += K(c) * values[p],   weight(c) += K(c)
///
/// over the columns [begin, end), except [innerBegin, innerEnd): whole cells in which K is the
/// constant `inner`, which are summed by the places where they begin and end.
struct dvRowSplat {
  const float* near;    ///< kernel value at the centre's column
  const float* far;     ///< likewise, of the next radius
  const float* values;  ///< one for each value plane
  float nearShare;
  float farShare;
  float inner;
  int x;  ///< column of the centre; columns count from the first cell
  int begin;
  int end;
  int innerBegin;  ///< multiples of dvCellColumns; both are `end` where there is no inner part
  int innerEnd;
};

/// Columns [begin, end) from the first cell, multiples of dvCellColumns.
struct dvCellSpan {
  int begin;
  int end;
};

}  // namespace drevin

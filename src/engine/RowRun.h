#pragma once

/// Splats ready to be added to an output row, and the cells that the row's sums are kept in. Plain
/// data: it is shared with the vector code.

#include <cstddef>

namespace drevin {

/// Columns of a cell. The sums of a row are kept cell after cell, in each the columns of plane
/// after plane: a splat then writes whole vectors, side by side.
constexpr int dvCellColumns = 16;

/// One splat.
struct dvRowRecord {
  const float* values;  ///< one for each value plane
  float near;           ///< share of the kernel of the radius
  float far;            ///< share of that of the next radius
  int x;                ///< column of the centre; columns count from the first cell
};

/// Splats of the same two kernel rows, by ascending column. Each adds
///
///   K(c) = near * nearRow[c - x] + far * farRow[c - x]
///   sums[p](c) += K(c) * values[p],   weight(c) += K(c)
///
/// over the columns x + [begin, end), except over the whole cells within x + [innerBegin,
/// innerEnd): there K is constant, and summed by the places where these cells begin and end. All
/// columns outside the cells of the sums are left out.
struct dvRowRun {
  const dvRowRecord* records;
  int count;
  int begin;
  int end;
  int innerBegin;  ///< both are `end` where there is no inner part
  int innerEnd;
  const float* nearRow;  ///< value at the centre's column
  const float* farRow;
  float nearInner;  ///< constant values of the inner part
  float farInner;
};

}  // namespace drevin

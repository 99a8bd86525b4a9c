#pragma once

/// Where the rounding of transforms might show, pixels are made anew without them.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/GroupRows.h"
#include "engine/KernelTable.h"
#include "engine/NonZeroReach.h"
#include "engine/TransformRounding.h"

namespace drevin {

/// When stretches of how many columns are made anew: below this coverage, and where the rounding of
/// transforms may be above these shares, absolute and of the value.
constexpr int dvRepairColumns = dvRoundingCell;
constexpr double dvRepairCoverage = 1e-2;
constexpr double dvRepairAbsolute = 2e-6;
constexpr double dvRepairRelative = 2e-5;

/// Sums this many times what rounding may put them off by, or less, may be nothing but rounding.
constexpr double dvRepairNoise = 2.0;

/// Whether the columns from x on of row y, all in one cell of `rounding`, have a pixel that may
/// hold nothing but rounding: a coverage below dvRepairCoverage, or
///
///   0 < |colour[c]| <= dvRepairNoise * e[c]
bool mayBeNothing(const std::vector<float*>& colours, const double* coverage, int count,
                  const dvTransformRounding& rounding, int x, int y);

/// Which columns of a row have anything but zeros, 1 or 0 for each: by colour, then of the
/// coverage.
using dvReachedColumns = std::vector<std::vector<std::uint8_t>>;

/// Puts exact zeros where nothing but zeros is added to the columns [left, right) of row y: in a
/// colour, or where nothing covers a pixel in all of it. `colours` and `coverage` begin at column
/// `left`.
dvReachedColumns clearUnreached(const dvNonZeroReach& reach, int y, int left, int right,
                                const std::vector<float*>& colours, double* coverage);

/// Columns of a row, all in one cell of a dvTransformRounding.
struct dvDoubtfulColumns {
  int x;
  int y;
  int count;
  int place = 0;  ///< of column x in `reached`
  /// There is no doubt of what is not reached. Null: everything is.
  const dvReachedColumns* reached = nullptr;
};

/// Whether the columns have a pixel for which
///
///   coverage < dvRepairCoverage   or
///   e[c] + e_w * |colour[c]| / coverage > dvRepairAbsolute * coverage + dvRepairRelative *
///   |colour[c]|
///
///   colour[c], coverage  sums of all slices, from x on     e[c], e_w  what they may be off by
bool isInDoubt(const std::vector<float*>& colours, const double* coverage,
               const dvDoubtfulColumns& columns, const dvTransformRounding& rounding);

/// The columns [left, right) of row y from splats alone, slices from the nearest to the farthest:
/// sums of colours and coverage as compositeSlice leaves them. `colours` and `coverage` begin at
/// column `left`; what they hold is replaced. `signs` are those of the kernels; null where all
/// values are finite.
void repairSpan(const dvGroupRows& rows, const dvKernelTable& kernels, const dvKernelSigns* signs,
                std::size_t slices, int y, int left, int right, const std::vector<float*>& colours,
                double* coverage);

}  // namespace drevin

#pragma once

/// Where the rounding of transforms might show, pixels are made anew without them.

#include <cstddef>
#include <vector>

#include "engine/GroupRows.h"
#include "engine/KernelTable.h"
#include "engine/TransformRounding.h"

namespace drevin {

/// When stretches of how many columns are made anew: below this coverage, and where the rounding of
/// transforms may be above these shares, absolute and of the value.
constexpr int dvRepairColumns = dvRoundingCell;
constexpr double dvRepairCoverage = 1e-2;
constexpr double dvRepairAbsolute = 2.5e-6;
constexpr double dvRepairRelative = 2.5e-5;

/// Whether the columns from x on of row y, all in one cell of `rounding`, have a pixel for which
///
///   coverage < dvRepairCoverage   or
///   e[c] + e_w * |colour[c]| / coverage > dvRepairAbsolute * coverage + dvRepairRelative *
///   |colour[c]|
///
///   colour[c], coverage  sums of all slices, from x on     e[c], e_w  what they may be off by
bool isInDoubt(const std::vector<float*>& colours, const double* coverage, int count,
               const dvTransformRounding& rounding, int x, int y);

/// The columns [left, right) of row y from splats alone, slices from the nearest to the farthest:
/// sums of colours and coverage as compositeSlice leaves them. `colours` and `coverage` begin at
/// column `left`; what they hold is replaced. `signs` are those of the kernels; null where all
/// values are finite.
void repairSpan(const dvGroupRows& rows, const dvKernelTable& kernels, const dvKernelSigns* signs,
                std::size_t slices, int y, int left, int right, const std::vector<float*>& colours,
                double* coverage);

}  // namespace drevin

#pragma once

/// What the splats of a group add to one output row, with no transform in between.

#include <cstdint>
#include <vector>

#include "engine/GroupRows.h"
#include "engine/KernelSigns.h"
#include "engine/KernelTable.h"
#include "engine/RowSums.h"

namespace drevin {

/// Calls add(row, dy) for the rows of splats whose sources reach output row y and whose kernels
/// can, source row by source row; dy is y less the row of their centres.
template <typename Add>
void forEachReaching(const dvGroupRows& rows, const dvKernelTable& kernels, int y, const Add& add) {
  const dvRecordRange reaching = rows.reaching(y);
  for (std::size_t row = reaching.begin; row < reaching.end; ++row) {
    // A chromatic shift may put a centre anywhere.
    const std::int64_t dy = static_cast<std::int64_t>(y) - rows[row].splats->centreY;
    if (dy <= kernels.largestRadius() && -dy <= kernels.largestRadius())
      add(row, static_cast<int>(dy));
  }
}

/// Sums the splats of a slice that reach row y, special ones apart, over the columns of `sums`.
void sumSplats(const dvGroupRows& rows, const dvKernelTable& kernels, std::size_t slice, int y,
               dvRowSums& sums);

/// Adds its special splats to the sums of row y, columns [left, right): values, then weight.
void addSpecials(const dvGroupRows& rows, const dvKernelTable& kernels, std::size_t slice, int y,
                 int left, int right, std::vector<std::vector<double>>& sums);

/// Adds what its values that are not finite leave in row y, columns [left, right).
void addNotFinite(const dvGroupRows& rows, const dvKernelTable& kernels, const dvKernelSigns& signs,
                  std::size_t slice, int y, int left, int right,
                  std::vector<std::vector<double>>& sums);

}  // namespace drevin

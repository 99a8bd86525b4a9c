#pragma once

/// The signs of a kernel's values: all that matters of them to a value that is not finite.

#include <cstddef>
#include <vector>

#include "engine/KernelTable.h"
#include "engine/Parallel.h"

namespace drevin {

/// What an infinite value becomes by a kernel value.
enum class dvSign {
  Kept,    ///< above 0
  Turned,  ///< below 0
  None     ///< zero, or NaN: infinity times it is NaN
};

/// Columns [begin, end) of a kernel row whose values have one sign, counted from the centre.
struct dvSignStretch {
  int begin;
  int end;
  dvSign sign;
};

class dvKernelSigns {
 public:
  /// Of all radii of the table, on all threads. After an abort this must not be read.
  dvKernelSigns(const dvKernelTable& kernels, dvParallel& parallel);

  /// The stretches of the row that a kernel puts `dy` rows above its centre, from the left, without
  /// gaps; none beyond the kernel. `radius` is one of the table's.
  const std::vector<dvSignStretch>& row(int radius, int dy) const;

 private:
  std::vector<std::vector<std::vector<dvSignStretch>>> rows_;  ///< by radius, then radius + dy
  std::vector<dvSignStretch> none_;
};

}  // namespace drevin

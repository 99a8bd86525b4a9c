#pragma once

/// What sums that went through transforms may be off by, in a coarse grid over a box.

#include <cstddef>
#include <vector>

#include "engine/FrameBox.h"
#include "engine/KernelTable.h"
#include "engine/Parallel.h"

namespace drevin {

/// Columns and rows of a cell, px.
constexpr int dvRoundingCell = 64;

/// The rounding of a transform is alike all over a tile's picture, however dim it is there:
///
///   error = 2e-7 * sqrt(sum over R of k_R^2 * |a_R|^2 / side^2)
///
///   |a_R|^2  sum of the squares of a tile's plane and of its partner in the transform
///   k_R      sum of the magnitudes of the kernel's values           side  of the tile, px
///
/// The factor was measured: the largest error of many pictures is 0.3 to 1 of this. Errors of tiles
/// are independent, so that their squares add.
/// Tests: TransformRounding_test.cpp, SliceTiles_test.cpp
class dvTransformRounding {
 public:
  /// After an abort the figures are undefined.
  dvTransformRounding(const dvFrameBox& box, int planes, const dvKernelTable& kernels,
                      dvParallel& parallel);

  /// k^2 of a radius of the table.
  double kernelSquare(int radius) const { return kernelSquares_[static_cast<std::size_t>(radius)]; }
  /// Adds a tile: `squares` is what stands under the root, for the plane's pixels that it reaches.
  void add(int plane, const dvFrameBox& reached, double squares);
  /// The error at the place of a pixel of the box.
  double error(int plane, int x, int y) const;

 private:
  std::size_t cell(int plane, int across, int up) const {
    const std::ptrdiff_t row = static_cast<std::ptrdiff_t>(plane) * cellsUp_ + up;
    return static_cast<std::size_t>(row * cellsAcross_ + across);
  }

  dvFrameBox box_;
  int cellsAcross_;
  int cellsUp_;
  std::vector<double> squares_;        ///< by plane, row and column of cells
  std::vector<double> kernelSquares_;  ///< by radius
};

}  // namespace drevin

#include "engine/TransformRounding.h"

#include <algorithm>
#include <cmath>

namespace drevin {

namespace {

constexpr double relativeRounding = 2e-7;

int cellsOf(int pixels) {
  return (pixels + dvRoundingCell - 1) / dvRoundingCell;
}

double squareOf(const dvKernelTable& kernels, int radius) {
  double sum = 0.0;
  for (int r = 0; r <= 2 * radius; ++r) {
    const float* row = kernels.row(radius, r);
    for (int i = 0; i <= 2 * radius; ++i)
      sum += static_cast<double>(std::fabs(row[i]));
  }
  return sum * sum;
}

}  // namespace

dvTransformRounding::dvTransformRounding(const dvFrameBox& box, int planes,
                                         const dvKernelTable& kernels, dvParallel& parallel)
    : box_(box),
      cellsAcross_(cellsOf(box.width())),
      cellsUp_(cellsOf(box.height())),
      squares_(cell(planes, 0, 0), 0.0),
      kernelSquares_(static_cast<std::size_t>(kernels.largestRadius()) + 1) {
  // The largest, which take longest, first.
  parallel.forEach(kernels.largestRadius() + 1, [&](int /*worker*/, int item) {
    const int radius = kernels.largestRadius() - item;
    kernelSquares_[static_cast<std::size_t>(radius)] = squareOf(kernels, radius);
  });
}

void dvTransformRounding::add(int plane, const dvFrameBox& reached, double squares) {
  const dvFrameBox inside{std::max(reached.left, box_.left) - box_.left,
                          std::max(reached.bottom, box_.bottom) - box_.bottom,
                          std::min(reached.right, box_.right) - box_.left,
                          std::min(reached.top, box_.top) - box_.bottom};
  if (inside.empty()) return;
  for (int up = inside.bottom / dvRoundingCell; up < cellsOf(inside.top); ++up) {
    for (int across = inside.left / dvRoundingCell; across < cellsOf(inside.right); ++across)
      squares_[cell(plane, across, up)] += squares;
  }
}

double dvTransformRounding::error(int plane, int x, int y) const {
  const int across = (x - box_.left) / dvRoundingCell;
  const int up = (y - box_.bottom) / dvRoundingCell;
  return relativeRounding * std::sqrt(squares_[cell(plane, across, up)]);
}

}  // namespace drevin

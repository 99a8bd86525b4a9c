#pragma once

/// The kernels of one channel as vector code reads them: by radius, rows padded with zeros, and the
/// constant stretch of each row known.

#include <cstddef>
#include <vector>

#include "kernel/KernelBank.h"

namespace drevin {

/// Zeros before and after the values of each kernel row: a row may be read up to this far beyond
/// either end.
constexpr int dvKernelPad = 32;

/// Columns [begin, end) of a kernel row in which every value has the same bits; the longest such
/// stretch, empty (begin == end) where none is worth knowing.
struct dvConstantStretch {
  int begin = 0;
  int end = 0;
};

class dvKernelTable {
 public:
  /// Copies the planes of `channel` from a bank: radius R is the kernel of side 2R + 1, and every
  /// radius from 0 to the largest of the bank is there. An empty bank, or one without planes for
  /// the channel, gives an empty table.
  dvKernelTable(const dvKernelBank& bank, int channel);

  bool empty() const { return kernels_.empty(); }
  /// -1 for an empty table.
  int largestRadius() const { return static_cast<int>(kernels_.size()) - 1; }

  /// Row r of the kernel, 0 to 2 * radius: 2 * radius + 1 values from index 0, dvKernelPad zeros
  /// before and after them.
  const float* row(int radius, int r) const {
    const Kernel& kernel = kernels_[static_cast<std::size_t>(radius)];
    return kernel.values.data() + static_cast<std::ptrdiff_t>(r) * kernel.stride + dvKernelPad;
  }
  const dvConstantStretch& constant(int radius, int r) const {
    return kernels_[static_cast<std::size_t>(radius)].constant[static_cast<std::size_t>(r)];
  }

  /// True if both tables hold the same bits.
  bool operator==(const dvKernelTable& other) const;

 private:
  struct Kernel {
    std::ptrdiff_t stride = 0;  ///< floats from row to row
    std::vector<float> values;
    std::vector<dvConstantStretch> constant;  ///< by row
  };

  static Kernel paddedKernel(const dvChannelFloatBuffer& entry, const float* plane);

  std::vector<Kernel> kernels_;  ///< by radius
};

}  // namespace drevin

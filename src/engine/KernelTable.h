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

/// Columns [begin, end) of a kernel row that share one non-zero value, bit for bit; the longest
/// such stretch, empty (begin == end) in a row of zeros.
struct dvConstantStretch {
  int begin = 0;
  int end = 0;
};

/// A kernel row seen from its splat: columns are counted from the centre, negative to the left.
struct dvKernelRow {
  std::ptrdiff_t centre = 0;  ///< place of the centre column's value in dvKernelTable::values()
  int begin = 0;              ///< all values outside [begin, end) are zero
  int end = 0;                ///< far below `begin` in a row of zeros
  int constantBegin = 0;      ///< the longest stretch of one value; endless in a row of zeros, so
  int constantEnd = 0;        ///< that it leaves that of another row as it is
  float constantValue = 0.0F;
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
    return values_.data() + rowBegin(kernels_[static_cast<std::size_t>(radius)], radius, r);
  }
  dvConstantStretch constant(int radius, int r) const;

  /// The rows that splats of all radii, 0 to the largest, put `dy` rows above their centres, by
  /// radius: row radius - dy of each kernel, and a row of zeros where a kernel does not reach so
  /// far. dy from -largestRadius() to largestRadius(); the table must not be empty.
  const dvKernelRow* rowsAt(int dy) const {
    return rows_.data() + static_cast<std::ptrdiff_t>(dy + largestRadius()) * (largestRadius() + 1);
  }
  /// A row of zeros that may be read wherever a row of the largest radius may.
  const dvKernelRow& zeroRow() const { return zeroRow_; }
  /// What the places in the rows count in.
  const float* values() const { return values_.data(); }

  /// True if both tables hold the same bits.
  bool operator==(const dvKernelTable& other) const;

 private:
  /// Place of the first value of row 0; rows share the zeros between them.
  using Kernel = std::ptrdiff_t;

  static std::ptrdiff_t rowBegin(Kernel kernel, int radius, int r) {
    return kernel + static_cast<std::ptrdiff_t>(r) * (2 * radius + 1 + dvKernelPad);
  }
  void append(const dvChannelFloatBuffer& entry, const float* plane);
  void describeRows();

  std::vector<float> values_;
  std::vector<Kernel> kernels_;    ///< by radius
  std::vector<dvKernelRow> rows_;  ///< by dy, then by radius
  dvKernelRow zeroRow_;
};

}  // namespace drevin

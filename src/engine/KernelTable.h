#pragma once

/// The kernels of one channel as vector code reads them: by radius, rows padded with zeros, and the
/// constant stretch of each row known.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/LargeMemory.h"
#include "engine/Parallel.h"
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
  /// As above, on many threads. After an abort the table must not be read.
  dvKernelTable(const dvKernelBank& bank, int channel, dvParallel& parallel);

  bool empty() const { return largestRadius_ < 0; }
  /// -1 for an empty table.
  int largestRadius() const { return largestRadius_; }

  /// Row r of the kernel, 0 to 2 * radius: 2 * radius + 1 values from index 0, dvKernelPad zeros
  /// before and after them.
  const float* row(int radius, int r) const {
    return values_.data() + rowsAt(radius - r)[radius].centre - radius;
  }
  dvConstantStretch constant(int radius, int r) const;
  /// Whether all values of a kernel are finite.
  bool isFinite(int radius) const { return finite_[static_cast<std::size_t>(radius)] != 0; }

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
  /// Fills the rows of one dy; their values begin at `place`.
  void fillRows(const dvKernelBank& bank, int channel, int dy, std::ptrdiff_t place);
  bool hasOnlyFinite(int radius) const;

  int largestRadius_ = -1;
  /// Row after row with dvKernelPad zeros between them; rows for the same dy side by side, since
  /// splats of many radii are added to one output row.
  std::vector<float, dvLargeAllocator<float>> values_;
  std::vector<dvKernelRow> rows_;  ///< by dy, then by radius
  dvKernelRow zeroRow_;
  std::vector<std::uint8_t> finite_;  ///< by radius
};

}  // namespace drevin

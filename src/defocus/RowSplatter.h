#pragma once

/// What flat and deep defocus share: the accumulators of one output row and their flushing.

#include <algorithm>
#include <cstddef>
#include <vector>

#include "defocus/SliceAccumulators.h"
#include "defocus/Splat.h"

namespace drevin {

/// A range of columns [left, right).
struct dvColumns {
  int left = 0;
  int right = 0;
};

/// The column of a format nearest to `x`; 0 for a format without columns.
inline int clampedColumn(int x, int formatWidth) {
  return std::max(0, std::min(x, formatWidth - 1));
}

/// Value of a matte row at an absolute column; 1 where no matte is used (null).
inline float matteValue(const float* matte, int x) {
  return matte == nullptr ? 1.0F : matte[x];
}

/// What splatting rows needs besides the pixels; fixed while rows are produced.
struct dvSplatFrame {
  dvSplatSettings splat;
  const dvKernelBank* bank = nullptr;
  int slices = 1;
  int padding = 0;      ///< reach of the largest kernel, px
  int formatWidth = 0;  ///< px
};

class dvRowSplatter {
 public:
  /// `channels`: numbers of the channels to splat, ascending, each with planes in the bank.
  /// `frame` must outlive this.
  dvRowSplatter(const dvSplatFrame& frame, const dvOutputSpan& out,
                const std::vector<int>& channels);

  /// Columns from which a kernel may reach the output.
  dvColumns sourceColumns() const;
  /// The nearest column of the format; 0 for a format without columns.
  int clampColumn(int x) const;

  const std::vector<int>& channels() const { return channels_; }
  /// Value to splat of a channel number, for the splats that follow.
  float& pixel(int channel) { return pixel_[static_cast<std::size_t>(channel)]; }

  /// Adds one source pixel with the values of pixel(); its own `pixel` is not read.
  void splat(dvSplatSource source);
  /// Call after each source row.
  void endSourceRow();
  /// Writes the channel at that place in the channel list; `out` is addressed by absolute column.
  void composite(std::size_t channelPlace, float* out);

 private:
  const dvSplatFrame& frame_;
  dvOutputSpan out_;
  std::vector<int> channels_;
  dvSliceAccumulators accumulators_;
  std::vector<float> pixel_;  ///< by channel number
};

}  // namespace drevin

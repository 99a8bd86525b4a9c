#pragma once

/// The scanline defocus: one output row gathered from the source rows whose kernels reach it.

#include <vector>

#include "defocus/BlurRecords.h"
#include "defocus/SliceAccumulators.h"
#include "defocus/Splat.h"

namespace drevin {

/// Everything a defocused row reads that does not change while rows are produced.
struct dvDefocusSettings {
  dvBlurSettings blur;
  dvSplatSettings splat;
  const dvKernelBank* bank = nullptr;
  int padding = 0;      ///< reach of the largest kernel, px
  int formatWidth = 0;  ///< px; columns outside take the depth of the nearest inside
};

/// One source row. Pointers are addressed by absolute column.
struct dvSourceRow {
  int y = 0;                          ///< where the row stands; its kernels are centred here
  int clampedY = 0;                   ///< the row of the image that was read
  std::vector<const float*> colour;   ///< one for each splatted channel, same order;
                                      ///< columns [left - padding, right + padding)
  const float* depth = nullptr;       ///< columns of the depth range (see depthColumns)
  const float* bloomMatte = nullptr;  ///< null: 1 everywhere; columns as colour
  const float* defocusMatte = nullptr;
  const float* chromaticMatte = nullptr;
};

/// A range of columns [left, right).
struct dvColumns {
  int left = 0;
  int right = 0;
};

/// Makes one output row: hand over every source row from y - padding to y + padding in ascending
/// order, then composite each channel.
class dvScanlineDefocus {
 public:
  /// `channels`: numbers of the channels to splat, ascending, each with planes in the bank.
  /// `settings` must outlive this.
  dvScanlineDefocus(const dvDefocusSettings& settings, const dvOutputSpan& out,
                    const std::vector<int>& channels);

  /// Columns of colour and mattes that a source row must hold.
  dvColumns sourceColumns() const;
  /// Columns of depth that a source row must hold: the source columns clamped into the format.
  dvColumns depthColumns() const;

  void splatSourceRow(const dvSourceRow& row);

  /// Writes the channel at that place in the channel list; `out` is addressed by absolute column.
  void composite(std::size_t channelPlace, float* out);

 private:
  int clampColumn(int x) const;
  void splatPixel(const dvSourceRow& row, int x);

  const dvDefocusSettings& settings_;
  dvOutputSpan out_;
  std::vector<int> channels_;
  dvSliceAccumulators accumulators_;
  std::vector<float> pixel_;  ///< by channel number
  int unflushedRows_ = 0;
};

}  // namespace drevin

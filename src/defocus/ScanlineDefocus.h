#pragma once

/// The scanline defocus: one output row gathered from the source rows whose kernels reach it.

#include <vector>

#include "defocus/BlurRecords.h"
#include "defocus/RowSplatter.h"

namespace drevin {

/// Everything a defocused row reads that does not change while rows are produced.
struct dvDefocusSettings {
  dvBlurSettings blur;
  dvSplatFrame frame;
};

/// One source row. Pointers are addressed by absolute column.
struct dvSourceRow {
  int y = 0;                              ///< where the row stands; its kernels are centred here
  int clampedY = 0;                       ///< the row of the image that was read
  std::vector<const float*> colour;       ///< by splatted channel; the source columns
  const float* depth = nullptr;           ///< the depth columns
  const float* bloomMatte = nullptr;      ///< null: 1 everywhere; the source columns
  const float* defocusMatte = nullptr;    ///< as bloomMatte
  const float* chromaticMatte = nullptr;  ///< as bloomMatte
};

/// Hands the pixels of a source row to `sink`, column by column: for each that the focus output
/// shows, the values of the sink's channels by pixel(number), then splat(source).
///
/// `columns` are those that are splatted; the depth is read at the nearest column of the format.
template <typename Sink>
void addFlatSources(const dvSourceRow& row, const dvBlurSettings& settings, int formatWidth,
                    const dvColumns& columns, Sink& sink) {
  const std::vector<int>& channels = sink.channels();
  dvSplatSource source;
  source.clampedY = row.clampedY;
  source.y = row.y;
  for (int x = columns.left; x < columns.right; ++x) {
    source.clampedX = clampedColumn(x, formatWidth);
    const dvBlurRecord record =
        blurRecord(row.depth[source.clampedX], matteValue(row.defocusMatte, x), settings);
    if (!record.splatted) continue;
    for (std::size_t i = 0; i < channels.size(); ++i)
      sink.pixel(channels[i]) = row.colour[i][x];
    source.x = x;
    source.coc = record.coc;
    source.slice = record.slice;
    source.bloomMatte = matteValue(row.bloomMatte, x);
    source.chromaticMatte = matteValue(row.chromaticMatte, x);
    sink.splat(source);
  }
}

/// Makes one output row: hand over every source row from y - padding to y + padding in ascending
/// order, then composite each channel.
class dvScanlineDefocus {
 public:
  /// `channels`: numbers of the channels to splat, ascending, each with planes in the bank.
  /// `settings` must outlive this.
  dvScanlineDefocus(const dvDefocusSettings& settings, const dvOutputSpan& out,
                    const std::vector<int>& channels);

  /// Columns of colour and mattes that a source row must hold.
  dvColumns sourceColumns() const { return splatter_.sourceColumns(); }
  /// Columns of depth that a source row must hold: the source columns clamped into the format, so
  /// that columns outside take the depth of the nearest column inside.
  dvColumns depthColumns() const;

  void splatSourceRow(const dvSourceRow& row);

  /// Writes the channel at that place in the channel list; `out` is addressed by absolute column.
  void composite(std::size_t channelPlace, float* out) { splatter_.composite(channelPlace, out); }

 private:
  const dvDefocusSettings& settings_;
  dvRowSplatter splatter_;
};

}  // namespace drevin

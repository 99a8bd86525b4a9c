#pragma once

/// The deep defocus: one output row gathered from the deep records of the source rows in reach.

#include <vector>

#include "deep/DeepRecords.h"
#include "defocus/RowSplatter.h"

namespace drevin {

/// Where the value of a splatted channel comes from.
struct dvDeepChannel {
  static constexpr int flat = -1;

  int number = 0;    ///< channel number
  int place = flat;  ///< among the values of a record, or `flat`: the flat picture's value
};

/// One source row. Float rows are addressed by absolute column.
struct dvDeepSourceRow {
  int y = 0;                                 ///< where the row stands; kernels are centred here
  int clampedY = 0;                          ///< the row of the image that was read
  const dvDeepRecordRow* records = nullptr;  ///< pixel 0 is column recordsLeft
  int recordsLeft = 0;
  std::vector<const float*> flat;       ///< the flat picture by channel; null where it is not read
  const float* bloomMatte = nullptr;    ///< null: 1 everywhere; the source columns
  const float* defocusMatte = nullptr;  ///< as bloomMatte
  const float* chromaticMatte = nullptr;  ///< as bloomMatte
};

/// Columns whose deep pixels and flat values are read for output columns [left, right). The right
/// end is the last column of the format at most and is exclusive: the last column of an image never
/// takes part. May be empty.
dvColumns deepColumns(const dvSplatFrame& frame, int left, int right);

/// Hands the records of a source row to `sink`, column by column, nearest sample first, and after
/// each column's the background: the values of `channels` by pixel(number), then splat(source).
///
/// `columns` are those that are splatted; of them only those whose nearest column of the format is
/// among `held`, the columns that the row holds, take part.
class dvDeepSources {
 public:
  dvDeepSources(const std::vector<dvDeepChannel>& channels, const dvDeepBlur& background,
                int formatWidth, const dvColumns& columns, const dvColumns& held)
      : channels_(channels),
        background_(background),
        formatWidth_(formatWidth),
        columns_(columns),
        held_(held) {}

  template <typename Sink>
  void addRow(const dvDeepSourceRow& row, Sink& sink) const {
    for (int x = columns_.left; x < columns_.right; ++x) {
      const int clampedX = clampedColumn(x, formatWidth_);
      if (clampedX >= held_.left && clampedX < held_.right) addPixel(row, x, clampedX, sink);
    }
  }

 private:
  template <typename Sink>
  void addPixel(const dvDeepSourceRow& row, int x, int clampedX, Sink& sink) const {
    dvSplatSource source;
    source.clampedX = clampedX;
    source.clampedY = row.clampedY;
    source.x = x;
    source.y = row.y;
    const auto pixel = static_cast<std::size_t>(clampedX - row.recordsLeft);
    const std::size_t end = row.records->recordsEnd(pixel);
    for (std::size_t i = row.records->recordsBegin(pixel); i < end; ++i)
      addRecord(row, i, source, sink);
    const float background = row.records->background(pixel);
    if (background != 0.0F) addBackground(source, background, sink);
  }

  template <typename Sink>
  void addRecord(const dvDeepSourceRow& row, std::size_t record, dvSplatSource source,
                 Sink& sink) const {
    const dvDeepRecord& sample = row.records->record(record);
    const float* values = row.records->values(record);
    for (std::size_t c = 0; c < channels_.size(); ++c) {
      const dvDeepChannel& channel = channels_[c];
      sink.pixel(channel.number) = channel.place == dvDeepChannel::flat
                                       ? row.flat[c][source.clampedX]
                                       : values[channel.place];
    }
    source.coc = splattedCoc(sample.coc, matteValue(row.defocusMatte, source.x));
    source.slice = sample.slice;
    source.weight = sample.weight;
    source.bloomMatte = matteValue(row.bloomMatte, source.x);
    source.chromaticMatte = matteValue(row.chromaticMatte, source.x);
    sink.splat(source);
  }

  template <typename Sink>
  void addBackground(dvSplatSource source, float weight, Sink& sink) const {
    for (const dvDeepChannel& channel : channels_)
      sink.pixel(channel.number) = 0.0F;
    source.coc = splattedCoc(background_.coc, 1.0F);
    source.slice = background_.slice;
    source.weight = weight;
    source.bloomMatte = 0.0F;
    source.chromaticMatte = 1.0F;
    sink.splat(source);
  }

  std::vector<dvDeepChannel> channels_;
  dvDeepBlur background_;
  int formatWidth_;
  dvColumns columns_;
  dvColumns held_;
};

/// Makes one output row: hand over every source row from y - padding to y + padding in ascending
/// order, then composite each channel.
class dvDeepDefocus {
 public:
  /// `frame` must outlive this; `channels` are ascending, each with planes in the bank.
  dvDeepDefocus(const dvSplatFrame& frame, const dvDeepBlur& background, const dvOutputSpan& out,
                const std::vector<dvDeepChannel>& channels);

  /// Columns of mattes that a source row must hold.
  dvColumns sourceColumns() const { return splatter_.sourceColumns(); }
  /// Columns that a source row's records and flat values must hold.
  const dvColumns& deepColumns() const { return deepColumns_; }

  void splatSourceRow(const dvDeepSourceRow& row);

  /// Writes the channel at that place in the channel list; `out` is addressed by absolute column.
  void composite(std::size_t channelPlace, float* out) { splatter_.composite(channelPlace, out); }

 private:
  dvColumns deepColumns_;
  dvRowSplatter splatter_;
  dvDeepSources sources_;
};

}  // namespace drevin

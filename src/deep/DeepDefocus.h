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
  void splatPixel(const dvDeepSourceRow& row, int x, int clampedX);
  void splatRecord(const dvDeepSourceRow& row, std::size_t record, int x, dvSplatSource source);
  void splatBackground(dvSplatSource source, float weight);

  dvDeepBlur background_;
  dvColumns deepColumns_;
  std::vector<dvDeepChannel> channels_;
  dvRowSplatter splatter_;
};

}  // namespace drevin

#pragma once

/// The sums of one output row: splats of many source rows added kernel row by kernel row.

#include <cstddef>
#include <vector>

#include "engine/FrameBox.h"
#include "engine/KernelTable.h"
#include "engine/ReadyRow.h"
#include "engine/RowBatch.h"
#include "engine/RowCode.h"
#include "engine/RowReach.h"
#include "engine/RowRuns.h"
#include "engine/SplatRecords.h"

namespace drevin {

/// How splats are added.
///
///   Dense     every column of a kernel row
///   Rims      a kernel row's constant stretch, as far as it fills whole cells, only by the places
///             where it begins and ends; the rest like Dense
///   Quickest  of each splat the one that is expected to take less time
enum class dvRowShape { Quickest, Dense, Rims };

/// Sums of `channels` value planes and one weight plane over the columns [left, right) of a row.
///
///   sum[p](c) = sum over splats of K(c) * values[p],   weight(c) = sum over splats of K(c)
///
///   K(c) = near * K_radius(dy, c - x) + far * K_radius+1(dy, c - x)
///
/// Products are added in single precision; every few source rows these sums are emptied into sums
/// in double, so that their error does not grow with the number of source rows: up to 1e-5 of the
/// sum of the magnitudes where one blur of 200 px is added densely everywhere, for equal products
/// round alike; a tenth of that and less otherwise. The constant stretches of Rims are added in
/// double from the start, as differences that are summed up from the left; rows with great values
/// have none.
///
/// A column that no kernel reaches with a value other than zero is exactly 0. Where the constant
/// stretch of some splat lies, a value plane to which all splats there add 0 may be left with
/// about 1e-16 of what splats to the left of it had added.
///
/// For one thread at a time. The instruction set is that of simdLevel() at construction; on it
/// depends how products are rounded, and nothing else.
/// Tests: RowSums_test.cpp
class dvRowSums {
 public:
  /// channels >= 1, of records that have as many values at least; right <= left gives a row without
  /// columns.
  dvRowSums(int channels, int left, int right, dvRowShape shape = dvRowShape::Quickest,
            dvRowOrder order = dvRowOrder::Quickest);

  int left() const { return left_; }
  int right() const { return right_; }

  /// Back to sums of zero.
  void clear();
  /// Adds the records [begin, end) of a source row, which are by ascending column. `dy` is the
  /// output row less the row of the centres. The table has the kernel of every share above 0.
  /// `reach`, of the same row, makes it quicker: records that do not reach the output row are then
  /// skipped many at a time. It does not change a bit of the sums.
  void add(const dvSplatRow& row, std::size_t begin, std::size_t end, int dy,
           const dvKernelTable& kernels, const dvRowReach* reach = nullptr);
  /// Likewise all of a row whose columns count from `left`. In another order: sums may differ in
  /// their rounding.
  void add(const dvReadyRow& row, int dy, const dvKernelTable& kernels);
  /// Call after each source row.
  void endSourceRow();
  /// Call after the last source row and before reading.
  void finish();

  /// The columns that may have anything but zeros.
  dvColumnSpan touched() const;
  /// Writes right - left sums of a plane: 0 to channels - 1 the values, `channels` the weight.
  void store(int plane, float* out) const;
  void store(int plane, double* out) const;
  /// Likewise those of some columns, each to its place.
  void store(int plane, const dvColumnSpan& columns, double* out) const;

 private:
  struct CellSpan {
    int begin;
    int end;
  };
  struct alignas(64) FloatCell {
    float columns[dvCellColumns] = {};
  };
  struct alignas(64) DoubleCell {
    double columns[dvCellColumns] = {};
  };

  /// Whether splats `dy` rows below may reach the sums.
  bool mayReach(int dy, const dvKernelTable& kernels) const;
  void add(const dvRowRuns& runs);
  using AddRuns = void (*)(const dvRowRun* runs, int count, const dvRowTarget& target);
  void addRuns(const std::vector<dvRowRun>& runs, AddRuns addColumns);
  void touch(const dvRowRun& run);
  void emptyTouched();
  void addInnerParts();
  template <typename Value>
  void storeAs(int plane, const dvColumnSpan& columns, Value* out) const;

  int channels_;
  int left_;
  int right_;
  int cells_;
  dvRowChoice choice_;
  dvRowChoice dense_;  ///< of rows with great values
  const dvRowCode* code_;
  dvRowBatch batch_;
  dvRowRuns runs_;  ///< of rows that are ready

  std::vector<FloatCell> sums_;     ///< by cell and plane, since they were last emptied
  std::vector<DoubleCell> totals_;  ///< likewise, of what was emptied
  std::vector<double> edges_;       ///< by cell, cells_ + 1
  CellSpan touched_;                ///< where sums_ may not be 0
  CellSpan used_;                   ///< likewise totals_
  bool edgesTouched_ = false;
  int sourceRows_ = 0;      ///< since the sums were last emptied
  std::size_t splats_ = 0;  ///< likewise
};

}  // namespace drevin

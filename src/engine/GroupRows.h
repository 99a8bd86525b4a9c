#pragma once

/// The splats of one group: which source rows they come from, and where they are centred.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/Parallel.h"
#include "engine/RowReach.h"
#include "engine/SplatLine.h"

namespace drevin {

/// The source rows from bottom - padding to top + padding - 1 of a box, bottom first. Null: nothing
/// is known of the row, and it adds nothing.
using dvSplatLines = std::vector<const dvSplatLine*>;

/// Rows of splats, one for each source row and row of centres, by ascending source row, then
/// centre.
class dvGroupRows {
 public:
  struct Row {
    const dvCentredSplats* splats;
    int sourceY;

    /// Rows from the source to the centres; no more than `farOff` either way, from where nothing
    /// reaches back.
    int shift() const {
      constexpr std::int64_t farOff = std::int64_t{1} << 28;
      const std::int64_t rows = static_cast<std::int64_t>(splats->centreY) - sourceY;
      return static_cast<int>(std::clamp(rows, -farOff, farOff));
    }
  };
  /// Places [begin, end) in a list.
  struct Span {
    const std::size_t* first;
    const std::size_t* last;
    const std::size_t* begin() const { return first; }
    const std::size_t* end() const { return last; }
  };

  /// `lines[i]` is the source row `bottom` + i, which reaches `padding` rows up and down. The lines
  /// must outlive this.
  dvGroupRows(const dvSplatLines& lines, std::size_t group, int bottom, int padding,
              dvParallel& parallel);

  std::size_t size() const { return rows_.size(); }
  const Row& operator[](std::size_t row) const { return rows_[row]; }
  const dvRowReach& reach(std::size_t row) const { return reaches_[row]; }
  int padding() const { return padding_; }
  /// Of all rows, in either direction.
  int greatestShift() const { return greatestShift_; }

  /// Whether any row has special splats.
  bool hasSpecials() const { return hasSpecials_; }
  /// Whether any row has values that are not finite.
  bool hasNotFinite() const { return hasNotFinite_; }
  /// Whether the last value of every splat is 1.
  bool lastIsOne() const { return lastIsOne_; }
  /// The rows whose sources reach output row y.
  dvRecordRange reaching(int y) const;
  /// The rows centred on [bottom, top), by centre.
  Span centred(int bottom, int top) const;
  /// No splat of a slice has a larger kernel; splats of the neighbouring slices may count as well.
  /// -1 for a slice without splats.
  int largestRadius(std::size_t slice) const;
  /// Whether no row has a splat in a slice.
  bool isEmpty(std::size_t slice) const {
    return !hasSpecials_ && (slice >= filled_.size() || !filled_[slice]);
  }

 private:
  void add(const Row& row);

  int bottom_;
  int padding_;
  int greatestShift_ = 0;
  bool hasSpecials_ = false;
  bool hasNotFinite_ = false;
  bool lastIsOne_ = true;
  std::vector<bool> filled_;  ///< by slice
  std::vector<Row> rows_;
  std::vector<std::size_t> firstOfSource_;  ///< by source row, and behind the last
  std::vector<std::size_t> byCentre_;
  std::vector<dvRowReach> reaches_;
};

}  // namespace drevin

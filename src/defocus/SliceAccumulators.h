#pragma once

/// Colour and weight rows of the corrective slices of one output row.
///
/// Splats add in single precision. Adding thousands of small kernel values to a large sum would
/// lose more than a picture may, so the float rows are emptied into double rows after every source
/// row (flush). Rows of a slice are made when it is first used.

#include <cstdint>
#include <vector>

#include "defocus/Splat.h"

namespace drevin {

class dvSliceAccumulators {
 public:
  /// `slices` slices of the output columns [left, right) for `channels` (ascending numbers).
  dvSliceAccumulators(int slices, const std::vector<int>& channels, int left, int right);

  /// Makes the slice's rows ready for splats; call before each splat. False if there is no such
  /// slice.
  bool use(std::uint64_t slice);

  /// Moves all float sums into the double sums.
  void flush();

  dvAccumulatorRows& colour() { return colourRows_; }
  dvAccumulatorRows& weight() { return weightRows_; }

  int slices() const { return static_cast<int>(blocks_.size()); }
  int left() const { return left_; }
  int right() const { return right_; }

  /// Flushed sums of a slice and of the channel at that place in the channel list, by column from
  /// left(); null when nothing was splatted into the slice.
  const double* colourSum(int slice, std::size_t channelPlace) const;
  const double* weightSum(int slice, std::size_t channelPlace) const;

 private:
  /// All rows of one slice: colour and weight of every channel, one after the other.
  struct Block {
    std::vector<float> recent;
    std::vector<double> total;
    bool touched = false;
  };

  void makeRows(std::size_t slice);
  const double* sum(int slice, std::size_t row) const;

  std::vector<int> channels_;
  int left_;
  int right_;
  std::size_t width_;
  std::vector<Block> blocks_;
  std::vector<std::size_t> touched_;
  dvAccumulatorRows colourRows_;
  dvAccumulatorRows weightRows_;
};

}  // namespace drevin

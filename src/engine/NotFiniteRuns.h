#pragma once

/// Values that are NaN or infinite: where they leave a row, and with what.
///
/// A sum that such a value K * v is added to is from then on v's: however many more come, it is
/// decided by which kinds there are,
///
///   NaN                v is NaN, or infinite where K is 0 or NaN, or infinities of both signs meet
///   infinity of a sign  v is infinite, and K is above 0 (below 0: the other sign)
///
/// so that sources side by side with equal kernels are one run, and what a run reaches is known
/// from the signs of the kernel alone. A whole sky of infinite depth costs no more than a row of
/// runs.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/KernelSigns.h"

namespace drevin {

/// `count` sources of a row from column x on, with the same kernels and the same values.
struct dvNotFiniteRun {
  std::uint32_t slice = 0;
  std::int32_t x = 0;
  std::int32_t count = 0;
  std::int32_t radius[2] = {-1, -1};  ///< -1: not splatted
  std::vector<float> values;  ///< one for each channel of the group; finite ones are passed over
};

/// Whether the second run goes on where the first ends, so that they are one.
bool continues(const dvNotFiniteRun& first, const dvNotFiniteRun& second);

/// Runs that reach one output row, in any order.
class dvNotFiniteRow {
 public:
  /// Of the columns [left, right); `channels` of the runs' values are looked at.
  dvNotFiniteRow(std::size_t channels, int left, int right);

  /// Marks what the run reaches `dy` rows above it.
  void add(const dvNotFiniteRun& run, int dy, const dvKernelSigns& signs);

  /// Adds NaN or infinity to the sums of the columns that were reached; planes by channel.
  void addTo(std::vector<std::vector<double>>& sums) const;

 private:
  enum Kind { Nan, Up, Down, kindCount };

  /// Ends of the stretches that a kind covers: counts of those that begin less those that end.
  using Ends = std::vector<std::int32_t>;

  void mark(std::size_t channel, Kind kind, std::int64_t begin, std::int64_t end);
  void addValue(std::size_t channel, float value, const dvNotFiniteRun& run, int radius,
                const std::vector<dvSignStretch>& stretches);
  static Kind kindOf(float value, dvSign sign);

  std::int64_t left_;
  std::int64_t right_;
  std::vector<Ends> ends_;  ///< by channel and kind
  bool empty_ = true;
};

}  // namespace drevin

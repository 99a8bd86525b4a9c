#pragma once

/// Kernels as far as a source row reaches.

#include <algorithm>
#include <cstddef>
#include <vector>

namespace drevin {

/// A source row reaches `padding` rows up and down. A chromatic shift may carry the kernel of a
/// splat beyond that, and it is cut off there.
struct dvCutKernel {
  int radius = 0;
  int cut = 0;  ///< rows missing: the upper ones if positive, the lower ones if negative
};

/// Those of one table that transforms may take, numbered by ascending radius.
class dvCutKernels {
 public:
  /// Kernels that lack more rows are not worth a spectrum of their own.
  static constexpr int greatestCut = 64;

  /// `greatestShift`: how many rows from its source row a splat may be centred.
  dvCutKernels(int largestRadius, int padding, int greatestShift)
      : largestRadius_(largestRadius),
        padding_(padding),
        span_(std::min(greatestShift, greatestCut)),
        barred_(static_cast<std::size_t>(std::max(largestRadius, -1) + 1)) {}

  /// Leaves out the kernels of a radius: place() no longer knows them.
  void bar(int radius) { barred_[static_cast<std::size_t>(radius)] = true; }

  int count() const { return (largestRadius_ + 1) * cuts(); }
  int largestRadius() const { return largestRadius_; }
  /// Of the kernel of a radius that is centred `shift` rows above its source row; -1 for one that
  /// is not among them.
  int place(int radius, int shift) const {
    if (radius > largestRadius_ || barred_[static_cast<std::size_t>(radius)]) return -1;
    const int upper = std::max(0, radius + shift - padding_);
    const int lower = std::max(0, radius - shift - padding_);
    const int cut = upper - lower;
    if ((upper > 0 && lower > 0) || cut > span_ || cut < -span_) return -1;
    return radius * cuts() + cut + span_;
  }
  dvCutKernel operator[](int place) const { return {place / cuts(), place % cuts() - span_}; }

 private:
  int cuts() const { return 2 * span_ + 1; }

  int largestRadius_;
  int padding_;
  int span_;
  std::vector<bool> barred_;  ///< by radius
};

}  // namespace drevin

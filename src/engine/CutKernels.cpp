#include "engine/CutKernels.h"

#include <algorithm>
#include <cstdlib>

namespace drevin {

dvCutKernels::dvCutKernels(int largestRadius, int padding, int greatestShift)
    : largestRadius_(largestRadius),
      padding_(padding),
      span_(std::min(greatestShift, greatestCut)) {}

int dvCutKernels::place(int radius, int shift) const {
  if (radius > largestRadius_) return -1;
  const int upper = std::max(0, radius + shift - padding_);
  const int lower = std::max(0, radius - shift - padding_);
  const int cut = upper - lower;
  if ((upper > 0 && lower > 0) || std::abs(cut) > span_) return -1;
  return radius * cuts() + cut + span_;
}

}  // namespace drevin

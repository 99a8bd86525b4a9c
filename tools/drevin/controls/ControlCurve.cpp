#include "controls/ControlCurve.h"

#include <algorithm>
#include <utility>

namespace drevintool {

ControlCurve::ControlCurve(std::vector<CurveKey> keys) : keys_(std::move(keys)) {}

ControlCurve::ControlCurve(double value) : keys_{{0.0, value, true}} {}

double ControlCurve::at(double frame) const {
  const auto after = std::upper_bound(keys_.begin(), keys_.end(), frame,
                                      [](double f, const CurveKey& key) { return f < key.frame; });
  if (after == keys_.begin()) return after->value;
  const CurveKey& from = *(after - 1);
  if (after == keys_.end() || from.constant || frame == from.frame) return from.value;
  const double share = (frame - from.frame) / (after->frame - from.frame);
  return from.value * (1.0 - share) + after->value * share;
}

}  // namespace drevintool

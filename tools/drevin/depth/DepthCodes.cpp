#include "depth/DepthCodes.h"

#include <cmath>
#include <limits>

namespace drevintool {

DepthStyle depthStyleOf(const Node& node) {
  const DD::Image::Knob* style = node.knob("depthStyle");
  return style != nullptr && style->get_value() != 0.0 ? DepthStyle::Reciprocal : DepthStyle::Real;
}

bool DepthCodes::isBackground(float raw) const {
  if (!std::isfinite(raw) || !std::isfinite(distance(raw))) return true;
  return raw == 0.0F || std::fabs(raw) >= kFarCode || (half && raw == kLargestHalf);
}

float DepthCodes::distance(float raw) const {
  if (style == DepthStyle::Real) return raw;
  return raw == 0.0F ? std::numeric_limits<float>::infinity() : 1.0F / raw;
}

}  // namespace drevintool

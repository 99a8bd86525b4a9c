#include "picture/HalfFloat.h"

#include <Imath/half.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace drevintool {

float floatFromHalf(std::uint16_t bits) {
  return imath_half_to_float(bits);
}

std::uint16_t halfFromFloat(float value) {
  constexpr float kMost = 65504.0F;
  return imath_float_to_half(std::isfinite(value) ? std::clamp(value, -kMost, kMost) : value);
}

HalfSamples halfSamples(const std::vector<float>& samples) {
  auto halves = std::make_shared<std::vector<std::uint16_t>>(samples.size());
  std::transform(samples.begin(), samples.end(), halves->begin(), halfFromFloat);
  return halves;
}

}  // namespace drevintool

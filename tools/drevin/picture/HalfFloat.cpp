#include "picture/HalfFloat.h"

#include <Imath/half.h>

#include <algorithm>
#include <cmath>

namespace drevintool {

float floatFromHalf(std::uint16_t bits) {
  return imath_half_to_float(bits);
}

std::uint16_t halfFromFloat(float value) {
  constexpr float kMost = 65504.0F;
  return imath_float_to_half(std::isfinite(value) ? std::clamp(value, -kMost, kMost) : value);
}

}  // namespace drevintool

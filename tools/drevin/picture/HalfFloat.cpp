#include "picture/HalfFloat.h"

#include <Imath/half.h>

namespace drevintool {

float floatFromHalf(std::uint16_t bits) {
  return imath_half_to_float(bits);
}

}  // namespace drevintool

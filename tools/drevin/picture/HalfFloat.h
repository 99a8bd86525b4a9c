#pragma once

/// Half precision bits as single precision values.

#include <cstdint>

namespace drevintool {

/// The value of IEEE 754 binary16 bits, exactly; infinities and NaN stay what they are.
float floatFromHalf(std::uint16_t bits);

}  // namespace drevintool

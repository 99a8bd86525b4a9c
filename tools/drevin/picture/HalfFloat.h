#pragma once

/// Half precision bits as single precision values.

#include <cstdint>
#include <vector>

#include "picture/Picture.h"

namespace drevintool {

/// The value of IEEE 754 binary16 bits, exactly; infinities and NaN stay what they are.
float floatFromHalf(std::uint16_t bits);

/// The nearest binary16 bits, ties to even. Finite values beyond the range become the largest
/// finite ones, so that a bright light does not turn into infinity; infinities and NaN stay.
std::uint16_t halfFromFloat(float value);

/// halfFromFloat of every sample.
HalfSamples halfSamples(const std::vector<float>& samples);

}  // namespace drevintool

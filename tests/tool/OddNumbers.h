#pragma once

/// What pictures must not be trusted not to hold.

#include <limits>

namespace drevintool::testing {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr float kInfinityFloat = std::numeric_limits<float>::infinity();
constexpr float kNanFloat = std::numeric_limits<float>::quiet_NaN();

}  // namespace drevintool::testing

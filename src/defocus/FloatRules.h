#pragma once

/// Single-precision rules that decide what NaN, infinity and overflow do in the defocus.

#include <cmath>
#include <limits>

namespace drevin {

/// The depth that stands for "infinitely far": the largest float.
constexpr float dvInfinitelyFar = std::numeric_limits<float>::max();

/// The depth that a non-finite sample of a 1/z channel stands for: almost on the lens.
/// A denormal on purpose; its bits are 0x00200000, about 2.938736e-39.
constexpr float dvAlmostAtLens = 0x1p-128F;

/// `bound` if it is less than `value`, else `value`; a NaN value is kept.
inline float minKeepingNaN(float bound, float value) {
  return bound < value ? bound : value;
}

/// `bound` if it is greater than `value`, else `value`; a NaN value is kept.
inline float maxKeepingNaN(float bound, float value) {
  return bound > value ? bound : value;
}

/// Whether a normalised depth is the infinity marker. False for NaN.
inline bool isInfinitelyFar(float depth) {
  return std::fabs(depth - dvInfinitelyFar) < 1e-5F;
}

/// A depth for putting things in order: NaN counts as infinite.
inline float sortedDepth(float depth) {
  return std::isnan(depth) ? std::numeric_limits<float>::infinity() : depth;
}

/// Truncates toward zero. Values that an int cannot hold, and NaN, give the least int, a place that
/// no kernel reaches.
inline int truncateToInt(float value) {
  constexpr float limit = 0x1p31F;
  return value >= -limit && value < limit ? static_cast<int>(value)
                                          : std::numeric_limits<int>::min();
}

}  // namespace drevin

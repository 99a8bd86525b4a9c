#pragma once

/// The order of deep samples by their depths.

namespace embedded {

/// Depths of a sample.
struct DepthRange {
  float front = 0.0F;
  float back = 0.0F;
};

/// True if `a` is nearer: by the front, ties by the back; NaN counts as infinitely far.
bool isNearer(const DepthRange& a, const DepthRange& b);

}  // namespace embedded

#pragma once

/// Depths that are no distances: what renderers put where there is nothing.

#include "EmbeddedHost/Node.h"

namespace drevintool {

/// How a depth channel is encoded, as the node's control depthStyle has it.
enum class DepthStyle { Real, Reciprocal };

/// The style that the node is set to.
DepthStyle depthStyleOf(const Node& node);

/// Depths from here on, in either direction, stand for nothing: 1e10 and 1e30 are common, and the
/// largest floats.
constexpr float kFarCode = 1e10F;
/// The largest half, which larger depths may have become.
constexpr float kLargestHalf = 65504.0F;

/// Tells distances from codes in the depths of one channel.
struct DepthCodes {
  DepthStyle style = DepthStyle::Real;
  bool half = false;  ///< the channel is stored in half precision

  /// Whether the sample stands for nothing in any picture: it is 0 (at the lens, or infinitely far
  /// in the style 1/z), at least kFarCode away from 0, the largest half in a channel of halves, or
  /// it or its distance is not finite.
  bool isBackground(float raw) const;

  /// The distance in scene units: the sample, or 1 / sample in the style 1/z (infinite for 0).
  float distance(float raw) const;
};

}  // namespace drevintool

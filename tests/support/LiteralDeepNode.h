#pragma once

/// The literal deep defocus as a whole node shows it: size estimate, both ways of integrating front
/// and back, and the channels that pass through.

#include <array>

#include "support/LiteralDeepFrame.h"

namespace drevin::test {

/// The largest blur of the back of each pixel's farthest sample.
LiteralEstimate literalDeepEstimate(const LiteralDeepScene& scene, const LiteralLens& lens);

/// The pixel in the order in which a host serves it: by front, then back, nearest or farthest
/// first; samples at the same depths keep their order. A NaN is infinitely far.
LiteralDeepPixel literalHostOrder(LiteralDeepPixel pixel, bool farFirst);

class LiteralDeepNode {
 public:
  /// `scene` must outlive the node; its pixels are served in the order given.
  LiteralDeepNode(const LiteralDeepScene& scene, bool farFirst);

  /// Columns [left, right) of row y for every requested channel. With `separately` front and back
  /// are defocused apart and laid one over the other; else both are splatted together.
  LiteralRow row(int y, int left, int right, bool separately) const;

  const LiteralFrame& frame() const { return frame_; }

 private:
  LiteralRow defocused(int mode, int y, int left, int right) const;
  LiteralRow combined(int y, int left, int right, const LiteralRow& passed) const;

  const LiteralDeepScene& scene_;
  std::array<LiteralDeepScene, 3> byMode_;  ///< in the host's order
  LiteralFrame frame_;
};

}  // namespace drevin::test

#pragma once

/// A Drevin node with a deep picture on the embedded host.

#include <memory>
#include <vector>

#include "EmbeddedHost/DeepInput.h"
#include "EmbeddedHost/DeepOrder.h"
#include "node/NodeBench.h"
#include "support/LiteralDeepNode.h"

namespace drevin::test {

/// Serves deep pixels in an order for as long as it lives.
class OrderGuard {
 public:
  explicit OrderGuard(bool farFirst);
  ~OrderGuard();
  OrderGuard(const OrderGuard&) = delete;
  OrderGuard& operator=(const OrderGuard&) = delete;

 private:
  embedded::DeepOrder before_;
};

/// A sample of red (green and blue are its half and its quarter), premultiplied.
LiteralDeepSample redSample(float front, float back, float red, float alpha);
inline LiteralDeepSample redPoint(float depth, float red, float alpha) {
  return redSample(depth, depth, red, alpha);
}

/// A deep picture over a box with the same samples everywhere, of colour, alpha and both depths.
LiteralDeepImage evenDeepImage(const LiteralBox& box, const LiteralDeepPixel& pixel);
LiteralDeepPixel& deepPixelAt(LiteralDeepImage& image, int column, int row);

/// As the host holds it.
std::shared_ptr<embedded::DeepImage> hostDeepImage(const LiteralDeepImage& image, int width,
                                                   int height);

class DeepBench {
 public:
  explicit DeepBench(const LiteralDeepScene& scene);
  ~DeepBench();

  NodeBench& node() { return node_; }
  Drevin& drevin() { return node_.drevin(); }
  embedded::DeepInput& deepInput() { return deep_; }
  embedded::RenderResult render() { return node_.render(); }

 private:
  embedded::DeepInput deep_;
  NodeBench node_;
};

/// A rendered value; 0 for a channel that was not rendered.
float renderedAt(const embedded::Image& image, int channel, int x, int y);

}  // namespace drevin::test

#include "node/TransformedScenes.h"

#include <gtest/gtest.h>

#include <cstring>

#include "engine/FrameScenes.h"
#include "node/DeepBench.h"
#include "support/PlainScene.h"

namespace drevin::test {

namespace {

/// The pixel that gets another colour.
constexpr int changedX = 12;
constexpr int changedY = 10;

/// Whether two pictures hold other bits to the right of where splats of the pixel may reach.
bool differBeyondReach(NodeBench& a, NodeBench& b) {
  const embedded::Image first = a.render().image;
  const embedded::Image second = b.render().image;
  EXPECT_FALSE(first.planes.empty());
  const int begin = changedX + 2 * a.drevin().padding() + 1;
  EXPECT_LT(begin, first.box.r() - 40);
  const auto length = static_cast<std::size_t>(first.box.r() - begin) * sizeof(float);
  bool differ = false;
  for (const auto& [channel, plane] : first.planes) {
    const embedded::Plane& other = *second.planes.at(channel);
    for (int row = 0; row < first.box.h(); ++row) {
      const auto at = static_cast<std::size_t>(row * first.box.w() + begin - first.box.x());
      differ |= std::memcmp(plane->data() + at, other.data() + at, length) != 0;
    }
  }
  return differ;
}

}  // namespace

LiteralScene transformedScene(float blur) {
  return stagedScene(blur, 3, transformedWidth, transformedHeight);
}

LiteralScene transformedEffects(float blur) {
  LiteralScene scene = transformedScene(blur);
  addMattesAndShift(scene);
  return scene;
}

LiteralDeepScene transformedDeepScene(float blur) {
  LiteralDeepScene scene;
  scene.flat = transformedScene(blur);
  scene.deep = evenDeepImage(scene.flat.image.box, {redPoint(12.0F, 0.5F, 1.0F)});
  for (int y = 0; y < transformedHeight; ++y) {
    for (int x = 0; x < transformedWidth; ++x) {
      LiteralDeepPixel& pixel = deepPixelAt(scene.deep, x, y);
      const bool isHole = x >= 90 && x < 150 && y >= 40 && y < 100;
      if (x / 20 % 3 == 1) pixel = {redSample(8.1F, 9.4F, 0.3F, 0.6F), pixel.front()};
      if (y / 15 % 4 == 2 || isHole) pixel.clear();
    }
  }
  return scene;
}

bool showsTransforms(const LiteralScene& scene) {
  LiteralScene changed = scene;
  for (int channel = 1; channel <= 3; ++channel)
    pixelAt(changed.image, channel, changedX, changedY) += 0.7F;
  NodeBench bench(scene);
  NodeBench other(changed);
  return differBeyondReach(bench, other);
}

bool showsTransforms(const LiteralDeepScene& scene) {
  LiteralDeepScene changed = scene;
  LiteralDeepPixel& pixel = deepPixelAt(changed.deep, changedX, changedY);
  EXPECT_FALSE(pixel.empty());
  for (LiteralDeepSample& sample : pixel)
    sample.values[1] += 0.7F;
  DeepBench bench(scene);
  DeepBench other(changed);
  return differBeyondReach(bench.node(), other.node());
}

}  // namespace drevin::test

#include "DeepBenchScene.h"

namespace drevin::bench {

namespace {

/// Sample i of the pixel, of which the last is the nearest.
test::LiteralDeepSample sampleOf(const test::LiteralScene& flat, int x, int y, int i, int samples,
                                 bool thick) {
  const float depth = flat.image.at(x, y, 5) + static_cast<float>(samples - 1 - i);
  test::LiteralDeepSample sample{depth, thick ? depth + 1.5F : depth, {}};
  for (int channel = 1; channel <= 3; ++channel)
    sample.values[channel] = 0.5F * flat.image.at(x, y, channel);
  sample.values[4] = 0.5F;
  sample.values[test::literalFront] = sample.front;
  sample.values[test::literalBack] = sample.back;
  return sample;
}

}  // namespace

test::LiteralDeepScene deepScene(int width, int height, int blur, int samples, bool thick) {
  test::LiteralDeepScene scene;
  scene.flat = uniformScene(width, height, blur);
  scene.deep.box = scene.flat.image.box;
  scene.deep.channels = {1, 2, 3, 4, test::literalFront, test::literalBack};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      test::LiteralDeepPixel pixel;
      for (int i = 0; i < samples; ++i)
        pixel.push_back(sampleOf(scene.flat, x, y, i, samples, thick));
      scene.deep.pixels.push_back(pixel);
    }
  }
  return scene;
}

}  // namespace drevin::bench

#include "deep/RandomDeepScene.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

#include "support/RandomScene.h"

namespace drevin::test {

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

float special(Draw& draw) {
  const std::array<float, 8> values = {notANumber, infinity, -infinity, 0.0F,
                                       -0.0F,      1e-41F,   -3.0F,     1e30F};
  return values[static_cast<std::size_t>(draw.whole(0, 7))];
}

float randomThickness(Draw& draw, float region) {
  const std::array<float, 4> thin = {1e-6F, 9.99999940e-07F, 1.1e-6F, 1e-7F};
  if (draw.chance(0.4)) return 0.0F;
  if (draw.chance(0.2)) return thin[static_cast<std::size_t>(draw.whole(0, 3))];
  return draw.real(0.0F, 0.6F) * (region + 0.1F);
}

float randomAlpha(Draw& draw) {
  if (draw.chance(0.15)) return 1.0F;
  if (draw.chance(0.15)) return 0.0F;
  return draw.chance(0.02) ? draw.real(-0.3F, 1.4F) : draw.real(0.02F, 0.9F);
}

void orderSamples(Draw& draw, LiteralDeepPixel& pixel) {
  const bool farFirst = draw.chance(0.4);
  std::stable_sort(pixel.begin(), pixel.end(),
                   [&](const LiteralDeepSample& a, const LiteralDeepSample& b) {
                     return farFirst ? a.front > b.front : a.front < b.front;
                   });
}

LiteralDeepSample randomSample(Draw& draw, const LiteralSettings& settings,
                               const std::vector<int>& channels, bool thinScene) {
  LiteralDeepSample sample;
  const float region = settings.focusRegionSize;
  // Near depth 0 a thickness of 1e-6 survives the sum with the front.
  sample.front =
      thinScene ? draw.real(0.0F, 4e-6F) : settings.focalPlane + draw.real(-0.7F, 0.7F) * region;
  if (!thinScene && draw.chance(0.05)) sample.front = settings.focalPlane;
  sample.back = sample.front + randomThickness(draw, thinScene ? 3e-6F : region);
  const float alpha = randomAlpha(draw);
  for (const int channel : channels) {
    sample.values[channel] = channel == 4 ? alpha : draw.real(0.0F, 1.0F) * alpha;
  }
  return sample;
}

void addSpecials(Draw& draw, LiteralDeepSample& sample) {
  if (draw.chance(0.03)) sample.front = special(draw);
  if (draw.chance(0.03)) sample.back = special(draw);
  for (auto& entry : sample.values) {
    if (draw.chance(0.003)) entry.second = special(draw);
  }
}

void drawDeepImage(Draw& draw, LiteralDeepScene& scene) {
  LiteralDeepImage& deep = scene.deep;
  for (const int channel : {1, 2, 3, 4, literalFront, literalBack, firstExtraChannel}) {
    const bool needed = channel == 4 || channel == literalFront || channel == literalBack;
    if (needed || draw.chance(channel <= 3 ? 0.9 : 0.4)) deep.channels.push_back(channel);
  }
  const LiteralPicture& image = scene.flat.image;
  deep.box = {0, 0, image.formatWidth, image.formatHeight};
  if (draw.chance(0.4)) {
    deep.box.left = draw.whole(-4, image.formatWidth - 1);
    deep.box.bottom = draw.whole(-4, image.formatHeight - 1);
    deep.box.right = deep.box.left + draw.whole(1, 24);
    deep.box.top = deep.box.bottom + draw.whole(1, 18);
  }
  const bool specials = draw.chance(0.25);
  const int pixels = (deep.box.right - deep.box.left) * (deep.box.top - deep.box.bottom);
  for (int i = 0; i < pixels; ++i) {
    deep.pixels.push_back(
        randomDeepPixel(draw, scene.flat.settings, deep.channels, specials && draw.chance(0.05)));
  }
}

}  // namespace

LiteralDeepPixel randomDeepPixel(Draw& draw, const LiteralSettings& settings,
                                 const std::vector<int>& channels, bool specials) {
  LiteralDeepPixel pixel;
  if (draw.chance(0.1)) {
    return pixel;
  }
  const int count = draw.chance(0.1) ? draw.whole(5, 10) : draw.whole(1, 4);
  const bool thinScene = draw.chance(0.1);
  for (int i = 0; i < count; ++i) {
    pixel.push_back(randomSample(draw, settings, channels, thinScene));
  }
  if (!draw.chance(0.1)) orderSamples(draw, pixel);
  for (LiteralDeepSample& sample : pixel) {
    if (specials) addSpecials(draw, sample);
    if (sample.values.count(literalFront) != 0) sample.values[literalFront] = sample.front;
    if (sample.values.count(literalBack) != 0) sample.values[literalBack] = sample.back;
  }
  return pixel;
}

LiteralDeepScene randomDeepScene(unsigned seed) {
  Draw draw(seed + 70000);
  LiteralDeepScene scene;
  scene.flat = randomScene(seed);
  LiteralSettings& settings = scene.flat.settings;
  settings.outputType = draw.chance(0.15) ? 1 : 0;
  settings.maxKernelSize = std::min(settings.maxKernelSize, draw.chance(0.8) ? 14 : 40);
  if (draw.chance(0.3)) settings.depthChannel = literalBack;
  drawDeepImage(draw, scene);
  return scene;
}

}  // namespace drevin::test

#include "support/LiteralDeepNode.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace drevin::test {

namespace {

float placeOf(float depth) {
  return std::isnan(depth) ? std::numeric_limits<float>::infinity() : depth;
}

bool isNearer(const LiteralDeepSample& a, const LiteralDeepSample& b) {
  const float frontA = placeOf(a.front);
  const float frontB = placeOf(b.front);
  return frontA != frontB ? frontA < frontB : placeOf(a.back) < placeOf(b.back);
}

LiteralFrame frameOf(const LiteralDeepScene& scene) {
  const LiteralPicture& image = scene.flat.image;
  const LiteralLens lens = literalLens(scene.flat.settings, image.formatWidth, image.formatHeight);
  return LiteralFrame(scene.flat, literalDeepEstimate(scene, lens));
}

LiteralValue valueIn(const LiteralRow& row, int channel, std::size_t i) {
  const auto found = row.find(channel);
  return found == row.end() ? LiteralValue{} : found->second[i];
}

/// front + (1 - cover) * back, with what each may stray.
LiteralValue over(const LiteralValue& front, const LiteralValue& back, const LiteralValue& cover) {
  const double room = 1.0 - cover.value;
  LiteralValue value;
  value.value = front.value + room * back.value;
  value.slack = front.slack + std::fabs(room) * back.slack + cover.slack * std::fabs(back.value);
  value.settled = front.settled && back.settled && cover.settled;
  return value;
}

}  // namespace

LiteralEstimate literalDeepEstimate(const LiteralDeepScene& scene, const LiteralLens& lens) {
  const LiteralSettings& settings = scene.flat.settings;
  int largest = 0;
  for (int y = 0; y < scene.flat.image.formatHeight; ++y) {
    for (int x = 0; x < scene.flat.image.formatWidth; ++x) {
      const LiteralDeepPixel pixel = literalHostOrder(scene.deep.at(x, y), false);
      if (pixel.empty()) continue;
      largest = std::max(largest, literalDeepDiameter(pixel.back().back, settings, lens));
    }
  }
  return literalEstimateOf(largest, settings);
}

LiteralDeepPixel literalHostOrder(LiteralDeepPixel pixel, bool farFirst) {
  std::stable_sort(pixel.begin(), pixel.end(),
                   [&](const LiteralDeepSample& a, const LiteralDeepSample& b) {
                     return farFirst ? isNearer(b, a) : isNearer(a, b);
                   });
  return pixel;
}

LiteralDeepNode::LiteralDeepNode(const LiteralDeepScene& scene, bool farFirst)
    : scene_(scene), frame_(frameOf(scene)) {
  LiteralDeepScene served = scene;
  for (LiteralDeepPixel& pixel : served.deep.pixels)
    pixel = literalHostOrder(pixel, farFirst);
  for (int mode = 0; mode < 3; ++mode) {
    served.flat.settings.focusOutput = mode;
    byMode_[static_cast<std::size_t>(mode)] = served;
  }
}

LiteralRow LiteralDeepNode::defocused(int mode, int y, int left, int right) const {
  return literalDeepRow(byMode_[static_cast<std::size_t>(mode)], frame_, y, left, right);
}

LiteralRow LiteralDeepNode::combined(int y, int left, int right, const LiteralRow& passed) const {
  const int wanted = scene_.flat.settings.focusOutput;
  if (wanted != 0) return defocused(wanted, y, left, right);
  const LiteralRow front = defocused(1, y, left, right);
  const LiteralRow back = defocused(2, y, left, right);
  const LiteralRow& covers = front.count(4) != 0 ? front : passed;
  LiteralRow out;
  for (const auto& [channel, values] : front) {
    for (std::size_t i = 0; i < values.size(); ++i)
      out[channel].push_back(over(values[i], valueIn(back, channel, i), valueIn(covers, 4, i)));
  }
  return out;
}

LiteralRow LiteralDeepNode::row(int y, int left, int right, bool separately) const {
  LiteralRow out;
  for (const int channel : scene_.flat.channels) {
    for (int x = left; x < right; ++x) {
      const float value = scene_.flat.image.at(x, y, channel);
      out[channel].push_back({static_cast<double>(value), 0.0, true});
    }
  }
  const LiteralRow made = separately ? combined(y, left, right, out) : defocused(0, y, left, right);
  for (const auto& [channel, values] : made)
    out[channel] = values;
  return out;
}

}  // namespace drevin::test

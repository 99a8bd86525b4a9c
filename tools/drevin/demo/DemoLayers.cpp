#include "demo/DemoLayers.h"

#include <Imath/half.h>

#include <algorithm>

namespace drevintool {
namespace {

constexpr double kAlike = 0.004;  // per m

struct Group {
  double share = 0.0;
  double nearness = 0.0;  // 1 / depth, times share
  DemoVector light;

  void add(const DemoLayer& layer) {
    share += layer.share;
    nearness += layer.share / layer.depth;
    light = light + layer.light;
  }
};

DemoDeepSample sampleOf(const Group& group, float alpha) {
  const auto depth = static_cast<float>(group.share / group.nearness);
  const DemoVector colour = group.light * (alpha / group.share);
  return {depth,
          depth,
          alpha,
          static_cast<float>(colour.x),
          static_cast<float>(colour.y),
          static_cast<float>(colour.z)};
}

}  // namespace

float toHalfPrecision(double value) {
  return imath_half_to_float(imath_float_to_half(static_cast<float>(value)));
}

void appendMerged(std::vector<DemoLayer>& layers, std::vector<DemoDeepSample>& samples) {
  std::stable_sort(layers.begin(), layers.end(),
                   [](const DemoLayer& a, const DemoLayer& b) { return a.depth < b.depth; });
  double open = 1.0;
  for (auto next = layers.begin(); next != layers.end() && open > 0.0;) {
    const double first = 1.0 / next->depth;
    Group group;
    for (; next != layers.end() && first - 1.0 / next->depth < kAlike; ++next)
      group.add(*next);
    const bool last = next == layers.end();
    const float alpha = last ? 1.0F : toHalfPrecision(std::min(group.share / open, 1.0));
    if (alpha <= 0.0F) continue;
    samples.push_back(sampleOf(group, alpha));
    open *= 1.0 - static_cast<double>(alpha);
  }
}

}  // namespace drevintool

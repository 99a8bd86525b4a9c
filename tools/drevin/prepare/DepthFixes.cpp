#include "prepare/DepthFixes.h"

#include "depth/MixedEdges.h"

namespace drevintool {

void FarthestDepth::add(float raw) {
  if (codes_.isBackground(raw)) return;
  if (!raw_ || codes_.distance(raw) > codes_.distance(*raw_)) raw_ = raw;
}

std::size_t fixEdges(const DepthPlane& plane, std::vector<float>& values) {
  const std::vector<MixedPixel> mixed = findMixedPixels(plane);
  for (const MixedPixel& pixel : mixed)
    values[pixel.index] = pixel.nearer;
  return mixed.size();
}

std::optional<float> backgroundDepth(const BackgroundFix& fix, const BackgroundFinding& background,
                                     const std::vector<float>& values) {
  if (!fix.farthest) return fix.depth;
  FarthestDepth farthest(background.codes);
  for (const float value : values) {
    if (!background.contains(value)) farthest.add(value);
  }
  return farthest.raw();
}

std::size_t fixBackground(const BackgroundFinding& background, float depth,
                          std::vector<float>& values) {
  std::size_t count = 0;
  for (float& value : values) {
    if (!background.contains(value)) continue;
    value = depth;
    ++count;
  }
  return count;
}

}  // namespace drevintool

#include "prepare/DepthFixes.h"

#include <cmath>

#include "depth/MixedEdges.h"

namespace drevintool {

void FarthestDepth::add(float raw) {
  const float distance = codes_.distance(raw);
  if (codes_.isBackground(raw) || !std::isfinite(distance)) return;
  if (!raw_ || distance > codes_.distance(*raw_)) raw_ = raw;
}

std::size_t fixEdges(const DepthPlane& plane, std::vector<float>& values) {
  const std::vector<MixedPixel> mixed = findMixedPixels(plane);
  for (const MixedPixel& pixel : mixed)
    values[pixel.index] = pixel.nearer;
  return mixed.size();
}

std::size_t fixBackground(const DepthCodes& codes, float depth, std::vector<float>& values) {
  std::size_t count = 0;
  for (float& value : values) {
    if (!codes.isBackground(value)) continue;
    value = depth;
    ++count;
  }
  return count;
}

}  // namespace drevintool

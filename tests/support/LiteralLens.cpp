#include "support/LiteralLens.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace drevin::test {

namespace {

std::vector<float> boundaries(const LiteralSettings& settings, const LiteralLens& lens) {
  float near = std::max(0.0F, lens.focusNear);
  float far = lens.focusFar;
  if (settings.overrideNearAndFar) {
    far = std::max(settings.slicesNearAndFar[0], settings.slicesNearAndFar[1]);
    near = std::min(settings.slicesNearAndFar[0], settings.slicesNearAndFar[1]);
  }
  const int n = settings.correctiveSlices;
  if (n == 2) {
    return {0.0F, settings.focalPlane};
  }
  std::vector<float> list;
  if (n > 2) {
    list.push_back(0.0F);
    const float step = (far - near) / static_cast<float>(n);
    for (int i = 1; i < n; ++i) {
      list.push_back(near + static_cast<float>(i) * step);
    }
  }
  return list;
}

}  // namespace

float literalUnit(int worldScale) {
  const float units[5] = {1.0F, 10.0F, 1000.0F, 25.4F, 304.8F};
  return units[worldScale];
}

LiteralLens literalLens(const LiteralSettings& settings, int formatWidth, int formatHeight) {
  LiteralLens lens;
  lens.filmBackScale = std::sqrt(static_cast<float>(formatWidth * formatHeight)) /
                       std::sqrt(settings.apertureWidth * settings.apertureHeight);
  lens.halfFocusRegion = 0.5F * settings.focusRegionSize;
  lens.invHalfFocusRegion = 1.0F / lens.halfFocusRegion;
  lens.focusFar = settings.focalPlane + lens.halfFocusRegion;
  lens.focusNear = settings.focalPlane - lens.halfFocusRegion;
  lens.focusRange = lens.focusFar - lens.focusNear;
  const float f = settings.focalLength;
  const float distance =
      settings.focalPlane * literalUnit(settings.worldScale) * settings.worldScaleMultiplier;
  lens.lensCoefficient = f / (distance - f) * f / settings.fStop;
  lens.sliceBoundaries = boundaries(settings, lens);
  return lens;
}

int literalSlice(float depth, const LiteralSettings& settings, const LiteralLens& lens) {
  if (settings.correctiveSlices == 1) {
    return 0;
  }
  int first = 0;
  int count = static_cast<int>(lens.sliceBoundaries.size());
  while (count > 0) {
    const int half = count / 2;
    const int middle = first + half;
    if (depth < lens.sliceBoundaries[static_cast<std::size_t>(middle)]) {
      count = half;
    } else {
      first += half + 1;
      count -= half + 1;
    }
  }
  return first - 1;
}

}  // namespace drevin::test

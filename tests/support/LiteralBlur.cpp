#include "support/LiteralBlur.h"

#include <cmath>
#include <limits>

namespace drevin::test {

namespace {

float thinLens(float depth, const LiteralSettings& settings, const LiteralLens& lens) {
  const float k = literalUnit(settings.worldScale) * settings.worldScaleMultiplier;
  const float s = settings.focalPlane * k;
  const float d = depth * k;
  const float delta = std::fabs(d - s);
  const float divisor = s > d ? s - delta : s + delta;
  const float coc = delta / divisor * lens.lensCoefficient * lens.filmBackScale;
  return std::isfinite(coc) ? coc : 0.0F;
}

}  // namespace

float literalDepth(float raw, const LiteralSettings& settings) {
  if (!std::isfinite(raw)) {
    return settings.depthStyle == 1 ? 0x1p-128F : std::numeric_limits<float>::max();
  }
  if (settings.depthStyle == 1) {
    return raw > 0.0F ? 1.0F / raw : std::numeric_limits<float>::max();
  }
  return raw;
}

LiteralBlur literalCircle(float depth, const LiteralSettings& settings, const LiteralLens& lens) {
  float z = depth;
  if (!settings.realWorldLens) {
    if (z < lens.focusNear) z = lens.focusNear;
    if (z > lens.focusFar) z = lens.focusFar;
  }
  return literalUnclampedCircle(z, settings, lens);
}

LiteralBlur literalUnclampedCircle(float z, const LiteralSettings& settings,
                                   const LiteralLens& lens) {
  LiteralBlur blur;
  const float product = std::fabs(z - settings.focalPlane) * lens.invHalfFocusRegion;
  float ramp = 1.0F < product ? 1.0F : product;
  if (settings.focalPlane > z) {
    blur.region = 1;
  } else if (z >= settings.focalPlane) {
    blur.region = 2;
  }
  if (settings.falloff == 1) {
    ramp = ramp * ramp;
  }
  blur.coc = settings.realWorldLens ? thinLens(z, settings, lens) : ramp * settings.multiplier;
  if (blur.region == 1) blur.coc = blur.coc * settings.frontMultiplier;
  if (blur.region == 2) blur.coc = blur.coc * settings.backMultiplier;
  blur.depth = z;
  return blur;
}

LiteralBlur literalBlur(float raw, const LiteralSettings& settings, const LiteralLens& lens,
                        int kernelSize) {
  LiteralBlur blur = literalCircle(literalDepth(raw, settings), settings, lens);
  if (std::fabs(blur.depth - std::numeric_limits<float>::max()) < 1e-5F) {
    blur.coc = static_cast<float>(kernelSize);
  }
  blur.coc = blur.coc * settings.contextScale;
  return blur;
}

}  // namespace drevin::test

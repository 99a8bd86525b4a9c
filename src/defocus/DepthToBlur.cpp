#include "defocus/DepthToBlur.h"

#include <cmath>

#include "defocus/FloatRules.h"

namespace drevin {

namespace {

float artisticCoc(float depth, const dvLens& lens) {
  const float distance = std::fabs(depth - lens.focalPlane) * lens.invHalfFocusRegion;
  float ramp = minKeepingNaN(1.0F, distance);
  if (lens.falloff == dvFalloff::Quadratic) ramp = ramp * ramp;
  return ramp * lens.multiplier;
}

float thinLensCoc(float depth, const dvLens& lens) {
  const float k = lens.unit * lens.worldScaleMultiplier;
  const float focus = lens.focalPlane * k;
  const float sample = depth * k;
  const float delta = std::fabs(sample - focus);
  // Both forms equal the sample's distance; they differ in rounding, which is behaviour.
  const float divisor = focus > sample ? focus - delta : focus + delta;
  const float coc = delta / divisor * lens.lensCoefficient * lens.filmBackScale;
  return std::isfinite(coc) ? coc : 0.0F;
}

}  // namespace

float normaliseDepth(float raw, dvDepthStyle style) {
  const bool reciprocal = style == dvDepthStyle::Reciprocal;
  if (!std::isfinite(raw)) return reciprocal ? dvAlmostAtLens : dvInfinitelyFar;
  if (!reciprocal) return raw;
  return raw > 0.0F ? 1.0F / raw : dvInfinitelyFar;
}

float clampToFocusRegion(float depth, const dvLens& lens) {
  if (lens.realWorldLens) return depth;
  const float raised = maxKeepingNaN(lens.focusNear, depth);
  return minKeepingNaN(lens.focusFar, raised);
}

dvFocusRegion focusRegion(float depth, const dvLens& lens) {
  if (lens.focalPlane > depth) return dvFocusRegion::Front;
  if (depth >= lens.focalPlane) return dvFocusRegion::Back;
  return dvFocusRegion::Unordered;
}

float unscaledCoc(float depth, dvFocusRegion region, const dvLens& lens) {
  const float coc = lens.realWorldLens ? thinLensCoc(depth, lens) : artisticCoc(depth, lens);
  if (region == dvFocusRegion::Front) return coc * lens.frontMultiplier;
  if (region == dvFocusRegion::Back) return coc * lens.backMultiplier;
  return coc;
}

dvBlur depthToBlur(float raw, const dvLens& lens) {
  dvBlur blur;
  blur.depth = clampToFocusRegion(normaliseDepth(raw, lens.depthStyle), lens);
  blur.region = focusRegion(blur.depth, lens);
  const float coc = isInfinitelyFar(blur.depth) ? static_cast<float>(lens.kernelSize)
                                                : unscaledCoc(blur.depth, blur.region, lens);
  blur.coc = coc * lens.uiContextScale;
  return blur;
}

float splattedCoc(float coc, float defocusMatte) {
  return maxKeepingNaN(1.0F, coc * defocusMatte);
}

}  // namespace drevin

#pragma once

/// The one place where a depth sample becomes a blur size and a focus region. Inline, as every
/// pixel of a frame goes through it twice; `Lens` is dvLens, or that with fixed modes
/// (FixedLens.h).

#include <cmath>

#include "defocus/FloatRules.h"

namespace drevin {

/// How a depth channel is encoded.
enum class dvDepthStyle { Real, Reciprocal };

/// Shape of the artistic ramp from the focal plane to full blur.
enum class dvFalloff { Linear, Quadratic };

/// Side of the focal plane. Unordered: the depth is NaN.
enum class dvFocusRegion { Unordered = 0, Front = 1, Back = 2 };

/// Everything that the conversion reads; fixed while rows are produced.
struct dvLens {
  dvDepthStyle depthStyle = dvDepthStyle::Real;
  dvFalloff falloff = dvFalloff::Linear;  ///< artistic mode only
  bool realWorldLens = false;             ///< thin lens instead of the artistic ramp
  float focalPlane = 100.0F;              ///< scene units
  float focusNear = 99.5F;                ///< scene units
  float focusFar = 100.5F;                ///< scene units
  float invHalfFocusRegion = 2.0F;        ///< 1 / scene units
  float multiplier = 1.0F;                ///< px at full ramp, artistic mode only
  float frontMultiplier = 1.0F;
  float backMultiplier = 1.0F;
  float unit = 10.0F;  ///< mm per scene unit, before worldScaleMultiplier
  float worldScaleMultiplier = 1.0F;
  float lensCoefficient = 0.0F;  ///< see lensCoefficient()
  float filmBackScale = 0.0F;    ///< px per mm
  float uiContextScale = 1.0F;   ///< proxy scale that multiplies every blur
  int kernelSize = 256;          ///< px, the blur of the infinitely far
};

/// A blur: the diameter of the kernel to use and the side of the focal plane.
struct dvBlur {
  float coc = 0.0F;  ///< px
  dvFocusRegion region = dvFocusRegion::Unordered;
  float depth = 0.0F;  ///< the normalised, clamped depth that gave it, scene units
};

/// Depth in scene units of one raw sample.
///
/// Real: the sample; not finite counts as infinitely far. 1/z: 1 / sample where it is positive;
/// zero and negative samples are infinitely far; not finite is almost at the lens and is not
/// inverted.
inline float normaliseDepth(float raw, dvDepthStyle style) {
  const bool reciprocal = style == dvDepthStyle::Reciprocal;
  if (!std::isfinite(raw)) return reciprocal ? dvAlmostAtLens : dvInfinitelyFar;
  if (!reciprocal) return raw;
  return raw > 0.0F ? 1.0F / raw : dvInfinitelyFar;
}

/// In the artistic mode the depth raised to focusNear, then lowered to focusFar; else unchanged.
template <typename Lens>
float clampToFocusRegion(float depth, const Lens& lens) {
  if (lens.realWorldLens) return depth;
  const float raised = maxKeepingNaN(lens.focusNear, depth);
  return minKeepingNaN(lens.focusFar, raised);
}

/// Side of the focal plane; a depth exactly on it is behind.
template <typename Lens>
dvFocusRegion focusRegion(float depth, const Lens& lens) {
  if (lens.focalPlane > depth) return dvFocusRegion::Front;
  if (depth >= lens.focalPlane) return dvFocusRegion::Back;
  return dvFocusRegion::Unordered;
}

/// The two forms of unscaledCoc, before the multiplier of the region.
template <typename Lens>
float artisticCoc(float depth, const Lens& lens) {
  const float distance = std::fabs(depth - lens.focalPlane) * lens.invHalfFocusRegion;
  float ramp = minKeepingNaN(1.0F, distance);
  if (lens.falloff == dvFalloff::Quadratic) ramp = ramp * ramp;
  return ramp * lens.multiplier;
}

template <typename Lens>
float thinLensCoc(float depth, const Lens& lens) {
  const float k = lens.unit * lens.worldScaleMultiplier;
  const float focus = lens.focalPlane * k;
  const float sample = depth * k;
  const float delta = std::fabs(sample - focus);
  // Both forms equal the sample's distance; they differ in rounding, which is behaviour.
  const float divisor = focus > sample ? focus - delta : focus + delta;
  const float coc = delta / divisor * lens.lensCoefficient * lens.filmBackScale;
  return std::isfinite(coc) ? coc : 0.0F;
}

/// Blur of a normalised, clamped depth before the infinity rule and the interface scale.
///
/// Artistic:   c = ramp * m * r           ramp = min(1, |z - F| * h), squared when Quadratic
/// Thin lens:  c = |D - S| / D * K * P * r      D = z * k, S = F * k, k = mm per scene unit
///
///   z  depth              scene units  any
///   F  focal plane        scene units
///   h  1 / half region    1/units      infinite for a region of size 0
///   m  multiplier         px
///   r  front or back multiplier by region; 1 when unordered
///   K  lens coefficient   mm
///   P  film back scale    px/mm
///
/// Fails to: NaN in the artistic mode at z = F with an infinite h; 0 (before r) in the thin-lens
/// mode when the quotient is not finite (D = 0, S = f, NaN).
/// Order: float, left to right; the order is behaviour.
template <typename Lens>
float unscaledCoc(float depth, dvFocusRegion region, const Lens& lens) {
  const float coc = lens.realWorldLens ? thinLensCoc(depth, lens) : artisticCoc(depth, lens);
  if (region == dvFocusRegion::Front) return coc * lens.frontMultiplier;
  if (region == dvFocusRegion::Back) return coc * lens.backMultiplier;
  return coc;
}

/// The whole conversion of one raw sample, as the visualizations show it: normalisation, clamp,
/// blur, kernelSize for the infinitely far (thin-lens mode), interface scale. Not limited above or
/// below; may be NaN or negative.
inline dvBlur depthToBlur(float raw, const dvLens& lens) {
  dvBlur blur;
  blur.depth = clampToFocusRegion(normaliseDepth(raw, lens.depthStyle), lens);
  blur.region = focusRegion(blur.depth, lens);
  const float coc = isInfinitelyFar(blur.depth) ? static_cast<float>(lens.kernelSize)
                                                : unscaledCoc(blur.depth, blur.region, lens);
  blur.coc = coc * lens.uiContextScale;
  return blur;
}

/// The diameter that is splatted: modulated by the defocus matte and never under one pixel. NaN
/// stays NaN.
inline float splattedCoc(float coc, float defocusMatte) {
  return maxKeepingNaN(1.0F, coc * defocusMatte);
}

}  // namespace drevin

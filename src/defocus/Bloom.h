#pragma once

/// Lens bloom: extra light from bright pixels, growing towards the frame's corners.

namespace drevin {

struct dvBloom {
  float amount = 0.0F;     ///< strength at a corner; 0 or less is none
  float curvature = 2.0F;  ///< how late the bloom sets in from centre to corner; 0 or less: even
  float threshold = 0.7F;  ///< colour above which a pixel blooms
  int formatWidth = 0;     ///< px
  int formatHeight = 0;    ///< px
};

/// The part of bloomAmount() that the place decides: min(1, rho ^ (curvature + 0.001)).
float bloomRadialFactor(const dvBloom& bloom, int x, int y);

/// Bloom of a pixel by its place:  a = B * min(1, rho ^ (curvature + 0.001))
///   rho = sqrt((|x - hw| / hw)^2 + (|y - hh| / hh)^2),  hw, hh half the format's size
///
/// Fails to: NaN for a format of size 0 at its origin.
inline float bloomAmount(const dvBloom& bloom, int x, int y) {
  return bloom.amount <= 0.0F ? 0.0F : bloom.amount * bloomRadialFactor(bloom, x, y);
}

/// Light that bloom adds to one colour value:  max(0, v - threshold) * amount * matte
///
/// An amount of 0 adds nothing, also to an infinite value. A NaN value adds 0.
inline float bloomedLight(const dvBloom& bloom, float value, float amount, float matte) {
  if (amount == 0.0F) return 0.0F;
  const float above = value - bloom.threshold;
  return (above > 0.0F ? above : 0.0F) * amount * matte;
}

}  // namespace drevin

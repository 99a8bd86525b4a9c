#pragma once

/// Chromatic aberration: a diagonal shift of colour channels that grows with the blur.

namespace drevin {

struct dvChromaticAberration {
  float amount = 0.0F;                   ///< signed; 0 is none
  float offset[3] = {0.6F, 1.0F, 1.0F};  ///< spectral offset of red, green, blue
};

/// Shift of a channel before blur:  |offset * k| - |k| / 2
///
/// Only the channels that the sign of k addresses move: red and green for positive k, red and blue
/// for negative; every other channel gives 0. Channel 1 is red, 2 green, 3 blue.
float channelShift(const dvChromaticAberration& aberration, int channel);

/// Pixels that a channel moves, the same along both axes:  s * shift * 0.1 for s > 0, else 0
///   s = coc * matte * 0.5 - 1
float shiftDistance(float shift, float coc, float matte);

/// A pixel's place after the shift, truncated toward zero.
int shiftedPlace(int place, float distance);

}  // namespace drevin

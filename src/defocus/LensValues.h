#pragma once

/// Lens and focus values that are derived from the controls once per validation.

namespace drevin {

/// How the artist states the scene's unit of length.
enum class dvWorldScale { Millimetres, Centimetres, Metres, Inches, Feet };

/// Millimetres in one unit: 1, 10, 1000, 25.4, 304.8. An index that is no unit counts as mm.
float unitFactor(int worldScale);

/// Pixels per millimetre of film back:  P = sqrt(W * H) / sqrt(w * h)
///
///   W, H  size of the full-resolution format  px  integers, multiplied as integers
///   w, h  size of the film back               mm  > 0
///
/// Fails to: infinity or NaN when w * h is 0 or negative.
float filmBackScale(int formatWidth, int formatHeight, float apertureWidth, float apertureHeight);

/// The depths between which the artistic blur ramps from none to full, scene units.
struct dvFocusSpan {
  float halfRegion = 0.0F;     ///< half of the region's size
  float invHalfRegion = 0.0F;  ///< 1 / halfRegion; infinite for a region of size 0
  float far = 0.0F;            ///< focal plane + halfRegion
  float near = 0.0F;           ///< focal plane - halfRegion, not clamped at 0
  float range = 0.0F;          ///< far - near
};

dvFocusSpan focusSpan(float focalPlane, float focusRegionSize);

/// Lens coefficient of a thin lens:  K = f / (S - f) * f / N,  S = focalPlane * unit * scale
///
///   f      focal length                  mm
///   N      aperture number               none
///   S      focus distance                mm
///   unit   unitFactor of the world scale mm per unit
///   scale  further factor on the unit    none
///
/// Fails to: infinity or NaN at S = f or N = 0.
/// Order: float, left to right; the order is behaviour.
float lensCoefficient(float focalLength, float fStop, float focalPlane, float unit, float scale);

}  // namespace drevin

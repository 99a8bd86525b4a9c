#include "defocus/LensValues.h"

#include <cmath>
#include <cstdint>

namespace drevin {

float unitFactor(int worldScale) {
  switch (static_cast<dvWorldScale>(worldScale)) {
    case dvWorldScale::Millimetres:
      return 1.0F;
    case dvWorldScale::Centimetres:
      return 10.0F;
    case dvWorldScale::Metres:
      return 1000.0F;
    case dvWorldScale::Inches:
      return 25.4F;
    case dvWorldScale::Feet:
      return 304.8F;
  }
  return 1.0F;
}

float filmBackScale(int formatWidth, int formatHeight, float apertureWidth, float apertureHeight) {
  // 64 bits: a panorama's pixel count may pass 2^31.
  const auto pixels = static_cast<std::int64_t>(formatWidth) * formatHeight;
  return std::sqrt(static_cast<float>(pixels)) / std::sqrt(apertureWidth * apertureHeight);
}

dvFocusSpan focusSpan(float focalPlane, float focusRegionSize) {
  dvFocusSpan span;
  span.halfRegion = 0.5F * focusRegionSize;
  span.invHalfRegion = 1.0F / span.halfRegion;
  span.far = focalPlane + span.halfRegion;
  span.near = focalPlane - span.halfRegion;
  span.range = span.far - span.near;
  return span;
}

float lensCoefficient(float focalLength, float fStop, float focalPlane, float unit, float scale) {
  const float distance = focalPlane * unit * scale;
  return focalLength / (distance - focalLength) * focalLength / fStop;
}

}  // namespace drevin

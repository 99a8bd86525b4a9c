#include "kernel/ApertureShape.h"

#include <cmath>

namespace drevin {
namespace {

constexpr float pi = 3.1415927F;
constexpr float turn = 6.2831855F;             // radians
constexpr float hardestGain = 0x1.f3fffep+9F;  // just below 1000
constexpr float softestHardEdge = 0.001F;      // softness below which the gain is held

struct Offset {
  float x;
  float y;
};

// An offset from the centre, px, in the frame where the shape is as wide as it is high.
Offset squeezed(Offset offset, float aspectRatio) {
  if (aspectRatio > 1.0F) {
    offset.x *= aspectRatio;
  } else if (aspectRatio < 1.0F) {
    offset.y *= 1.0F / aspectRatio;
  }
  return offset;
}

float squaredRadius(Offset offset, float halfSideSquared) {
  return (offset.x * offset.x + offset.y * offset.y) / halfSideSquared;
}

// 1 at the centre, 0 at and beyond the rim, and 0 for a radius that is NaN.
float paraboloid(float squaredRadius) {
  return squaredRadius < 1.0F ? 1.0F - squaredRadius : 0.0F;
}

// How far the blade under an offset bows inward, as a part of the squared radius.
float bladeBow(const dvApertureShape& shape, Offset offset) {
  const float segment = 1.0F / static_cast<float>(shape.numSides);
  float angle = std::atan2(offset.y, offset.x);
  if (angle < 0.0F) {
    angle += turn;
  }
  const float turns = (shape.rotation * turn + angle) / turn;
  // A remainder is exact in any precision, so single precision loses nothing here.
  const float alongBlade = std::fmod(turns, segment) / segment;
  return std::sin(alongBlade * pi) * (1.0F - shape.bladeCurvature) * segment;
}

float aberration(float amount, float circle) {
  if (amount > 0.0F) {
    return amount * circle;
  }
  return amount < 0.0F ? std::fabs(amount) * (1.0F - circle) : 0.0F;
}

}  // namespace

float softnessGain(float softness) {
  return softness < softestHardEdge ? hardestGain : 1.0F / softness;
}

float apertureValue(const dvApertureShape& shape, float gain, float halfSide, float halfSideSquared,
                    int column, int row) {
  const Offset offset = squeezed(
      {(static_cast<float>(column) + 0.5F) - halfSide, (static_cast<float>(row) + 0.5F) - halfSide},
      shape.aspectRatio);
  const float radius = squaredRadius(offset, halfSideSquared);
  const float circle = paraboloid(radius);
  const float base = shape.type == dvKernelType::ApertureBlades
                         ? paraboloid(bladeBow(shape, offset) + radius)
                         : circle;
  const float edge = base * gain;
  const float open = edge < 1.0F ? edge : 1.0F;
  const float value = open - aberration(shape.sphericalAberration, circle);
  if (value < 0.0F) {
    return 0.0F;
  }
  return value > 1.0F ? 1.0F : value;
}

}  // namespace drevin

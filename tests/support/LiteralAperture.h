#pragma once

/// The procedural aperture written out in double: the yardstick of the single-precision one.

#include <algorithm>
#include <cmath>

#include "kernel/ApertureShape.h"

namespace drevin::test {

/// One pixel of an aperture of side `side`, with the gain that the shape's softness gives.
inline double literalAperture(const dvApertureShape& shape, double gain, int side, int column,
                              int row) {
  const double pi = 3.14159265358979323846;
  const double half = 0.5 * side;
  const double aspect = static_cast<double>(shape.aspectRatio);
  const double dx = (column + 0.5 - half) * (aspect > 1 ? aspect : 1);
  const double dy = (row + 0.5 - half) * (aspect < 1 ? 1 / aspect : 1);
  const double q = (dx * dx + dy * dy) / (half * half);
  const double circle = q < 1 ? 1 - q : 0;
  double base = circle;
  if (shape.type == dvKernelType::ApertureBlades) {
    const double segment = 1.0 / shape.numSides;
    double angle = std::atan2(dy, dx);
    angle += angle < 0 ? 2 * pi : 0;
    const double turns = static_cast<double>(shape.rotation) + angle / (2 * pi);
    const double t = std::fmod(turns, segment) / segment;
    const double curvature = static_cast<double>(shape.bladeCurvature);
    const double d = std::sin(t * pi) * (1 - curvature) * segment + q;
    base = d < 1 ? 1 - d : 0;
  }
  const double k = static_cast<double>(shape.sphericalAberration);
  const double aberration = k > 0 ? k * circle : -k * (1 - circle);
  return std::clamp(std::min(1.0, base * gain) - aberration, 0.0, 1.0);
}

}  // namespace drevin::test

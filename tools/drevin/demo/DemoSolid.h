#pragma once

/// Smooth solids told by their distance: primitives, blends and the walk of a ray toward them.

#include <optional>

#include "demo/DemoVector.h"

namespace drevintool {

inline double sphereDistance(const DemoVector& p, const DemoVector& centre, double radius) {
  return length(p - centre) - radius;
}

/// A close lower estimate, good enough to walk by.
inline double ellipsoidDistance(const DemoVector& p, const DemoVector& centre,
                                const DemoVector& radii) {
  const DemoVector q = p - centre;
  const DemoVector scaled{q.x / radii.x, q.y / radii.y, q.z / radii.z};
  const DemoVector steep{scaled.x / radii.x, scaled.y / radii.y, scaled.z / radii.z};
  const double k = length(scaled);
  const double slope = length(steep);
  return slope > 0.0 ? k * (k - 1.0) / slope : -std::min({radii.x, radii.y, radii.z});
}

/// A rod from a to b whose radius goes from ra to rb.
inline double rodDistance(const DemoVector& p, const DemoVector& a, const DemoVector& b, double ra,
                          double rb) {
  const DemoVector ab = b - a;
  const double t = std::clamp(dot(p - a, ab) / dot(ab, ab), 0.0, 1.0);
  return length(p - a - ab * t) - mix(ra, rb, t);
}

inline double roundBoxDistance(const DemoVector& p, const DemoVector& centre,
                               const DemoVector& half, double rounding) {
  const DemoVector q{std::abs(p.x - centre.x) - half.x + rounding,
                     std::abs(p.y - centre.y) - half.y + rounding,
                     std::abs(p.z - centre.z) - half.z + rounding};
  const DemoVector outside{std::max(q.x, 0.0), std::max(q.y, 0.0), std::max(q.z, 0.0)};
  return length(outside) + std::min(std::max({q.x, q.y, q.z}), 0.0) - rounding;
}

/// The smaller of two distances, with a fillet of about the given width where they meet.
inline double blend(double a, double b, double width) {
  const double h = std::max(width - std::abs(a - b), 0.0) / width;
  return std::min(a, b) - h * h * width * 0.25;
}

/// The gradient of a distance at p, of length 1.
template <typename Distance>
DemoVector normalOf(const Distance& distance, const DemoVector& p) {
  constexpr double kStep = 5e-4;
  const DemoVector dx{kStep, 0.0, 0.0};
  const DemoVector dy{0.0, kStep, 0.0};
  const DemoVector dz{0.0, 0.0, kStep};
  return unit({distance(p + dx) - distance(p - dx), distance(p + dy) - distance(p - dy),
               distance(p + dz) - distance(p - dz)});
}

/// The first place between `from` and `to` where the ray meets the solid (sphere tracing).
/// `caution` below 1 shortens the steps for distances that are only estimates.
template <typename Distance>
std::optional<double> march(const Distance& distance, const DemoRay& ray, double from, double to,
                            double caution) {
  constexpr int kMostSteps = 160;
  constexpr double kNear = 2e-4;
  const double speed = length(ray.along);
  double t = from;
  for (int step = 0; step < kMostSteps && t <= to; ++step) {
    const double d = distance(ray.at(t));
    if (d < kNear) return t;
    t += std::max(d * caution, kNear) / speed;
  }
  return std::nullopt;
}

}  // namespace drevintool

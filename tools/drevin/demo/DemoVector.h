#pragma once

/// Vectors of three, for positions (metres; x right, y up, z ahead) and for linear colour.

#include <algorithm>
#include <cmath>

namespace drevintool {

struct DemoVector {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

inline DemoVector operator+(const DemoVector& a, const DemoVector& b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline DemoVector operator-(const DemoVector& a, const DemoVector& b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline DemoVector operator*(const DemoVector& a, const DemoVector& b) {
  return {a.x * b.x, a.y * b.y, a.z * b.z};
}
inline DemoVector operator*(const DemoVector& a, double s) {
  return {a.x * s, a.y * s, a.z * s};
}

inline double dot(const DemoVector& a, const DemoVector& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline double length(const DemoVector& a) {
  return std::sqrt(dot(a, a));
}
/// Of length 1; a zero vector stays zero.
inline DemoVector unit(const DemoVector& a) {
  const double size = length(a);
  return size > 0.0 ? a * (1.0 / size) : a;
}
inline DemoVector reflected(const DemoVector& along, const DemoVector& normal) {
  return along - normal * (2.0 * dot(along, normal));
}

inline double mix(double a, double b, double t) {
  return a + (b - a) * t;
}
inline DemoVector mix(const DemoVector& a, const DemoVector& b, double t) {
  return a + (b - a) * t;
}
/// 0 up to `from`, 1 from `to` on, a cubic without corners between them.
inline double smoothStep(double from, double to, double v) {
  const double t = std::clamp((v - from) / (to - from), 0.0, 1.0);
  return t * t * (3.0 - 2.0 * t);
}
/// The part of `v` beyond its floor, in [0, 1).
inline double fraction(double v) {
  return v - std::floor(v);
}

/// Relative luminance of linear colour with the primaries of Rec. 709.
inline double luminance(const DemoVector& c) {
  return 0.2126 * c.x + 0.7152 * c.y + 0.0722 * c.z;
}

/// A half-line; places on it are origin + along * t.
struct DemoRay {
  DemoVector origin;
  DemoVector along;

  DemoVector at(double t) const { return origin + along * t; }
};

}  // namespace drevintool

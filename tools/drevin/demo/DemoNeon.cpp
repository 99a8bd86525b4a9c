#include "demo/DemoNeon.h"

namespace drevintool {
namespace {

constexpr int kObject = 30;

double segment(double x, double y, double ax, double ay, double bx, double by) {
  const double dx = bx - ax;
  const double dy = by - ay;
  const double t = std::clamp(((x - ax) * dx + (y - ay) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
  return std::hypot(x - ax - dx * t, y - ay - dy * t);
}

// Distances to the tubes; the board's radius is 1.
double cupDistance(double x, double y) {
  const double rim = segment(x, y, -0.48, 0.08, 0.32, 0.08);
  const double left = segment(x, y, -0.48, 0.08, -0.34, -0.46);
  const double right = segment(x, y, 0.32, 0.08, 0.18, -0.46);
  const double foot = segment(x, y, -0.34, -0.46, 0.18, -0.46);
  const double ring = std::abs(std::hypot(x - 0.36, y + 0.14) - 0.17);
  const double handle = x > 0.28 ? ring : 1.0;
  return std::min({rim, left, right, foot, handle});
}

double steamDistance(double x, double y) {
  if (y < 0.2 || y > 0.66) return 1.0;
  const double bend = 0.06 * std::sin((y - 0.2) * 13.0);
  return std::min(
      {std::abs(x + 0.30 - bend), std::abs(x + 0.08 - bend), std::abs(x - 0.14 - bend)});
}

// A tube of glowing gas: a core, and the light that the board around it takes.
DemoVector tube(double distance, const DemoVector& colour) {
  const double core = 1.0 - smoothStep(0.022, 0.045, distance);
  const double spill = 0.05 * std::exp(-distance * 11.0);
  return (colour + DemoVector{0.12, 0.12, 0.12}) * (6.5 * core) + colour * (7.0 * spill);
}

}  // namespace

DemoHit traceNeon(const DemoRay& ray) {
  DemoHit hit;
  if (ray.along.z <= 0.0) return hit;
  const double t = (kDemoNeonCentre.z - ray.origin.z) / ray.along.z;
  const DemoVector p = ray.at(t) - kDemoNeonCentre;
  const double x = p.x / kDemoNeonRadius;
  const double y = p.y / kDemoNeonRadius;
  const double r = std::hypot(x, y);
  const bool bracket = y < 1.08 && y > 1.02 && x > -0.1 && p.x < 1.9;
  if (t <= 0.0 || (r > 1.0 && !bracket)) return hit;
  hit.t = t;
  hit.object = kObject;
  hit.radiance = {0.010, 0.011, 0.016};
  if (r <= 1.0) {
    hit.radiance = hit.radiance + tube(cupDistance(x, y), {1.0, 0.16, 0.34}) +
                   tube(steamDistance(x, y), {0.95, 0.8, 0.55}) +
                   tube(std::abs(r - 0.88), {0.08, 0.62, 1.0});
  }
  return hit;
}

}  // namespace drevintool

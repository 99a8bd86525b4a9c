#include "demo/DemoSmoke.h"

#include "demo/DemoBox.h"
#include "demo/DemoLayers.h"
#include "demo/DemoNoise.h"

namespace drevintool {
namespace {

constexpr DemoBox kAround{{-1.2, 0.0, kDemoSmokeNear}, {2.6, 4.6, kDemoSmokeFar}};
constexpr double kStretch = 0.5;  // m
constexpr double kPi = 3.14159265358979323846;

// Share of light that droplets scatter by the cosine of the angle, per steradian
// (Henyey, Greenstein 1941).
double phase(double cosine) {
  constexpr double kForward = 0.55;
  const double spread = 1.0 + kForward * kForward - 2.0 * kForward * cosine;
  return (1.0 - kForward * kForward) / (4.0 * kPi * spread * std::sqrt(spread));
}

}  // namespace

double demoSmokeDensity(const DemoVector& p) {
  if (p.y < 0.0 || p.y > kAround.high.y) return 0.0;
  const double rise = p.y;
  const double sway = demoNoise(rise * 0.9 + 3.0, 7.0) - 0.5;
  const double x = p.x - (0.14 + 0.055 * rise * rise + 0.5 * sway * std::min(rise, 1.5));
  const double z = p.z - (16.0 - 0.30 * rise);
  const double radius = 0.26 + 0.24 * rise;
  const double r = std::hypot(x, z) / radius;
  if (r >= 1.0) return 0.0;
  // Noise is plane: two planes, bent by a third, stand for one that fills space.
  const double bend = 2.2 * (demoFractal(x * 1.3 + 9.0, p.y * 0.9 + z * 0.8) - 0.5);
  const double puffs = 2.0 * demoFractal(x * 2.3 + bend, p.y * 1.5 - bend + z * 0.4) *
                       demoFractal(z * 1.7 + 40.0 - bend, p.y * 1.7 + x * 1.1 + bend);
  const double ends = smoothStep(-0.1, 0.2, rise) * smoothStep(4.2, 0.8, rise);
  const double edge = smoothStep(1.0, 0.1, r);
  constexpr double kDensest = 6.0;
  return kDensest * ends * smoothStep(0.36, 0.72, puffs + 0.30 * (edge - 0.6)) * std::sqrt(edge);
}

DemoSmoke::DemoSmoke(const std::vector<DemoLight>& lights) {
  constexpr double kReach = 18.0;  // m beyond which a light no longer counts
  for (const DemoLight& light : lights) {
    const bool close = light.position.z > kDemoSmokeNear - kReach / 2.0 &&
                       light.position.z < kDemoSmokeFar + kReach;
    if (close) lights_.push_back(light);
  }
}

DemoVector DemoSmoke::scattered(const DemoVector& p, const DemoVector& along) const {
  constexpr double kStrength = 7.0;  // steam thick enough to scatter light many times
  const DemoVector toCamera = unit(along) * -1.0;
  DemoVector sum;
  for (const DemoLight& light : lights_) {
    const DemoVector from = p - light.position;
    const double distance2 = dot(from, from) + 0.25;
    const double cosine = dot(from, toCamera) / std::sqrt(distance2);
    const double arriving = kPi * light.radius * light.radius / distance2;
    sum = sum + light.radiance * (kStrength * arriving * phase(cosine));
  }
  // The steam between a place and the lamps, told from one place on the way.
  const DemoVector toLamps{0.22, 0.25, 0.18};
  const double shade = std::exp(-0.7 * demoSmokeDensity(p + toLamps));
  return sum * DemoVector{0.75, 0.95, 1.2} * mix(0.12, 1.0, shade) +
         DemoVector{0.020, 0.028, 0.042};
}

void DemoSmoke::appendStretch(const DemoRay& ray, double from, double to,
                              std::vector<DemoDeepSample>& samples) const {
  constexpr int kSteps = 3;
  constexpr double kLeast = 1e-3;
  double density = 0.0;
  for (int i = 0; i < kSteps; ++i)
    density += demoSmokeDensity(ray.at(mix(from, to, (i + 0.5) / kSteps))) / kSteps;
  const double opaque = 1.0 - std::exp(-density * (to - from) * length(ray.along));
  if (opaque < kLeast) return;
  const float alpha = toHalfPrecision(opaque);
  const DemoVector colour = scattered(ray.at(mix(from, to, 0.5)), ray.along) * alpha;
  samples.push_back({static_cast<float>(from), static_cast<float>(to), alpha,
                     static_cast<float>(colour.x), static_cast<float>(colour.y),
                     static_cast<float>(colour.z)});
}

void DemoSmoke::append(const DemoRay& ray, double from, double to,
                       std::vector<DemoDeepSample>& samples) const {
  const auto inside = intersect(kAround, ray);
  if (!inside) return;
  const double last = std::min(to, inside->leave);
  double begin = std::max(from, inside->enter);
  while (begin < last) {
    const double end = std::min((std::floor(begin / kStretch) + 1.0) * kStretch, last);
    appendStretch(ray, begin, end, samples);
    begin = end;
  }
}

}  // namespace drevintool

#include "demo/DemoRoad.h"

#include <cstdint>

#include "demo/DemoBuildings.h"
#include "demo/DemoCars.h"
#include "demo/DemoNoise.h"
#include "demo/DemoSky.h"

namespace drevintool {
namespace {

constexpr int kObject = 50;
constexpr double kLeftKerb = -2.7;
constexpr double kRightKerb = 4.2;

bool onRoad(const DemoVector& p) {
  return p.x > kLeftKerb && p.x < kRightKerb;
}

// 0 where the asphalt is rough and only moist, 1 where water stands.
double puddle(const DemoVector& p) {
  return smoothStep(0.42, 0.62, demoFractal(p.x * 0.8 + 7.0, p.z * 0.35));
}

bool painted(const DemoVector& p) {
  const double middle = 0.8;
  if (std::abs(p.x - middle) < 0.07 && fraction(p.z / 4.0) < 0.5) return true;
  const bool crossing = p.z > 20.0 && p.z < 22.6 && onRoad(p);
  return crossing && fraction(p.x / 1.1) < 0.5;
}

DemoVector ownColour(const DemoVector& p) {
  if (painted(p))
    return DemoVector{0.16, 0.15, 0.13} * (0.6 + 0.5 * demoFractal(p.x * 4.0, p.z * 4.0));
  if (onRoad(p)) return DemoVector{0.017, 0.017, 0.02};
  const double joint = std::min(fraction(p.x / 0.6), fraction(p.z / 0.9));
  return DemoVector{0.036, 0.031, 0.027} * smoothStep(0.0, 0.05, joint);
}

DemoVector mirrored(const DemoRay& ray) {
  const DemoHit house = traceBuildings(ray);
  const DemoHit car = traceCars(ray);
  if (car.t < house.t) return car.radiance;
  return house.t < 1e9 ? house.radiance : skyRadiance(ray.along);
}

// Roughness smears a mirror image upright: some rays, tilted by fixed amounts.
DemoVector smearedMirror(const DemoVector& p, const DemoVector& along, double rough) {
  constexpr int kRays = 4;
  const double ripple = demoNoise(p.x * 9.0, p.z * 5.0) - 0.5;
  DemoVector sum;
  for (int i = 0; i < kRays; ++i) {
    const double tilt = (i + 0.5) / kRays;
    const DemoVector bounce{along.x + ripple * 0.006 * (1.0 + rough),
                            -along.y + rough * (0.20 * tilt - 0.03) + 0.01 * ripple, along.z};
    sum = sum + mirrored({p + DemoVector{0.0, 1e-4, 0.0}, bounce});
  }
  return sum * (1.0 / kRays);
}

// A light's mirror image, drawn out toward the viewer by the road's texture.
DemoVector streaks(const DemoRay& ray, const DemoVector& p, const std::vector<DemoLight>& lights,
                   double rough) {
  const double shake = (demoNoise(p.x * 6.0, p.z * 3.0) - 0.5) * 0.0045;
  const double across = 0.0014 + 0.0022 * rough;
  const double long_ = 0.011 + 0.026 * rough;
  const double scale = 1.0 / (2.0 * 3.14159265 * across * long_);
  DemoVector sum;
  for (const DemoLight& light : lights) {
    const DemoVector& l = light.position;
    if (l.z < p.z) continue;
    const double size = light.radius / l.z;
    const double dx = (ray.along.x - l.x / l.z + shake) / (across + size);
    const double dy = (ray.along.y + (l.y + ray.origin.y) / l.z) / (long_ + size);
    if (std::abs(dx) > 4.0 || std::abs(dy) > 4.0) continue;
    sum =
        sum + light.radiance * (size * size * 3.14 * scale * std::exp(-0.5 * (dx * dx + dy * dy)));
  }
  return sum;
}

}  // namespace

DemoHit traceRoad(const DemoRay& ray, const std::vector<DemoLight>& lights) {
  DemoHit hit;
  if (ray.along.y >= 0.0) return hit;
  hit.t = -ray.origin.y / ray.along.y;
  const DemoVector p = ray.at(hit.t);
  const double water = puddle(p) * (onRoad(p) ? 1.0 : 0.5);
  const double rough = mix(1.0, 0.12, water);
  const double grain = 0.75 + 0.5 * demoNoise(p.x * 40.0, p.z * 12.0);
  const double share = mix(0.30, 0.62, water) * mix(grain, 1.0, water);
  hit.object = kObject + (onRoad(p) ? 0 : 1) + (painted(p) ? 2 : 0);
  hit.radiance = ownColour(p) * (0.8 * grain) + smearedMirror(p, ray.along, rough) * share +
                 streaks(ray, p, lights, rough) * (share * 0.26);
  return hit;
}

}  // namespace drevintool

#include "demo/DemoLights.h"

#include <array>

#include "demo/DemoCars.h"
#include "demo/DemoNoise.h"

namespace drevintool {
namespace {

constexpr DemoVector kSodium{1.0, 0.46, 0.11};
constexpr DemoVector kTungsten{1.0, 0.53, 0.17};

void addStreetLamps(std::vector<DemoLight>& lights) {
  constexpr double kHeight = 4.05;
  for (int i = 0; i < 11; ++i) {
    const double z = 23.0 + 12.5 * i;
    lights.push_back({{4.55, kHeight, z}, 0.13, kSodium * 80.0});
    lights.push_back({{-3.1, kHeight, z + 5.0}, 0.13, kSodium * 80.0});
  }
}

void addCarLights(std::vector<DemoLight>& lights) {
  for (const DemoCar& car : demoCars()) {
    const double z = car.z - 2.08;
    const DemoVector colour =
        car.oncoming ? DemoVector{1.0, 0.93, 0.74} * 120.0 : DemoVector{1.0, 0.004, 0.002} * 95.0;
    const double radius = car.oncoming ? 0.085 : 0.07;
    lights.push_back({{car.x - 0.66, 0.68, z}, radius, colour});
    lights.push_back({{car.x + 0.66, 0.68, z}, radius, colour});
  }
}

void addTrafficLights(std::vector<DemoLight>& lights) {
  const DemoVector red{1.0, 0.006, 0.002};
  const DemoVector green{0.004, 1.0, 0.30};
  const DemoVector amber{1.0, 0.36, 0.004};
  lights.push_back({{3.55, 2.95, 27.0}, 0.1, red * 90.0});
  lights.push_back({{-2.9, 2.95, 35.0}, 0.1, red * 90.0});
  lights.push_back({{3.75, 2.55, 52.0}, 0.12, green * 80.0});
  lights.push_back({{1.1, 4.35, 78.0}, 0.14, green * 80.0});
  lights.push_back({{4.0, 2.7, 70.0}, 0.13, amber * 80.0});
}

// Strings of bulbs that hang across the street, some of them coloured.
void addFestoons(std::vector<DemoLight>& lights) {
  constexpr std::array<double, 6> kDepths = {19.0, 25.5, 33.0, 43.0, 56.0, 74.0};
  constexpr int kBulbs = 17;
  for (std::size_t s = 0; s < kDepths.size(); ++s) {
    for (int b = 0; b < kBulbs; ++b) {
      const double along = (b + 0.5) / kBulbs * 2.0 - 1.0;
      const double sway = demoHash(static_cast<int>(s), b, 1) * 0.12;
      const DemoVector place{0.4 + 5.2 * along, 3.62 + 1.7 * along * along + sway, kDepths[s]};
      const double kind = demoHash(static_cast<int>(s), b, 2);
      DemoVector colour = kTungsten;
      if (kind > 0.80) colour = {0.16, 0.62, 1.0};
      if (kind > 0.87) colour = {1.0, 0.16, 0.34};
      if (kind > 0.94) colour = {0.2, 1.0, 0.42};
      lights.push_back({place, 0.028 + 0.0004 * kDepths[s], colour * 46.0});
    }
  }
}

void addNearBulbs(std::vector<DemoLight>& lights) {
  for (const DemoVector& point : demoNearWire()) {
    lights.push_back({point - DemoVector{0.0, 0.012, 0.0}, 0.0055, kTungsten * 34.0});
  }
}

}  // namespace

std::vector<DemoVector> demoNearWire() {
  constexpr int kBulbs = 8;
  std::vector<DemoVector> points;
  for (int b = 0; b < kBulbs; ++b) {
    const double t = (b + 0.4) / (kBulbs - 1.0);
    const double sag = 0.02 * 4.0 * t * (1.0 - t);
    points.push_back({mix(0.03, 0.36, t), mix(1.835, 1.672, t) - sag, mix(2.3, 1.5, t)});
  }
  return points;
}

std::vector<DemoLight> demoLights() {
  std::vector<DemoLight> lights;
  addStreetLamps(lights);
  addCarLights(lights);
  addTrafficLights(lights);
  addFestoons(lights);
  addNearBulbs(lights);
  return lights;
}

DemoVector demoGlow(const std::vector<DemoLight>& lights, double cameraHeight, double slopeX,
                    double slopeY, double depth) {
  constexpr double kStrength = 0.11;
  DemoVector glow;
  for (const DemoLight& light : lights) {
    const DemoVector& p = light.position;
    if (depth < 0.7 * p.z) continue;
    const double dx = slopeX - p.x / p.z;
    const double dy = slopeY - (p.y - cameraHeight) / p.z;
    const double size = light.radius / p.z;
    const double share = size * size / (dx * dx + dy * dy + 9.0 * size * size);
    glow = glow + light.radiance * (kStrength * share * share);
  }
  return glow;
}

}  // namespace drevintool

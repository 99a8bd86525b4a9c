#include "demo/DemoSky.h"

#include <cstdint>

#include "demo/DemoNoise.h"

namespace drevintool {
namespace {

constexpr double kMoonX = 0.021;  // slopes
constexpr double kMoonY = 0.097;
constexpr double kMoonRadius = 0.0058;

DemoVector moonRadiance(double dx, double dy) {
  const double r = std::hypot(dx, dy) / kMoonRadius;
  const DemoVector halo = DemoVector{0.10, 0.12, 0.17} * (1.0 / (1.0 + r * r * 0.25));
  if (r > 1.0) return halo;
  const double seas = demoFractal(dx / kMoonRadius * 1.6 + 5.0, dy / kMoonRadius * 1.6 + 9.0);
  const double face = mix(1.0, 0.45, smoothStep(0.45, 0.65, seas)) * (1.0 - 0.25 * r * r);
  return DemoVector{0.93, 0.96, 1.0} * (4.5 * face * smoothStep(1.0, 0.93, r)) + halo;
}

DemoVector starRadiance(double x, double y) {
  constexpr double kCells = 110.0;
  const auto column = static_cast<std::int64_t>(std::floor(x * kCells));
  const auto row = static_cast<std::int64_t>(std::floor(y * kCells));
  if (demoHash(column, row, 71) > 0.3) return {};
  const double dx = fraction(x * kCells) - 0.2 - 0.6 * demoHash(column, row, 72);
  const double dy = fraction(y * kCells) - 0.2 - 0.6 * demoHash(column, row, 73);
  const double bright = demoHash(column, row, 74);
  return DemoVector{0.8, 0.9, 1.0} *
         (1.4 * bright * bright * (1.0 - smoothStep(0.02, 0.075, std::hypot(dx, dy))));
}

}  // namespace

DemoVector skyRadiance(const DemoVector& along) {
  const double x = along.x / along.z;
  const double y = along.y / along.z;
  const double up = smoothStep(-0.01, 0.16, y);
  const DemoVector town{0.105, 0.062, 0.075};
  const DemoVector night{0.010, 0.024, 0.075};
  const double cloud = smoothStep(0.48, 0.75, demoFractal(x * 16.0 + 3.0, y * 46.0));
  const DemoVector dusk = mix(town, night, std::sqrt(up)) + DemoVector{0.030, 0.028, 0.040} * cloud;
  return dusk + starRadiance(x, y) * (up * (1.0 - cloud)) + moonRadiance(x - kMoonX, y - kMoonY);
}

}  // namespace drevintool

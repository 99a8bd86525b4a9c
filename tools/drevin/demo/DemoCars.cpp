#include "demo/DemoCars.h"

#include "demo/DemoBox.h"
#include "demo/DemoSolid.h"

namespace drevintool {
namespace {

constexpr int kObject = 100;

double bodyDistance(const DemoVector& p) {
  const double lower = roundBoxDistance(p, {0.0, 0.55, 0.0}, {0.86, 0.36, 2.08}, 0.16);
  const double cabin =
      roundBoxDistance(p, {0.0, 1.08, 0.15}, {0.68 - 0.28 * (p.y - 1.05), 0.36, 1.15}, 0.18);
  return blend(lower, cabin, 0.16);
}

double wheelDistance(const DemoVector& p) {
  const double along = std::abs(p.z) - 1.3;
  const double round = std::hypot(p.y - 0.32, along) - 0.32;
  return std::max(round, std::abs(std::abs(p.x) - 0.73) - 0.1);
}

bool isGlass(const DemoVector& p) {
  return p.y > 0.98 && p.y < 1.36 && std::abs(p.x) < 0.62;
}

// Polish shows the street upside down: lit fronts on both sides, dark sky above.
DemoVector paintRadiance(const DemoVector& p, const DemoVector& normal, const DemoVector& along,
                         const DemoVector& paint) {
  if (wheelDistance(p) < bodyDistance(p)) return {0.008, 0.008, 0.01};
  const DemoVector mirror = reflected(along, normal);
  const double low = smoothStep(0.35, 0.0, std::abs(mirror.y - 0.08));
  const DemoVector fronts = mix(DemoVector{0.12, 0.28, 0.42}, DemoVector{0.8, 0.45, 0.2},
                                smoothStep(-0.6, 0.6, mirror.x));
  const double grazing = std::pow(1.0 - std::abs(dot(normal, along)), 5.0);
  const DemoVector shine =
      fronts * (low * (0.1 + 0.6 * grazing) * (1.0 - 0.72 * std::abs(normal.z)));
  if (isGlass(p)) return DemoVector{0.012, 0.015, 0.022} + shine * 1.4;
  return paint * (0.18 + 0.35 * std::max(normal.y, 0.0)) + shine;
}

void traceCar(const DemoCar& car, int object, const DemoRay& ray, DemoHit& nearest) {
  const DemoBox around{{car.x - 0.95, 0.0, car.z - 2.15}, {car.x + 0.95, 1.5, car.z + 2.15}};
  const auto inside = intersect(around, ray);
  if (!inside || inside->enter > nearest.t) return;
  const double turned = car.oncoming ? 1.0 : -1.0;
  const auto local = [&](const DemoVector& p) {
    return DemoVector{p.x - car.x, p.y, (p.z - car.z) * turned};
  };
  const auto distance = [&](const DemoVector& p) {
    return std::min(bodyDistance(local(p)), wheelDistance(local(p)));
  };
  const auto t = march(distance, ray, inside->enter, inside->leave, 0.9);
  if (!t || *t > nearest.t) return;
  const DemoVector p = ray.at(*t);
  nearest.t = *t;
  nearest.object = object;
  nearest.radiance = paintRadiance(local(p), normalOf(distance, p), unit(ray.along), car.paint);
}

}  // namespace

const std::array<DemoCar, 7>& demoCars() {
  static const std::array<DemoCar, 7> kCars = {{{2.35, 25.0, true, {0.05, 0.06, 0.08}},
                                                {2.45, 38.0, true, {0.25, 0.03, 0.03}},
                                                {2.3, 57.0, true, {0.2, 0.2, 0.2}},
                                                {2.4, 88.0, true, {0.05, 0.05, 0.05}},
                                                {-0.6, 31.0, false, {0.03, 0.06, 0.1}},
                                                {-0.75, 46.0, false, {0.2, 0.19, 0.17}},
                                                {-0.7, 72.0, false, {0.05, 0.05, 0.05}}}};
  return kCars;
}

DemoHit traceCars(const DemoRay& ray) {
  DemoHit nearest;
  int object = kObject;
  for (const DemoCar& car : demoCars())
    traceCar(car, object++, ray, nearest);
  return nearest;
}

}  // namespace drevintool

#include "demo/DemoBuildings.h"

#include <cstdint>
#include <vector>

#include "demo/DemoBox.h"
#include "demo/DemoNoise.h"

namespace drevintool {
namespace {

constexpr int kObject = 200;
constexpr double kShopHeight = 3.1;
constexpr double kSignHeight = 3.75;
constexpr double kStorey = 2.9;

struct House {
  DemoBox box;
  int number = 0;
};

std::vector<House> rowOfHouses(double x0, double x1, int first) {
  std::vector<House> houses;
  double z = 10.0;
  for (int i = first; z < 150.0; ++i) {
    const double width = 7.0 + 5.0 * demoHash(i, 1);
    const double height = 7.5 + 5.5 * demoHash(i, 2);
    houses.push_back({{{x0, 0.0, z}, {x1, height, z + width}}, i});
    z += width;
  }
  return houses;
}

std::vector<House> allHouses() {
  std::vector<House> houses = rowOfHouses(kDemoRightFront, kDemoRightFront + 9.0, 0);
  const std::vector<House> left = rowOfHouses(kDemoLeftFront - 9.0, kDemoLeftFront, 40);
  houses.insert(houses.end(), left.begin(), left.end());
  constexpr int kTowers = 9;
  for (int i = 0; i < kTowers; ++i) {  // what closes the street
    const double x = -24.0 + 5.2 * i;
    const double height = 9.0 + 15.0 * demoHash(i, 90);
    houses.push_back({{{x, 0.0, 190.0 + 9.0 * (i % 3)}, {x + 6.4, height, 230.0}}, 80 + i});
  }
  return houses;
}

const std::vector<House>& houses() {
  static const std::vector<House> kHouses = allHouses();
  return kHouses;
}

DemoVector shopColour(std::int64_t shop, int house) {
  const double kind = demoHash(house, shop, 11);
  if (kind < 0.62) return {1.0, 0.55, 0.2};
  if (kind < 0.76) return {0.95, 0.78, 0.52};
  if (kind < 0.86) return {0.12, 0.5, 0.8};
  if (kind < 0.94) return {0.95, 0.16, 0.34};
  return {0.12, 0.62, 0.4};
}

// Shop window: lit from above, goods as dark and coloured shapes below, mullions between panes.
DemoVector shopWindow(double along, double up, std::int64_t shop, int house) {
  const DemoVector colour = shopColour(shop, house);
  const double pane = fraction(along * 2.0);
  const double frame = smoothStep(0.02, 0.05, std::min(pane, 1.0 - pane));
  const auto column = static_cast<std::int64_t>(std::floor(along * 9.0));
  const double shelf = up * 2.3;
  const auto level = static_cast<std::int64_t>(std::floor(shelf));
  const double goods = demoHash(house, shop * 64 + column, level);
  const bool inGoods = fraction(shelf) < 0.25 + 0.5 * goods && up < 1.9;
  const DemoVector thing = mix(colour,
                               DemoVector{demoHash(column, level, 3), demoHash(column, level, 4),
                                          demoHash(column, level, 5)},
                               0.45) *
                           (0.3 + 0.6 * goods);
  const double strength = 0.12 + 0.62 * std::pow(demoHash(house, shop, 12), 1.5);
  const double lamp = std::hypot((fraction(along * 4.0) - 0.5) * 0.95, up - 2.62);
  const DemoVector spot = mix(colour, DemoVector{1.0, 0.8, 0.55}, 0.5) *
                          (7.0 * (1.0 - smoothStep(0.05, 0.075, lamp)) + 0.12 / (0.12 + lamp));
  const double fall = 0.30 + 1.1 * smoothStep(0.3, 2.9, up);
  return (inGoods ? thing : colour) * (strength * fall * frame) + spot * (strength * frame);
}

DemoVector shopSign(double along, double up, std::int64_t shop, int house) {
  const DemoVector colour = shopColour(shop + 7, house + 3);
  const double letters = along * 18.0;
  const auto letter = static_cast<std::int64_t>(std::floor(letters));
  const bool ink = demoHash(house, letter, 21) > 0.25 && fraction(letters) > 0.22 &&
                   std::abs(up - 0.5) < 0.24 && std::abs(along - 0.5) < 0.32 &&
                   demoHash(letter, static_cast<std::int64_t>(up * 12.0), house) > 0.3;
  if (demoHash(house, shop, 22) < 0.35) return colour * (ink ? 0.03 : 0.8);
  return ink ? colour * 3.2 : DemoVector{0.012, 0.014, 0.02};
}

DemoVector wallColour(int house, double along, double up) {
  const double tone = demoHash(house, 31);
  const DemoVector brick{0.034, 0.018, 0.013};
  const DemoVector plaster{0.031, 0.028, 0.028};
  const double course = fraction(up * 6.0);
  const double joint = smoothStep(0.0, 0.15, course);
  const double lampLight = 0.35 + 1.1 * std::exp(-std::abs(up - 3.8) * 0.55);
  const double dirt = 0.6 + 0.7 * demoFractal(along * 0.9, up * 0.9);
  return mix(brick, plaster, smoothStep(0.4, 0.6, tone)) *
         (lampLight * dirt * mix(0.8, 1.0, joint)) * DemoVector{1.2, 0.95, 0.75};
}

DemoVector houseWindow(std::int64_t column, std::int64_t storey, double u, double v, int house) {
  const double chance = demoHash(house, column, storey);
  const double cross = std::min(std::abs(u - 0.5), std::abs(v - 0.6));
  const double bars = smoothStep(0.008, 0.02, cross);
  if (chance > 0.46) return DemoVector{0.014, 0.019, 0.03} * bars;
  const bool cool = demoHash(house, column, storey + 99) > 0.85;
  const DemoVector colour = cool ? DemoVector{0.35, 0.6, 1.0} : DemoVector{1.0, 0.62, 0.27};
  const double curtain = mix(0.45, 1.0, smoothStep(0.1, 0.34, std::abs(u - 0.5)));
  return colour * ((0.10 + 1.5 * chance) * bars * (1.35 - curtain * 0.7));
}

DemoVector frontRadiance(double along, double up, int house) {
  constexpr double kShopWidth = 3.9;
  const auto shop = static_cast<std::int64_t>(std::floor(along / kShopWidth));
  const double inShop = fraction(along / kShopWidth);
  const bool inPane = std::abs(inShop - 0.5) < 0.45;
  if (up < 0.45) return {0.018, 0.016, 0.016};
  if (up < kShopHeight) {
    return inPane ? shopWindow(inShop, up, shop, house) : wallColour(house, along, up) * 0.6;
  }
  if (up < kSignHeight) {
    return inPane ? shopSign(inShop, (up - kShopHeight) / (kSignHeight - kShopHeight), shop, house)
                  : wallColour(house, along, up);
  }
  constexpr double kWindowWidth = 1.7;
  const double storey = (up - kSignHeight) / kStorey;
  const double u = fraction(along / kWindowWidth);
  const double v = fraction(storey);
  if (std::abs(u - 0.5) < 0.27 && v > 0.2 && v < 0.78) {
    return houseWindow(static_cast<std::int64_t>(std::floor(along / kWindowWidth)),
                       static_cast<std::int64_t>(std::floor(storey)), u, v, house);
  }
  const bool ledge = std::abs(u - 0.5) < 0.32 && v > 0.14 && v <= 0.2;
  return wallColour(house, along, up) * (ledge ? 1.7 : 1.0);
}

// The far ends and gables: little light, few windows.
DemoVector gableRadiance(const DemoVector& p, int house) {
  const auto column = static_cast<std::int64_t>(std::floor(p.x / 1.3));
  const auto storey = static_cast<std::int64_t>(std::floor(p.y / 1.9));
  const double u = fraction(p.x / 1.3);
  const double v = fraction(p.y / 1.9);
  const bool pane = std::abs(u - 0.5) < 0.22 && std::abs(v - 0.5) < 0.26;
  if (pane && house >= 80 && demoHash(house, column, storey) < 0.34) {
    return DemoVector{1.0, 0.66, 0.32} * (0.5 + 2.0 * demoHash(column, storey, house));
  }
  return DemoVector{0.016, 0.018, 0.026};
}

// Whether a ray that runs along the street meets something before the box begins, or is not yet
// aside as far as the box when that ends: a cheap test that spares most boxes.
bool misses(const DemoBox& box, const DemoRay& ray, double nearest) {
  if (ray.along.z <= 0.0) return false;
  if (box.low.z - ray.origin.z > nearest * ray.along.z) return true;
  const double aside = ray.along.x * (box.high.z - ray.origin.z);
  const double low = (box.low.x - ray.origin.x) * ray.along.z;
  const double high = (box.high.x - ray.origin.x) * ray.along.z;
  return (low > 0.0 && aside < low) || (high < 0.0 && aside > high);
}

}  // namespace

DemoHit traceBuildings(const DemoRay& ray) {
  DemoHit hit;
  const House* found = nullptr;
  DemoVector normal;
  for (const House& house : houses()) {
    if (misses(house.box, ray, hit.t)) continue;
    const auto inside = intersect(house.box, ray);
    if (!inside || inside->enter >= hit.t || inside->enter <= 0.0) continue;
    hit.t = inside->enter;
    found = &house;
    normal = inside->normal;
  }
  if (found == nullptr) return hit;
  const DemoVector p = ray.at(hit.t);
  hit.object = kObject + found->number;
  if (normal.x != 0.0) {
    hit.radiance = frontRadiance(p.z - found->box.low.z, p.y, found->number);
  } else {
    hit.radiance = gableRadiance(p, found->number);
  }
  return hit;
}

}  // namespace drevintool

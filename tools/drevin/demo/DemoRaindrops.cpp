#include "demo/DemoRaindrops.h"

#include <array>
#include <cstdint>

#include "demo/DemoNoise.h"
#include "demo/DemoVector.h"

namespace drevintool {
namespace {

struct Size {
  double cell = 0.0;      // m, one drop in each at most
  double chance = 0.0;    // that there is one
  double smallest = 0.0;  // radius, in cells
  double largest = 0.0;
  double length = 1.0;  // height over width
};

constexpr std::array<Size, 3> kSizes = {{{0.066, 0.40, 0.09, 0.23, 1.25},
                                         {0.027, 0.42, 0.12, 0.27, 1.1},
                                         {0.0105, 0.34, 0.16, 0.32, 1.0}}};

// A drop hangs within its cell; gravity makes its lower end the wider one.
std::optional<DemoRaindrop> dropOfSize(const Size& size, int number, double x, double y) {
  const auto column = static_cast<std::int64_t>(std::floor(x / size.cell));
  const auto row = static_cast<std::int64_t>(std::floor(y / size.cell));
  if (demoHash(column, row, 300 + number) > size.chance) return std::nullopt;
  const double radius = mix(size.smallest, size.largest, demoHash(column, row, 310 + number));
  const double reach = radius * size.length;
  const double middleX = mix(radius, 1.0 - radius, demoHash(column, row, 320 + number));
  const double middleY = mix(reach, 1.0 - reach, demoHash(column, row, 330 + number));
  DemoRaindrop drop;
  drop.up = (fraction(y / size.cell) - middleY) / reach;
  const double wobble = 0.12 * (demoNoise(x * 400.0, y * 400.0) - 0.5);
  drop.across = (fraction(x / size.cell) - middleX) / (radius * (1.0 - 0.22 * drop.up));
  const double r = std::hypot(drop.across, drop.up) + wobble;
  if (r >= 1.0) return std::nullopt;
  drop.cover = 1.0 - smoothStep(0.8, 1.0, r);
  return drop;
}

}  // namespace

std::optional<DemoRaindrop> demoRaindrop(double x, double y) {
  int number = 0;
  for (const Size& size : kSizes) {
    if (const auto drop = dropOfSize(size, number++, x, y)) return drop;
  }
  return std::nullopt;
}

}  // namespace drevintool

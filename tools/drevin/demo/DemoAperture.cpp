#include "demo/DemoAperture.h"

#include <array>

#include "demo/DemoVector.h"

namespace drevintool {
namespace {

// Signed distance to a heart of height about 1.1 that points down, with its tip at the origin:
// below its diagonal the nearest place is on the straight flank, above it on the round lobe.
double heartDistance(double x, double y) {
  const double ax = std::abs(x);
  if (y + ax > 1.0) return std::hypot(ax - 0.25, y - 0.75) - std::sqrt(2.0) / 4.0;
  const double along = 0.5 * std::max(ax + y, 0.0);
  const double flank = std::hypot(ax - along, y - along);
  const double notch = std::hypot(ax, y - 1.0);
  return std::min(flank, notch) * (ax < y ? -1.0 : 1.0);
}

// Transmission at a place of the unit square, for a heart moved aside from its middle.
double transmission(double u, double v, double moved) {
  constexpr double kSoft = 0.05;
  const double x = (u - 0.5 - moved) * 1.40;
  const double y = (v - 0.5 + 0.6 * moved) * 1.40 + 0.54;  // v downward: upside down
  const double d = heartDistance(x, y);
  const double rim = std::exp(-std::abs(d) * 14.0);
  return smoothStep(kSoft, -kSoft, d) * mix(0.8, 1.0, rim);
}

}  // namespace

DemoPicture makeDemoAperture(int side) {
  struct Colour {
    const char* name;
    double moved;
  };
  constexpr std::array<Colour, 3> kColours = {{{"R", -0.02}, {"G", 0.0}, {"B", 0.02}}};
  DemoPicture picture;
  picture.width = side;
  picture.height = side;
  for (int row = 0; row < side; ++row) {
    for (int column = 0; column < side; ++column) {
      double sum = 0.0;
      for (const Colour& colour : kColours) {
        const double value = transmission((column + 0.5) / side, (row + 0.5) / side, colour.moved);
        picture.planes[colour.name].push_back(static_cast<float>(value));
        sum += value;
      }
      picture.planes["A"].push_back(static_cast<float>(sum / kColours.size()));
    }
  }
  return picture;
}

}  // namespace drevintool

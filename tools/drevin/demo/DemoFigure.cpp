#include "demo/DemoFigure.h"

#include <array>
#include <cstdint>

#include "demo/DemoBox.h"
#include "demo/DemoNoise.h"
#include "demo/DemoSolid.h"

namespace drevintool {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr DemoVector kStand{-0.34, 0.0, 4.0};
constexpr DemoBox kAround{{-0.84, 0.0, kDemoFigureNear}, {0.16, 2.06, kDemoFigureFar}};

enum Part : int { Canopy = 1, Metal, Coat, Belt, Scarf, Hair, Skin };

// --- the umbrella, in its own frame: the handle's line is y, the rim's centre the origin ---------

constexpr DemoVector kRim{-0.29, 1.735, 3.99};
constexpr double kRimRadius = 0.42;
constexpr double kDome = 0.455;  // radius of the sphere of which the canopy is a cap
constexpr double kLeanBack = 0.19;
constexpr double kLeanLeft = 0.13;
constexpr int kRibs = 8;

DemoVector umbrellaFrame(const DemoVector& p) {
  const DemoVector q = p - kRim;
  static const double cb = std::cos(kLeanBack);
  static const double sb = std::sin(kLeanBack);
  const DemoVector r{q.x, q.y * cb - q.z * sb, q.y * sb + q.z * cb};
  static const double cl = std::cos(kLeanLeft);
  static const double sl = std::sin(kLeanLeft);
  return {r.x * cl + r.y * sl, -r.x * sl + r.y * cl, r.z};
}

double domeDepth() {
  return std::sqrt(kDome * kDome - kRimRadius * kRimRadius);
}

// Turns around the handle, counted in gores.
double gore(const DemoVector& q) {
  return (std::atan2(q.z, q.x) / (2.0 * kPi) + 1.0) * kRibs + 0.35;
}

// How far a place is above the scalloped hem.
double aboveHem(const DemoVector& q) {
  const double slack = std::sin(kPi * fraction(gore(q)));
  return q.y - 0.05 * slack * slack;
}

double canopyDistance(const DemoVector& q) {
  const DemoVector c{q.x, q.y + domeDepth(), q.z};
  constexpr double kThick = 0.04;  // of the shell in which the gores and their hem lie
  const double shell = std::max(std::abs(length(c) - kDome) - kThick, -q.y);
  if (shell > kThick) return shell;
  const double slack = std::sin(kPi * fraction(gore(q)));
  const double outward = std::min(std::hypot(q.x, q.z) / kRimRadius, 1.2);
  const double dome = length(c) - (kDome - 0.022 * slack * outward * outward);
  return std::max(std::abs(dome) - 0.002, -aboveHem(q));
}

double metalDistance(const DemoVector& q) {
  const double top = kDome - domeDepth();
  const double shaft = rodDistance(q, {0.0, -0.62, 0.0}, {0.0, top, 0.0}, 0.006, 0.006);
  const double ferrule =
      rodDistance(q, {0.0, top - 0.005, 0.0}, {0.0, top + 0.055, 0.0}, 0.012, 0.005);
  constexpr double kTip = 0.009;
  constexpr double kClose = 0.03;
  const double aside = std::max(std::abs(std::hypot(q.x, q.z) - kRimRadius), std::abs(q.y)) - kTip;
  if (aside > kClose) return std::min({shaft, ferrule, aside});
  const double turn = (std::floor(gore(q) + 0.5) - 0.35) / kRibs * 2.0 * kPi;
  const DemoVector tip{kRimRadius * std::cos(turn), -0.004, kRimRadius * std::sin(turn)};
  return std::min({shaft, ferrule, sphereDistance(q, tip, kTip)});
}

// --- the figure, in its own frame: feet at the origin ----------------------------------------

double coatDistance(const DemoVector& p) {
  const double shoulders = ellipsoidDistance(p, {0.0, 1.285, 0.01}, {0.2, 0.085, 0.105});
  const double back = rodDistance(p, {0.0, 1.22, 0.0}, {0.0, 0.98, 0.0}, 0.125, 0.12);
  const double side = rodDistance(p, {0.07, 1.2, 0.0}, {0.06, 0.98, 0.0}, 0.105, 0.11);
  const double other = rodDistance(p, {-0.07, 1.2, 0.0}, {-0.06, 0.98, 0.0}, 0.105, 0.11);
  double d = blend(blend(shoulders, back, 0.1), std::min(side, other), 0.06);
  const double skirt = rodDistance(p, {0.0, 1.04, 0.0}, {0.0, 0.5, 0.0}, 0.15, 0.3);
  d = blend(d, skirt, 0.06);
  const double left = rodDistance(p, {-0.19, 1.27, 0.01}, {-0.245, 1.0, 0.0}, 0.062, 0.055);
  const double upper = rodDistance(p, {0.19, 1.27, 0.01}, {0.262, 1.07, -0.01}, 0.062, 0.055);
  const double lower = rodDistance(p, {0.262, 1.07, -0.01}, {0.1, 1.19, 0.2}, 0.055, 0.045);
  d = blend(d, std::min(left, blend(upper, lower, 0.03)), 0.035);
  const double folds = 0.004 * std::sin(46.0 * p.x + 9.0 * std::sin(5.0 * p.y));
  return d + folds * smoothStep(1.3, 1.0, p.y);
}

double beltDistance(const DemoVector& p) {
  return std::max(coatDistance(p) - 0.009, std::abs(p.y - 1.075) - 0.02);
}

double scarfDistance(const DemoVector& p) {
  const auto ring = [&p](double y, double radius, double thick, double slope) {
    const DemoVector q = p - DemoVector{0.0, y + slope * p.x, 0.0};
    return std::hypot(std::hypot(q.x, q.z * 1.1) - radius, q.y) - thick;
  };
  const double wound = blend(ring(1.375, 0.078, 0.034, 0.18), ring(1.41, 0.062, 0.03, -0.2), 0.02);
  const double end = roundBoxDistance(p, {-0.075, 1.255, -0.122}, {0.038, 0.13, 0.014}, 0.013);
  const double ribs = 0.0022 * std::sin(190.0 * (p.x + 0.35 * p.y));
  return blend(wound, end, 0.03) + ribs;
}

double hairDistance(const DemoVector& p) {
  const double crown = ellipsoidDistance(p, {0.0, 1.555, 0.0}, {0.088, 0.108, 0.1});
  const double bob = ellipsoidDistance(p, {0.0, 1.49, -0.005}, {0.098, 0.082, 0.092});
  const double strands = 0.0007 * std::sin(380.0 * p.x + 18.0 * std::sin(9.0 * p.y));
  return blend(crown, bob, 0.05) + strands;
}

struct Nearest {
  double distance;
  int part;
};

Nearest nearer(const Nearest& a, const Nearest& b) {
  return b.distance < a.distance ? b : a;
}

// Far from the body a rod around it stands for its parts.
Nearest nearestOfBody(const DemoVector& p) {
  constexpr double kClose = 0.06;
  const double around = rodDistance(p, {0.0, 0.8, 0.0}, {0.0, 1.5, 0.0}, 0.42, 0.24);
  if (around > kClose) return {around, Coat};
  Nearest nearest{coatDistance(p), Coat};
  nearest = nearer(nearest, {beltDistance(p), Belt});
  nearest = nearer(nearest, {scarfDistance(p), Scarf});
  nearest = nearer(nearest, {hairDistance(p), Hair});
  return nearer(nearest, {sphereDistance(p, {0.1, 1.2, 0.21}, 0.05), Skin});
}

Nearest nearestPart(const DemoVector& world) {
  const DemoVector q = umbrellaFrame(world);
  const Nearest umbrella = nearer({canopyDistance(q), Canopy}, {metalDistance(q), Metal});
  return nearer(umbrella, nearestOfBody(world - kStand));
}

// --- what the parts are made of and how the street lights them ---------------------------------

struct Cloth {
  DemoVector colour;
  double gloss = 0.0;
  double sharpness = 20.0;
  double sheer = 0.0;  // share of the light from behind that comes through
};

Cloth canopyCloth(const DemoVector& q) {
  const double turn = gore(q);
  const double seam = std::min(fraction(turn), 1.0 - fraction(turn)) * std::hypot(q.x, q.z);
  const bool odd = static_cast<std::int64_t>(std::floor(turn)) % 2 != 0;
  DemoVector red = DemoVector{0.64, 0.022, 0.03} * (odd ? 0.86 : 1.0);
  red = red * mix(0.35, 1.0, smoothStep(0.0, 0.004, seam));
  const DemoVector hem{0.74, 0.5, 0.42};
  red = mix(hem, red, smoothStep(0.010, 0.013, aboveHem(q)));
  return {red, 0.35, 45.0, 0.32};
}

// Rain that stands on the canopy: a bright glint in some cells of a fine grid.
double dropletGlint(const DemoVector& q) {
  const double column = gore(q) * 26.0;
  const double row = length({q.x, 0.0, q.z}) * 190.0;
  const auto a = static_cast<std::int64_t>(std::floor(column));
  const auto b = static_cast<std::int64_t>(std::floor(row));
  if (demoHash(a, b, 5) > 0.11) return 0.0;
  const double dx = fraction(column) - 0.25 - 0.5 * demoHash(a, b, 6);
  const double dy = fraction(row) - 0.25 - 0.5 * demoHash(a, b, 7);
  return (1.0 - smoothStep(0.0, 0.3, std::hypot(dx, dy))) * demoHash(a, b, 8);
}

Cloth coatCloth(const DemoVector& p) {
  const double zigzag = std::abs(fraction(p.x * 70.0) - 0.5);
  const double weave = 0.5 + 0.5 * std::sin((p.y * 330.0 + zigzag * 9.0));
  const double seam = smoothStep(0.0, 0.004, std::abs(p.x + 0.003));
  return {DemoVector{0.36, 0.235, 0.13} * (mix(0.72, 1.0, weave) * mix(0.6, 1.0, seam)), 0.05, 12.0,
          0.0};
}

Cloth clothOf(int part, const DemoVector& world) {
  switch (part) {
    case Canopy:
      return canopyCloth(umbrellaFrame(world));
    case Metal:
      return {{0.12, 0.12, 0.13}, 1.6, 60.0, 0.0};
    case Coat:
      return coatCloth(world - kStand);
    case Belt:
      return {{0.09, 0.05, 0.03}, 0.3, 30.0, 0.0};
    case Scarf:
      return {{0.035, 0.2, 0.225}, 0.04, 10.0, 0.0};
    case Hair:
      return {{0.045, 0.024, 0.014}, 0.22, 22.0, 0.0};
    default:
      return {{0.5, 0.3, 0.22}, 0.1, 20.0, 0.0};
  }
}

struct Lamp {
  DemoVector toward;
  DemoVector colour;
};

const std::array<Lamp, 5>& lamps() {
  static const std::array<Lamp, 5> kLamps = {
      {{unit({1.0, 0.16, 0.2}), {1.7, 0.9, 0.36}},        // shop windows on the right
       {unit({-0.15, 0.75, 0.8}), {1.5, 1.12, 0.74}},     // street lamps ahead
       {unit({-1.0, 0.12, 0.15}), {0.16, 0.5, 0.78}},     // neon on the left
       {unit({-0.35, 0.6, -1.0}), {0.13, 0.14, 0.19}},    // the street behind the camera
       {unit({0.45, 0.75, -0.8}), {0.22, 0.16, 0.10}}}};  // and its lamps
  return kLamps;
}

DemoVector lit(const Cloth& cloth, const DemoVector& normal, const DemoVector& along) {
  const DemoVector sky = DemoVector{0.045, 0.06, 0.11} * (0.6 + 0.4 * normal.y);
  DemoVector light = cloth.colour * sky;
  const DemoVector mirror = reflected(along, normal);
  for (const Lamp& lamp : lamps()) {
    const double facing = dot(normal, lamp.toward);
    const double through = cloth.sheer * std::max(-facing, 0.0);
    light = light + cloth.colour * lamp.colour * (std::max(facing, 0.0) + through);
    const double glint = std::pow(std::max(dot(mirror, lamp.toward), 0.0), cloth.sharpness);
    light = light + lamp.colour * (cloth.gloss * glint * (facing > 0.0 ? 1.0 : 0.0));
  }
  const double grazing = std::pow(1.0 - std::abs(dot(normal, along)), 4.0);
  return light + DemoVector{0.30, 0.24, 0.19} * (grazing * (0.2 + cloth.gloss) * 0.6);
}

}  // namespace

DemoHit traceFigure(const DemoRay& ray) {
  DemoHit hit;
  const auto around = intersect(kAround, ray);
  if (!around) return hit;
  const auto distance = [](const DemoVector& p) { return nearestPart(p).distance; };
  const auto t = march(distance, ray, around->enter, around->leave, 0.7);
  if (!t) return hit;
  const DemoVector p = ray.at(*t);
  const int part = nearestPart(p).part;
  const DemoVector along = unit(ray.along);
  DemoVector normal = normalOf(distance, p);
  if (dot(normal, along) > 0.0) normal = normal * -1.0;
  constexpr double kReach = 0.05;
  const double open = std::clamp(distance(p + normal * kReach) / kReach, 0.35, 1.0);
  hit.t = *t;
  hit.object = part;
  hit.radiance = lit(clothOf(part, p), normal, along) * open;
  if (part == Canopy && normal.y > 0.0) {
    hit.radiance = hit.radiance + DemoVector{1.5, 1.15, 0.95} * dropletGlint(umbrellaFrame(p));
  }
  return hit;
}

}  // namespace drevintool

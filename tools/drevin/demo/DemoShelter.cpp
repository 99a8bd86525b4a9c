#include "demo/DemoShelter.h"

#include <array>

#include "demo/DemoBox.h"
#include "demo/DemoNoise.h"
#include "demo/DemoRaindrops.h"

namespace drevintool {
namespace {

constexpr int kObject = 300;
constexpr double kLeft = 0.300;  // m, of the frame
constexpr double kPaneLeft = 0.332;
constexpr double kPaneTop = 1.950;
constexpr double kTop = 1.985;
constexpr double kRight = 2.0;  // beyond the picture
constexpr double kBottom = 0.2;
constexpr double kFront = kDemoPaneDepth - 0.03;
constexpr double kBack = kDemoPaneDepth + 0.03;

DemoVector onPane(const DemoRay& ray) {
  return ray.at((kDemoPaneDepth - ray.origin.z) / ray.along.z);
}

// Brushed metal: a bright ridge where it turns toward the lamps.
DemoVector metal(double across, double along) {
  const double brushed = 0.85 + 0.3 * demoNoise(across * 2400.0, along * 14.0);
  const double ridge = std::exp(-std::pow((across - 0.72) / 0.13, 2.0));
  const double edge = std::exp(-std::pow((across - 0.06) / 0.07, 2.0));
  return (DemoVector{0.050, 0.052, 0.058} + DemoVector{0.80, 0.56, 0.34} * (0.8 * ridge) +
          DemoVector{0.16, 0.34, 0.46} * (0.8 * edge)) *
         brushed;
}

// A row of small lamps under the top rail.
bool inLamp(const DemoVector& p) {
  const double cell = fraction(p.x / 0.055) - 0.5;
  return std::hypot(cell * 0.055, p.y - (kPaneTop + 0.010)) < 0.0055;
}

DemoVector frameRadiance(const DemoVector& p, const DemoVector& normal) {
  if (normal.x > 0.0 || normal.y > 0.0) return {0.05, 0.04, 0.035};
  if (p.y < kPaneTop) return metal((p.x - kLeft) / (kPaneLeft - kLeft), p.y);
  return metal(1.0 - (p.y - kPaneTop) / (kTop - kPaneTop), p.x);
}

// What the glass mirrors: lit windows behind the camera, bent a little.
DemoVector mirrored(const DemoVector& p) {
  const double slant = p.x + 0.11 * p.y + 0.012 * demoNoise(p.x * 3.0, p.y * 5.0);
  const auto window = [&](double from, double to, double low, double high) {
    return smoothStep(from, from + 0.02, slant) * smoothStep(to, to - 0.02, slant) *
           smoothStep(low, low + 0.03, p.y) * smoothStep(high, high - 0.03, p.y);
  };
  const double warm = window(0.62, 0.78, 1.12, 1.62) + window(0.82, 0.98, 1.12, 1.62);
  const double cool = window(1.22, 1.42, 1.35, 1.80);
  return DemoVector{0.055, 0.036, 0.019} * warm + DemoVector{0.012, 0.028, 0.042} * cool;
}

DemoPaneHit glass(const DemoVector& p) {
  const double mist = demoFractal(p.x * 2.2 + 4.0, p.y * 1.6) * smoothStep(1.8, 0.9, p.y);
  const double alpha = 0.30 + 0.12 * mist;
  const DemoVector tint{0.020, 0.034, 0.038};
  const DemoVector lit{0.090, 0.066, 0.052};
  return {alpha, mix(tint, lit, mist) * alpha + mirrored(p)};
}

// Lamps in drops sparkle, but less than the lamps themselves.
DemoVector dimmed(const DemoVector& radiance) {
  constexpr double kKnee = 5.0;
  return radiance * (kKnee / (kKnee + std::max({radiance.x, radiance.y, radiance.z})));
}

// A drop is a small lens that shows the street upside down; its rim turns the light away.
void addDrop(const DemoRay& ray, const DemoRaindrop& drop, const DemoBackdrop& backdrop,
             DemoPaneHit& pane) {
  constexpr double kBend = 0.10;  // slope from the drop's middle to its rim
  constexpr double kAlpha = 0.88;
  const DemoVector bent{ray.along.x - kBend * drop.across, ray.along.y - kBend * drop.up, 1.0};
  const double r2 = std::min(drop.across * drop.across + drop.up * drop.up, 1.0);
  const double through = mix(1.0, 0.25, r2 * r2);
  const double glint = std::exp(-22.0 * (std::pow(drop.across + 0.35, 2.0) +  //
                                         std::pow(drop.up - 0.45, 2.0)));
  const DemoVector light =
      (dimmed(backdrop(bent)) * through + DemoVector{1.0, 0.74, 0.46} * (0.8 * glint)) * kAlpha;
  pane.alpha = mix(pane.alpha, kAlpha, drop.cover);
  pane.light = mix(pane.light, light, drop.cover);
}

}  // namespace

bool nearShelter(const DemoRay& ray, double margin) {
  const DemoVector p = onPane(ray);
  const double reach = margin * kBack + 0.02;
  return p.x > kLeft - reach && p.y < kTop + reach;
}

DemoHit traceShelterFrame(const DemoRay& ray) {
  static const std::array<DemoBox, 2> kParts = {
      {{{kLeft, kBottom, kFront}, {kPaneLeft, kTop, kBack}},
       {{kLeft, kPaneTop, kFront}, {kRight, kTop, kBack}}}};
  DemoHit hit;
  for (const DemoBox& part : kParts) {
    const auto inside = intersect(part, ray);
    if (!inside || inside->enter <= 0.0 || inside->enter >= hit.t) continue;
    const DemoVector p = ray.at(inside->enter);
    hit.t = inside->enter;
    hit.object = kObject;
    hit.light = inside->normal.z != 0.0 && p.x > kPaneLeft && inLamp(p);
    hit.radiance = hit.light ? DemoVector{1.0, 0.80, 0.55} * 9.0 : frameRadiance(p, inside->normal);
  }
  return hit;
}

std::optional<DemoPaneHit> traceShelterPane(const DemoRay& ray, const DemoBackdrop& backdrop) {
  const DemoVector p = onPane(ray);
  const bool inside = p.x >= kPaneLeft && p.x <= kRight && p.y <= kPaneTop && p.y >= kBottom;
  if (!inside) return std::nullopt;
  DemoPaneHit pane = glass(p);
  if (const auto drop = demoRaindrop(p.x, p.y)) addDrop(ray, *drop, backdrop, pane);
  return pane;
}

}  // namespace drevintool

#include "demo/DemoLightGrid.h"

#include <utility>

namespace drevintool {
namespace {

constexpr int kTile = 8;
constexpr int kObject = 1000;

int tilesFor(int pixels) {
  return (pixels + kTile - 1) / kTile;
}

// The tile of a place, kept within the picture; places come clamped to a sane size.
int tileOf(double place, int tiles) {
  return static_cast<int>(std::floor(std::clamp(place / kTile, 0.0, tiles - 1.0)));
}

}  // namespace

DemoLightGrid::DemoLightGrid(const DemoCamera& camera, std::vector<DemoLight> lights, int width,
                             int height)
    : lights_(std::move(lights)),
      columns_(tilesFor(width)),
      rows_(tilesFor(height)),
      tiles_(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_)) {
  for (std::size_t i = 0; i < lights_.size(); ++i)
    enter(camera, i, width, height);
}

void DemoLightGrid::enter(const DemoCamera& camera, std::size_t light, int width, int height) {
  const DemoVector& p = lights_[light].position;
  const DemoPlace middle = project(camera, p, width, height);
  const double reach = lights_[light].radius / p.z * width / (2.0 * camera.halfWidth()) + 1.0;
  if (middle.column + reach < 0.0 || middle.column - reach > width) return;
  if (middle.row + reach < 0.0 || middle.row - reach > height) return;
  const int right = tileOf(middle.column + reach, columns_);
  const int bottom = tileOf(middle.row + reach, rows_);
  for (int row = tileOf(middle.row - reach, rows_); row <= bottom; ++row) {
    for (int column = tileOf(middle.column - reach, columns_); column <= right; ++column) {
      const int tile = row * columns_ + column;
      tiles_[static_cast<std::size_t>(tile)].push_back(light);
    }
  }
}

const std::vector<std::size_t>& DemoLightGrid::near(int column, int row) const {
  const int tile = row / kTile * columns_ + column / kTile;
  return tiles_[static_cast<std::size_t>(tile)];
}

DemoHit DemoLightGrid::trace(const DemoRay& ray, int column, int row) const {
  DemoHit hit;
  const double a = dot(ray.along, ray.along);
  for (const std::size_t index : near(column, row)) {
    const DemoLight& light = lights_[index];
    const DemoVector to = light.position - ray.origin;
    const double b = dot(ray.along, to) / a;
    const DemoVector miss = to - ray.along * b;
    const double inside = light.radius * light.radius - dot(miss, miss);
    if (inside <= 0.0) continue;
    const double t = b - std::sqrt(inside / a);
    if (t <= 0.0 || t >= hit.t) continue;
    const double facing = std::sqrt(inside) / light.radius;
    hit.t = t;
    hit.object = kObject + static_cast<int>(index);
    hit.light = true;
    hit.radiance = light.radiance * (0.5 + 0.5 * facing);
  }
  return hit;
}

}  // namespace drevintool

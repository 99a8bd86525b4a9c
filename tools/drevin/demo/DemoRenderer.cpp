#include "demo/DemoRenderer.h"

#include <limits>

#include "demo/DemoBuildings.h"
#include "demo/DemoCars.h"
#include "demo/DemoFigure.h"
#include "demo/DemoFurniture.h"
#include "demo/DemoNeon.h"
#include "demo/DemoRoad.h"
#include "demo/DemoRows.h"
#include "demo/DemoSky.h"

namespace drevintool {
namespace {

DemoVector throughAir(const DemoVector& radiance, double depth) {
  constexpr double kReach = 260.0;
  return mix(DemoVector{0.060, 0.050, 0.062}, radiance, std::exp(-depth / kReach));
}

// What is behind a thing must not burn into its edge: a pixel whose depth is the thing's would
// carry a lamp's light in focus.
DemoVector capped(const DemoVector& radiance) {
  constexpr double kMost = 1.5;
  const double most = std::max({radiance.x, radiance.y, radiance.z});
  return most > kMost ? radiance * (kMost / most) : radiance;
}

// The brightest light, else what lies in the middle.
const DemoHit& chosenOf(const DemoPixelRays& rays) {
  const DemoHit* chosen = nullptr;
  for (const DemoHit& hit : rays.hits) {
    const bool brighter =
        hit.light && (chosen == nullptr || luminance(hit.radiance) > luminance(chosen->radiance));
    if (brighter) chosen = &hit;
  }
  return chosen != nullptr ? *chosen : rays.hits[kDemoSide * kDemoSide / 2 + kDemoSide / 2];
}

}  // namespace

DemoRenderer::DemoRenderer(const DemoCamera& camera, int width, int height, unsigned threads)
    : camera_(camera),
      width_(width),
      height_(height),
      threads_(threads),
      grid_(camera, demoLights(), width, height),
      sketch_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
  const auto sketchRow = [this](int row) {
    for (int column = 0; column < width_; ++column) {
      const DemoRay ray = camera_.ray(column + 0.5, row + 0.5, width_, height_);
      sketch_[indexOf(column, row)] = trace(ray, column, row);
    }
  };
  forDemoRows(height_, sketchRow, threads_);
}

std::size_t DemoRenderer::indexOf(int column, int row) const {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(width_) +
         static_cast<std::size_t>(column);
}

const DemoHit& DemoRenderer::sketched(int column, int row) const {
  return sketch_[indexOf(std::clamp(column, 0, width_ - 1), std::clamp(row, 0, height_ - 1))];
}

DemoVector DemoRenderer::glow(int column, int row, double depth) const {
  const DemoRay ray = camera_.ray(column + 0.5, row + 0.5, width_, height_);
  return demoGlow(grid_.lights(), camera_.height, ray.along.x, ray.along.y, depth);
}

DemoHit DemoRenderer::trace(const DemoRay& ray, int column, int row) const {
  DemoHit nearest = grid_.trace(ray, column, row);
  const std::array<DemoHit, 5> others = {traceFigure(ray), traceFurniture(ray), traceNeon(ray),
                                         traceCars(ray), traceBuildings(ray)};
  for (const DemoHit& hit : others) {
    if (hit.t < nearest.t) nearest = hit;
  }
  const bool groundFirst = ray.along.y < 0.0 && -ray.origin.y / ray.along.y < nearest.t;
  if (groundFirst) nearest = traceRoad(ray, grid_.lights());
  if (nearest.t < std::numeric_limits<double>::infinity()) {
    nearest.radiance = throughAir(nearest.radiance, nearest.t);
  } else {
    nearest.radiance = skyRadiance(ray.along);
  }
  return nearest;
}

DemoPixelRays DemoRenderer::raysOf(int column, int row) const {
  DemoPixelRays rays;
  rays.column = column;
  rays.row = row;
  if (!needsMore(column, row)) {
    rays.hits[0] = sketch_[indexOf(column, row)];
    return rays;
  }
  rays.side = kDemoSide;
  for (int i = 0; i < kDemoSide * kDemoSide; ++i) {
    const int across = i % kDemoSide;
    const int down = i / kDemoSide;
    const double x = column + (across + 0.5) / kDemoSide;
    const double y = row + (down + 0.5) / kDemoSide;
    rays.hits[static_cast<std::size_t>(i)] = trace(camera_.ray(x, y, width_, height_), column, row);
  }
  return rays;
}

DemoHit DemoRenderer::merged(const DemoPixelRays& rays) {
  if (rays.side == 1) return rays.hits[0];
  const DemoHit& chosen = chosenOf(rays);
  DemoVector sum;
  for (const DemoHit& hit : rays.hits) {
    const bool farther = hit.t > chosen.t * 1.1;
    sum = sum + (farther ? capped(hit.radiance) : hit.radiance);
  }
  return {chosen.t, sum * (1.0 / (kDemoSide * kDemoSide)), chosen.object, chosen.light};
}

bool DemoRenderer::needsMore(int column, int row) const {
  if (!grid_.near(column, row).empty()) return true;
  const DemoHit& here = sketch_[indexOf(column, row)];
  const double bright = luminance(here.radiance) + 0.03;
  for (int y = std::max(row - 1, 0); y <= std::min(row + 1, height_ - 1); ++y) {
    for (int x = std::max(column - 1, 0); x <= std::min(column + 1, width_ - 1); ++x) {
      const DemoHit& there = sketch_[indexOf(x, y)];
      const double ratio = (luminance(there.radiance) + 0.03) / bright;
      if (there.object != here.object || ratio > 1.25 || ratio < 0.8) return true;
    }
  }
  return false;
}

DemoPicture DemoRenderer::render(const DemoPixelWork& work) {
  std::vector<DemoHit> pixels(sketch_.size());
  const auto renderRow = [&](int row) {
    for (int column = 0; column < width_; ++column) {
      const DemoPixelRays rays = raysOf(column, row);
      DemoHit& pixel = pixels[indexOf(column, row)];
      pixel = merged(rays);
      pixel.radiance = pixel.radiance + glow(column, row, pixel.t);
      work(rays);
    }
  };
  forDemoRows(height_, renderRow, threads_);
  DemoPicture picture;
  picture.width = width_;
  picture.height = height_;
  for (const DemoHit& pixel : pixels) {
    picture.planes["R"].push_back(static_cast<float>(pixel.radiance.x));
    picture.planes["G"].push_back(static_cast<float>(pixel.radiance.y));
    picture.planes["B"].push_back(static_cast<float>(pixel.radiance.z));
    picture.planes["A"].push_back(1.0F);
    picture.planes["Z"].push_back(static_cast<float>(pixel.t));
  }
  return picture;
}

}  // namespace drevintool

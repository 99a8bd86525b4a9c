#include "DemoScene.h"

#include <array>
#include <limits>

#include "DemoBuildings.h"
#include "DemoCars.h"
#include "DemoFigure.h"
#include "DemoFurniture.h"
#include "DemoLightGrid.h"
#include "DemoNeon.h"
#include "DemoRoad.h"
#include "DemoRows.h"
#include "DemoSky.h"

namespace drevintool {
namespace {

constexpr int kSide = 4;  // samples across a pixel that needs them

struct Pixel {
  DemoVector colour;
  double depth = 0.0;
  int object = 0;
};

class Renderer {
 public:
  Renderer(const DemoCamera& camera, int width, int height)
      : camera_(camera),
        width_(width),
        height_(height),
        grid_(camera, demoLights(), width, height),
        pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

  void render();
  const std::vector<Pixel>& pixels() const { return pixels_; }

 private:
  DemoHit trace(const DemoRay& ray, int column, int row) const;
  Pixel single(int column, int row) const;
  Pixel refined(int column, int row) const;
  bool needsMore(const std::vector<Pixel>& first, int column, int row) const;
  void finish(Pixel& pixel, int column, int row) const;

  std::size_t indexOf(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(width_) +
           static_cast<std::size_t>(column);
  }

  DemoCamera camera_;
  int width_;
  int height_;
  DemoLightGrid grid_;
  std::vector<Pixel> pixels_;
};

DemoVector throughAir(const DemoVector& radiance, double depth) {
  constexpr double kReach = 260.0;
  return mix(DemoVector{0.060, 0.050, 0.062}, radiance, std::exp(-depth / kReach));
}

DemoHit Renderer::trace(const DemoRay& ray, int column, int row) const {
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

Pixel Renderer::single(int column, int row) const {
  const DemoHit hit = trace(camera_.ray(column + 0.5, row + 0.5, width_, height_), column, row);
  return {hit.radiance, hit.t, hit.object};
}

// What is behind a thing must not burn into its edge: a pixel whose depth is the thing's would
// carry a lamp's light in focus.
DemoVector capped(const DemoVector& radiance) {
  constexpr double kMost = 1.5;
  const double most = std::max({radiance.x, radiance.y, radiance.z});
  return most > kMost ? radiance * (kMost / most) : radiance;
}

Pixel Renderer::refined(int column, int row) const {
  std::array<DemoHit, kSide * kSide> hits;
  const DemoHit* chosen = nullptr;
  for (int i = 0; i < kSide * kSide; ++i) {
    const int across = i % kSide;
    const int down = i / kSide;
    const double x = column + (across + 0.5) / kSide;
    const double y = row + (down + 0.5) / kSide;
    DemoHit& hit = hits[static_cast<std::size_t>(i)];
    hit = trace(camera_.ray(x, y, width_, height_), column, row);
    const bool brighter =
        hit.light && (chosen == nullptr || luminance(hit.radiance) > luminance(chosen->radiance));
    if (brighter) chosen = &hit;
  }
  if (chosen == nullptr) chosen = &hits[kSide * kSide / 2 + kSide / 2];
  Pixel pixel{{}, chosen->t, chosen->object};
  for (const DemoHit& hit : hits) {
    const bool farther = hit.t > chosen->t * 1.1;
    pixel.colour = pixel.colour + (farther ? capped(hit.radiance) : hit.radiance);
  }
  pixel.colour = pixel.colour * (1.0 / (kSide * kSide));
  return pixel;
}

bool Renderer::needsMore(const std::vector<Pixel>& first, int column, int row) const {
  if (!grid_.near(column, row).empty()) return true;
  const Pixel& here = first[indexOf(column, row)];
  const double bright = luminance(here.colour) + 0.03;
  for (int y = std::max(row - 1, 0); y <= std::min(row + 1, height_ - 1); ++y) {
    for (int x = std::max(column - 1, 0); x <= std::min(column + 1, width_ - 1); ++x) {
      const Pixel& there = first[indexOf(x, y)];
      const double ratio = (luminance(there.colour) + 0.03) / bright;
      if (there.object != here.object || ratio > 1.25 || ratio < 0.8) return true;
    }
  }
  return false;
}

void Renderer::finish(Pixel& pixel, int column, int row) const {
  const DemoRay ray = camera_.ray(column + 0.5, row + 0.5, width_, height_);
  pixel.colour = pixel.colour +
                 demoGlow(grid_.lights(), camera_.height, ray.along.x, ray.along.y, pixel.depth);
}

void Renderer::render() {
  forDemoRows(height_, [this](int row) {
    for (int column = 0; column < width_; ++column) {
      pixels_[indexOf(column, row)] = single(column, row);
    }
  });
  const std::vector<Pixel> first = pixels_;
  forDemoRows(height_, [this, &first](int row) {
    for (int column = 0; column < width_; ++column) {
      Pixel& pixel = pixels_[indexOf(column, row)];
      if (needsMore(first, column, row)) pixel = refined(column, row);
      finish(pixel, column, row);
    }
  });
}

}  // namespace

int demoHeight(int width) {
  return std::max(width * 9 / 16, 1);
}

DemoPicture renderDemoScene(const DemoCamera& camera, int width) {
  DemoPicture picture;
  picture.width = width;
  picture.height = demoHeight(width);
  Renderer renderer(camera, picture.width, picture.height);
  renderer.render();
  for (const Pixel& pixel : renderer.pixels()) {
    picture.planes["R"].push_back(static_cast<float>(pixel.colour.x));
    picture.planes["G"].push_back(static_cast<float>(pixel.colour.y));
    picture.planes["B"].push_back(static_cast<float>(pixel.colour.z));
    picture.planes["A"].push_back(1.0F);
    picture.planes["Z"].push_back(static_cast<float>(pixel.depth));
  }
  return picture;
}

}  // namespace drevintool

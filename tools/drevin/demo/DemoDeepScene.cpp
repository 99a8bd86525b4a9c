#include "demo/DemoDeepScene.h"

#include <algorithm>

#include "demo/DemoLayers.h"
#include "demo/DemoRenderer.h"
#include "demo/DemoShelter.h"
#include "demo/DemoSmoke.h"

namespace drevintool {
namespace {

class DeepRows {
 public:
  DeepRows(const DemoCamera& camera, int width, const DemoRenderer& renderer)
      : camera_(camera), renderer_(renderer), smoke_(demoLights()) {
    picture_.width = width;
    picture_.rows.resize(static_cast<std::size_t>(demoHeight(width)));
  }

  void addPixel(const DemoPixelRays& rays);
  DemoDeepPicture take() { return std::move(picture_); }

 private:
  std::vector<DemoLayer> layersOf(const DemoPixelRays& rays) const;
  void appendRay(const DemoRay& ray, const DemoHit& scene, bool shelter, double share,
                 std::vector<DemoLayer>& layers) const;
  DemoVector behind(const DemoVector& along) const;
  DemoRay rayAt(double column, double row) const {
    return camera_.ray(column, row, picture_.width, picture_.height());
  }

  DemoCamera camera_;
  const DemoRenderer& renderer_;
  DemoSmoke smoke_;
  DemoDeepPicture picture_;
};

DemoVector DeepRows::behind(const DemoVector& along) const {
  const DemoPlace place = project(camera_, DemoVector{along.x, along.y + camera_.height, 1.0},
                                  picture_.width, picture_.height());
  return renderer_
      .sketched(static_cast<int>(std::floor(place.column)), static_cast<int>(std::floor(place.row)))
      .radiance;
}

void DeepRows::appendRay(const DemoRay& ray, const DemoHit& scene, bool shelter, double share,
                         std::vector<DemoLayer>& layers) const {
  DemoHit opaque = scene;
  if (shelter) {
    const DemoHit frame = traceShelterFrame(ray);
    if (frame.t < opaque.t) opaque = frame;
    if (kDemoPaneDepth < opaque.t) {
      const auto backdrop = [this](const DemoVector& along) { return behind(along); };
      if (const auto pane = traceShelterPane(ray, backdrop)) {
        layers.push_back({kDemoPaneDepth, share * pane->alpha, pane->light * share});
        share *= 1.0 - pane->alpha;
      }
    }
  }
  layers.push_back({std::min(opaque.t, kDemoSkyDepth), share, opaque.radiance * share});
}

std::vector<DemoLayer> DeepRows::layersOf(const DemoPixelRays& rays) const {
  const double pixel = 2.0 * camera_.halfWidth() / picture_.width;
  const bool shelter = nearShelter(rayAt(rays.column + 0.5, rays.row + 0.5), pixel);
  const int side = shelter ? kDemoSide : rays.side;
  std::vector<DemoLayer> layers;
  for (int i = 0; i < side * side; ++i) {
    const int across = i % side;
    const int down = i / side;
    const double x = rays.column + (across + 0.5) / side;
    const double y = rays.row + (down + 0.5) / side;
    const DemoHit& scene = rays.hits[rays.side == 1 ? 0 : static_cast<std::size_t>(i)];
    appendRay(rayAt(x, y), scene, shelter, 1.0 / (side * side), layers);
  }
  return layers;
}

void DeepRows::addPixel(const DemoPixelRays& rays) {
  std::vector<DemoLayer> layers = layersOf(rays);
  std::vector<DemoDeepSample> surfaces;
  appendMerged(layers, surfaces);
  DemoDeepRow& row = picture_.rows[static_cast<std::size_t>(rays.row)];
  const std::size_t before = row.samples.size();
  const DemoRay ray = rayAt(rays.column + 0.5, rays.row + 0.5);
  double from = 0.0;
  for (DemoDeepSample& surface : surfaces) {
    const auto depth = static_cast<double>(surface.front);
    const DemoVector glow = renderer_.glow(rays.column, rays.row, depth) * surface.alpha;
    surface.red += static_cast<float>(glow.x);
    surface.green += static_cast<float>(glow.y);
    surface.blue += static_cast<float>(glow.z);
    smoke_.append(ray, from, depth, row.samples);
    row.samples.push_back(surface);
    from = depth;
  }
  row.counts.push_back(static_cast<unsigned>(row.samples.size() - before));
}

}  // namespace

DemoPictures renderDemoPictures(const DemoCamera& camera, int width, unsigned threads) {
  DemoRenderer renderer(camera, width, demoHeight(width), threads);
  DeepRows deep(camera, width, renderer);
  DemoPictures pictures;
  pictures.flat = renderer.render([&deep](const DemoPixelRays& rays) { deep.addPixel(rays); });
  pictures.deep = deep.take();
  return pictures;
}

}  // namespace drevintool

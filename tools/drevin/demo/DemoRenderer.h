#pragma once

/// The rays of the demo scene: each pixel traced once, and more often where that shows.

#include <array>
#include <functional>
#include <vector>

#include "demo/DemoCamera.h"
#include "demo/DemoHit.h"
#include "demo/DemoLightGrid.h"
#include "demo/DemoPicture.h"

namespace drevintool {

constexpr int kDemoSide = 4;  ///< rays across a pixel that needs several

/// What the rays of one pixel met, light scattered before it left out.
struct DemoPixelRays {
  int column = 0;
  int row = 0;
  int side = 1;  ///< rays across and down, 1 or kDemoSide, evenly spread
  /// side * side are used, row by row from the pixel's top left corner.
  std::array<DemoHit, static_cast<std::size_t>(kDemoSide) * kDemoSide> hits;
};

/// Called for every pixel: rows by several threads in any order, each row from left to right.
using DemoPixelWork = std::function<void(const DemoPixelRays&)>;

class DemoRenderer {
 public:
  /// Traces one ray a pixel. `threads` as for forDemoRows.
  DemoRenderer(const DemoCamera& camera, int width, int height, unsigned threads = 0);

  /// What the one ray through a pixel's middle met; of the nearest pixel for a place outside the
  /// picture.
  const DemoHit& sketched(int column, int row) const;
  /// Light that the air before a depth scatters into the ray through a pixel's middle.
  DemoVector glow(int column, int row, double depth) const;
  /// Traces what needs more rays, hands the rays of each pixel to `work`, and returns the picture.
  DemoPicture render(const DemoPixelWork& work);

 private:
  DemoHit trace(const DemoRay& ray, int column, int row) const;
  DemoPixelRays raysOf(int column, int row) const;
  bool needsMore(int column, int row) const;
  static DemoHit merged(const DemoPixelRays& rays);
  std::size_t indexOf(int column, int row) const;

  DemoCamera camera_;
  int width_;
  int height_;
  unsigned threads_;
  DemoLightGrid grid_;
  std::vector<DemoHit> sketch_;
};

}  // namespace drevintool

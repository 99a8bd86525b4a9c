#pragma once

/// Which lights may show in which part of the picture, so that a ray asks few of them.

#include <vector>

#include "demo/DemoCamera.h"
#include "demo/DemoHit.h"
#include "demo/DemoLights.h"

namespace drevintool {

class DemoLightGrid {
 public:
  DemoLightGrid(const DemoCamera& camera, std::vector<DemoLight> lights, int width, int height);

  const std::vector<DemoLight>& lights() const { return lights_; }
  /// Lights whose image touches the tile of this pixel; none outside the picture.
  const std::vector<std::size_t>& near(int column, int row) const;
  /// The nearest light along a camera ray through this pixel; t infinite if there is none.
  DemoHit trace(const DemoRay& ray, int column, int row) const;

 private:
  void enter(const DemoCamera& camera, std::size_t light, int width, int height);

  std::vector<DemoLight> lights_;
  int columns_;
  int rows_;
  std::vector<std::vector<std::size_t>> tiles_;
};

}  // namespace drevintool

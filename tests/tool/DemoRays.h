#pragma once

/// Rays of the demo's camera.

#include "demo/DemoVector.h"

namespace drevintool::testing {

/// From the eye through a point of the scene, a distance of z along the axis at 1.
inline DemoRay towards(double x, double y, double z) {
  return {{0.0, 1.5, 0.0}, {x / z, (y - 1.5) / z, 1.0}};
}

}  // namespace drevintool::testing

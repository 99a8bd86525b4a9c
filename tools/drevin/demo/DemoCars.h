#pragma once

/// The cars of the demo scene.

#include <array>

#include "demo/DemoHit.h"

namespace drevintool {

struct DemoCar {
  double x = 0.0;  ///< m, of its middle
  double z = 0.0;
  bool oncoming = false;
  DemoVector paint;
};

const std::array<DemoCar, 7>& demoCars();

/// The nearest car along the ray (its lights apart); t infinite if there is none.
DemoHit traceCars(const DemoRay& ray);

}  // namespace drevintool

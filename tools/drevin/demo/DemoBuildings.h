#pragma once

/// The houses along the demo street: boxes with shops below and windows above.

#include "demo/DemoHit.h"

namespace drevintool {

/// The planes of the fronts on either side, m.
constexpr double kDemoLeftFront = -4.8;
constexpr double kDemoRightFront = 5.6;

/// The nearest house along the ray; t infinite if there is none.
DemoHit traceBuildings(const DemoRay& ray);

}  // namespace drevintool

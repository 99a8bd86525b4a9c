#pragma once

/// The wet road of the demo street and what it mirrors.

#include <vector>

#include "demo/DemoHit.h"
#include "demo/DemoLights.h"

namespace drevintool {

/// The ground at y = 0 along a ray from above it; t infinite if the ray does not go down.
DemoHit traceRoad(const DemoRay& ray, const std::vector<DemoLight>& lights);

}  // namespace drevintool

#pragma once

/// The subject of the demo scene: someone seen from behind under a red umbrella, at the focal
/// plane.

#include "demo/DemoHit.h"

namespace drevintool {

/// Its nearest and farthest depth, m.
constexpr double kDemoFigureNear = 3.5;
constexpr double kDemoFigureFar = 4.5;

/// The figure along the ray; t infinite where it is missed.
DemoHit traceFigure(const DemoRay& ray);

}  // namespace drevintool

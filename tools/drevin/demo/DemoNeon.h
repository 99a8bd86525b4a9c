#pragma once

/// The neon sign of the demo street: a cup drawn with bent tubes on a round board.

#include "demo/DemoHit.h"

namespace drevintool {

/// The middle of the board and its radius, m; it faces the camera.
constexpr DemoVector kDemoNeonCentre{3.74, 2.66, 21.0};
constexpr double kDemoNeonRadius = 0.62;

/// The sign along a ray from in front of it; t infinite where it is missed.
DemoHit traceNeon(const DemoRay& ray);

}  // namespace drevintool

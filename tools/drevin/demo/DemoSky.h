#pragma once

/// The night sky of the demo scene, infinitely far away.

#include "demo/DemoVector.h"

namespace drevintool {

/// Radiance from a direction of any length with z > 0: dusk above the roofs, stars, a moon.
DemoVector skyRadiance(const DemoVector& along);

}  // namespace drevintool

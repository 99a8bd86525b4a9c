#pragma once

/// Thin dark things of the demo street: lamp posts, signal posts, the wire of the near bulbs.

#include "demo/DemoHit.h"

namespace drevintool {

/// The nearest of them along the ray; t infinite if there is none.
DemoHit traceFurniture(const DemoRay& ray);

}  // namespace drevintool

#pragma once

/// Thin dark things of the demo street: lamp posts, signal posts, the wire of the near bulbs.

#include "DemoHit.h"

namespace drevintool {

/// The nearest of them along the ray; t infinite if there is none.
DemoHit traceFurniture(const DemoRay& ray);

}  // namespace drevintool

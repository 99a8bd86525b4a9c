#pragma once

/// Boxes along the axes, and rays against them.

#include <optional>

#include "demo/DemoVector.h"

namespace drevintool {

struct DemoBox {
  DemoVector low;
  DemoVector high;
};

struct DemoBoxHit {
  double enter = 0.0;  ///< 0 for a ray that starts inside
  double leave = 0.0;
  DemoVector normal;  ///< of the face entered; zero for a ray that starts inside
};

/// Where the ray runs inside the box, if it does ahead of its origin (slab method).
std::optional<DemoBoxHit> intersect(const DemoBox& box, const DemoRay& ray);

}  // namespace drevintool

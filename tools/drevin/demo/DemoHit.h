#pragma once

/// What a ray of the demo scene finds.

#include <limits>

#include "demo/DemoVector.h"

namespace drevintool {

struct DemoHit {
  /// Along the ray; infinite if nothing but sky is there.
  double t = std::numeric_limits<double>::infinity();
  DemoVector radiance;
  int object = 0;      ///< differs between things, to find their outlines
  bool light = false;  ///< a small source, to be kept whole
};

}  // namespace drevintool

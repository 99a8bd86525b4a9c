#pragma once

/// Depth planes made for a test.

#include <functional>
#include <memory>
#include <vector>

#include "depth/DepthPlane.h"

namespace drevintool::testing {

/// A plane from 0,0 with the depth that the function says for a column and a row.
inline DepthPlane planeOf(int width, int height, const std::function<float(int x, int y)>& depth) {
  auto values = std::make_shared<std::vector<float>>();
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      values->push_back(depth(x, y));
  }
  return {{0, 0, width, height}, values, false};
}

/// A plane of one row.
inline DepthPlane rowOf(const std::vector<float>& depths) {
  return planeOf(static_cast<int>(depths.size()), 1,
                 [&](int x, int) { return depths[static_cast<std::size_t>(x)]; });
}

}  // namespace drevintool::testing

#pragma once

/// Rain that stands on an upright pane.

#include <optional>

namespace drevintool {

/// A place in a drop.
struct DemoRaindrop {
  double cover = 0.0;   ///< 0 at the drop's rim, 1 inside, in [0, 1]
  double across = 0.0;  ///< from the drop's middle, in radii, rightward
  double up = 0.0;      ///< likewise, upward
};

/// The drop at a place of the pane in m, if there is one; the same drops every time.
std::optional<DemoRaindrop> demoRaindrop(double x, double y);

}  // namespace drevintool

#pragma once

/// What is to be mended in a picture before the node sees it.

#include <optional>

namespace drevintool {

/// The depth that pixels get which have none.
struct BackgroundFix {
  bool farthest = false;  ///< that of the farthest pixel; else `depth`
  float depth = 0.0F;     ///< as the channel holds it
};

struct PictureFixes {
  std::optional<BackgroundFix> background;
  bool edges = false;               ///< averaged depths go to the side that they are closer to
  std::optional<float> mostColour;  ///< brighter pixels are dimmed to that; above 0

  bool any() const { return background || edges || mostColour; }
  bool ofDepth() const { return background || edges; }
};

}  // namespace drevintool

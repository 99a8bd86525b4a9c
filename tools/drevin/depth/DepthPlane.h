#pragma once

/// One depth channel of a picture over the pixels that its part has.

#include <cstddef>

#include "picture/Picture.h"

namespace drevintool {

struct DepthPlane {
  PixelBox box;
  FloatSamples values;  ///< of the box, row-major, the bottom row first
  bool half = false;    ///< stored in half precision

  float at(int x, int y) const { return (*values)[indexOf(x, y)]; }
  std::size_t indexOf(int x, int y) const {
    return static_cast<std::size_t>(y - box.y) * box.width() + static_cast<std::size_t>(x - box.x);
  }
};

/// The pixels that the channel's part has.
const PixelBox& windowOf(const Picture& picture, const PictureChannel& channel);

/// The channel's samples over `window`, which must lie in the picture's box.
DepthPlane depthPlane(const Picture& picture, const PictureChannel& channel,
                      const PixelBox& window);

/// Over the whole of the picture's box.
DepthPlane depthPlane(const Picture& picture, const PictureChannel& channel);

}  // namespace drevintool

#pragma once

/// The reduction at which a picture is made.

#include "DDImage/Export.h"

namespace DD {
namespace Image {

/// Scale from full-size pixels to the pixels in use: 1 at full resolution, below 1 in proxy.
class DD_EXPORT ProxyContext {
 public:
  float scale_x() const { return scaleX_; }
  float scale_y() const { return scaleY_; }

  // embedded host
  void setScale(float x, float y) {
    scaleX_ = x;
    scaleY_ = y;
  }

 private:
  float scaleX_ = 1.0F;
  float scaleY_ = 1.0F;
};

}  // namespace Image
}  // namespace DD

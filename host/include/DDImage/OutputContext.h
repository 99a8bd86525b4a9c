#pragma once

/// The context for which an operator makes its picture.

#include "DDImage/ProxyContext.h"

namespace DD {
namespace Image {

class DD_EXPORT OutputContext : public ProxyContext {
 public:
  double frame() const { return frame_; }
  void setFrame(double frame) { frame_ = frame; }

 private:
  double frame_ = 1.0;
};

}  // namespace Image
}  // namespace DD

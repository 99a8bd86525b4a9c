#pragma once

/// A node of the small operator with a picture on its input.

#include <memory>

#include "EmbeddedHost/Node.h"
#include "EmbeddedHost/Render.h"
#include "host/SmoothOp.h"

namespace smooth {

/// A value that tells its place and its channel: 1000 z + 10 y + x.
inline float markedValue(int x, int y, DD::Image::Channel z) {
  return 1000.0F * static_cast<float>(z) + 10.0F * static_cast<float>(y) + static_cast<float>(x);
}

/// A picture of marked values.
inline embedded::Image markedImage(const DD::Image::Box& box,
                                   const DD::Image::ChannelSet& channels = DD::Image::Mask_RGBA) {
  embedded::Image image;
  image.format = DD::Image::Format(8, 6);
  image.box = box;
  for (const DD::Image::Channel z : channels) {
    auto plane = std::make_shared<embedded::Plane>();
    for (int y = box.y(); y < box.t(); ++y) {
      for (int x = box.x(); x < box.r(); ++x)
        plane->push_back(markedValue(x, y, z));
    }
    image.planes[z] = plane;
  }
  return image;
}

struct HostBench {
  explicit HostBench(const DD::Image::Box& box = DD::Image::Box(0, 0, 8, 6))
      : picture(markedImage(box)), node(SmoothOp::description) {
    picture.validate(true);
    node.connect(0, &picture);
    op().calls.clear();
    op().changed.clear();
    options.channels = DD::Image::Mask_RGBA;
    options.threads = 2;
  }
  ~HostBench() { embedded::clearAbort(); }
  HostBench(const HostBench&) = delete;
  HostBench& operator=(const HostBench&) = delete;

  SmoothOp& op() const { return dynamic_cast<SmoothOp&>(node.op()); }
  DD::Image::Knob& knob(const char* name) const { return *node.knob(name); }
  embedded::RenderResult render() { return embedded::render(node, options); }

  embedded::ImageInput picture;
  Node node;
  embedded::RenderOptions options;
};

}  // namespace smooth

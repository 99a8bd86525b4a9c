#include "depth/DepthPlane.h"

#include "picture/FloatSamples.h"
#include "picture/OutputPicture.h"

namespace drevintool {
namespace {

bool same(const PixelBox& a, const PixelBox& b) {
  return a.x == b.x && a.y == b.y && a.r == b.r && a.t == b.t;
}

}  // namespace

const PixelBox& windowOf(const Picture& picture, const PictureChannel& channel) {
  return channel.window.empty() ? picture.box : channel.window;
}

DepthPlane depthPlane(const Picture& picture, const PictureChannel& channel,
                      const PixelBox& window) {
  const bool half = std::holds_alternative<HalfSamples>(channel.samples);
  if (same(window, picture.box)) return {window, floatSamples(channel.samples), half};
  return {window, floatSamples(cutSamples(picture, channel, window)), half};
}

DepthPlane depthPlane(const Picture& picture, const PictureChannel& channel) {
  return depthPlane(picture, channel, picture.box);
}

}  // namespace drevintool

#include "frames/FrameScenes.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <stdexcept>

namespace drevin::bench {

namespace {

constexpr float nearEnd = frameFocalPlane - 0.5F * frameFocusRegion;
constexpr float farEnd = frameFocalPlane + 0.5F * frameFocusRegion;

/// Reproducible noise in [0, 1).
float noise(std::uint32_t i) {
  i = (i ^ 61U) ^ (i >> 16U);
  i *= 9U;
  i ^= i >> 4U;
  i *= 0x27d4eb2dU;
  i ^= i >> 15U;
  return static_cast<float>(i >> 8U) * 0x1p-24F;
}

float light(float value) {
  return value > 0.9995F ? 500.0F * value : value;
}

/// Depth at a place of the unit square, origin below left.
using Depth = std::function<float(float u, float v, std::uint32_t pixel)>;

float sceneDepth(float u, float v, std::uint32_t /*pixel*/) {
  const bool figure = std::fabs(u - 0.35F) < 0.12F && v < 0.85F;
  if (figure) return frameFocalPlane;
  const bool pillar = std::fabs(u - 0.85F) < 0.06F;
  if (pillar) return nearEnd + 0.3F + 0.4F * v;
  if (v > 0.5F) return farEnd + 10.0F;
  return nearEnd + (farEnd - nearEnd) * v * 2.0F;
}

Depth depthOf(const std::string& kind) {
  if (kind == "uniform") return [](float, float, std::uint32_t) { return farEnd + 1.0F; };
  if (kind == "ramp") {
    return [](float u, float v, std::uint32_t) {
      return nearEnd + frameFocusRegion * (0.75F * u + 0.25F * v);
    };
  }
  if (kind == "scene") return sceneDepth;
  if (kind == "random") {
    return [](float, float, std::uint32_t pixel) {
      return nearEnd + frameFocusRegion * noise(pixel * 31U + 7U);
    };
  }
  throw std::invalid_argument(kind + ": no such scene");
}

}  // namespace

embedded::Image frameScene(const std::string& kind, int width, int height) {
  const Depth depth = depthOf(kind);
  embedded::Image image{DD::Image::Format(width, height), DD::Image::Box(0, 0, width, height), {}};
  const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  auto z = std::make_shared<embedded::Plane>(pixels);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const std::size_t at = static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                             static_cast<std::size_t>(x);
      (*z)[at] = depth((static_cast<float>(x) + 0.5F) / static_cast<float>(width),
                       (static_cast<float>(y) + 0.5F) / static_cast<float>(height),
                       static_cast<std::uint32_t>(at));
    }
  }
  for (const DD::Image::Channel channel : DD::Image::ChannelSet(DD::Image::Mask_RGBA)) {
    auto plane = std::make_shared<embedded::Plane>(pixels);
    const auto seed = static_cast<std::uint32_t>(channel) * 7919U;
    for (std::size_t i = 0; i < pixels; ++i) {
      (*plane)[i] = channel == DD::Image::Chan_Alpha
                        ? 1.0F
                        : light(noise(seed + static_cast<std::uint32_t>(i)));
    }
    image.planes[channel] = plane;
  }
  image.planes[DD::Image::Chan_Z] = z;
  return image;
}

}  // namespace drevin::bench

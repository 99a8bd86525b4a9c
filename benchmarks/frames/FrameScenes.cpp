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

/// A value at a place of the unit square, origin below left.
using Value = std::function<float(float u, float v, std::uint32_t pixel)>;

float sceneDepth(float u, float v, std::uint32_t /*pixel*/) {
  const bool figure = std::fabs(u - 0.35F) < 0.12F && v < 0.85F;
  if (figure) return frameFocalPlane;
  const bool pillar = std::fabs(u - 0.85F) < 0.06F;
  if (pillar) return nearEnd + 0.3F + 0.4F * v;
  if (v > 0.5F) return farEnd + 10.0F;
  return nearEnd + (farEnd - nearEnd) * v * 2.0F;
}

Value depthOf(const std::string& kind) {
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

void addPlane(embedded::Image& image, DD::Image::Channel channel, const Value& value) {
  const int width = image.box.w();
  const int height = image.box.h();
  auto plane = std::make_shared<embedded::Plane>();
  plane->reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  std::uint32_t pixel = 0;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      plane->push_back(value((static_cast<float>(x) + 0.5F) / static_cast<float>(width),
                             (static_cast<float>(y) + 0.5F) / static_cast<float>(height), pixel++));
    }
  }
  image.planes[channel] = plane;
}

embedded::Image emptyImage(int width, int height) {
  return {DD::Image::Format(width, height), DD::Image::Box(0, 0, width, height), {}};
}

/// A disc about the middle of the unit square, `radius` of its half side, with a rim of 0.1.
float disc(float u, float v, float radius) {
  const float distance = 2.0F * std::hypot(u - 0.5F, v - 0.5F);
  return std::clamp((radius - distance) * 10.0F, 0.0F, 1.0F);
}

}  // namespace

embedded::Image frameScene(const std::string& kind, int width, int height) {
  embedded::Image image = emptyImage(width, height);
  addPlane(image, DD::Image::Chan_Z, depthOf(kind));
  for (const DD::Image::Channel channel :
       {DD::Image::Chan_Red, DD::Image::Chan_Green, DD::Image::Chan_Blue}) {
    const auto seed = static_cast<std::uint32_t>(channel) * 7919U;
    addPlane(image, channel, [seed](float /*u*/, float /*v*/, std::uint32_t pixel) {
      return light(noise(seed + pixel));
    });
  }
  addPlane(image, DD::Image::Chan_Alpha, [](float, float, std::uint32_t) { return 1.0F; });
  return image;
}

embedded::Image apertureScene(int side) {
  embedded::Image image = emptyImage(side, side);
  float radius = 0.8F;
  for (const DD::Image::Channel channel :
       {DD::Image::Chan_Red, DD::Image::Chan_Green, DD::Image::Chan_Blue}) {
    addPlane(image, channel,
             [radius](float u, float v, std::uint32_t) { return disc(u, v, radius); });
    radius += 0.1F;
  }
  image.planes[DD::Image::Chan_Alpha] = image.planes[DD::Image::Chan_Blue];
  return image;
}

embedded::Image matteScene(int width, int height) {
  embedded::Image image = emptyImage(width, height);
  addPlane(image, DD::Image::Chan_Red, [](float u, float, std::uint32_t) { return 1.0F - u; });
  addPlane(image, DD::Image::Chan_Green,
           [](float u, float v, std::uint32_t) { return 1.0F - 0.5F * disc(u, v, 0.5F); });
  addPlane(image, DD::Image::Chan_Blue, [](float, float v, std::uint32_t) { return v; });
  return image;
}

void brightenWindow(embedded::Image& image) {
  const int width = image.box.w();
  const int height = image.box.h();
  for (const DD::Image::Channel channel :
       {DD::Image::Chan_Red, DD::Image::Chan_Green, DD::Image::Chan_Blue}) {
    auto plane = std::make_shared<embedded::Plane>(*image.planes[channel]);
    for (int y = 3 * height / 4; y < 3 * height / 4 + height / 6; ++y) {
      for (int x = width / 10; x < width / 5; ++x)
        (*plane)[static_cast<std::size_t>(y * width + x)] *= 100.0F;
    }
    image.planes[channel] = plane;
  }
}

}  // namespace drevin::bench

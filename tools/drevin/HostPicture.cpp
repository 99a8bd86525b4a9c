#include "HostPicture.h"

#include <memory>

#include "HalfFloat.h"

namespace drevintool {
namespace {

using SharedPlane = std::shared_ptr<const embedded::Plane>;

SharedPlane planeOf(const FloatSamples& samples) {
  return samples;
}

SharedPlane planeOf(const HalfSamples& samples) {
  auto plane = std::make_shared<embedded::Plane>();
  plane->reserve(samples->size());
  for (const std::uint16_t bits : *samples)
    plane->push_back(floatFromHalf(bits));
  return plane;
}

SharedPlane planeOf(const UintSamples& samples) {
  auto plane = std::make_shared<embedded::Plane>();
  plane->reserve(samples->size());
  for (const std::uint32_t number : *samples)
    plane->push_back(static_cast<float>(number));
  return plane;
}

}  // namespace

embedded::Image hostImage(const Picture& picture) {
  embedded::Image image;
  image.format = DD::Image::Format(picture.width, picture.height, picture.pixelAspect);
  image.box = hostBox(picture.box);
  for (const PictureChannel& channel : picture.channels) {
    const DD::Image::Channel number = DD::Image::getChannel(channel.hostName.c_str());
    if (number == DD::Image::Chan_Black) continue;
    image.planes[number] =
        std::visit([](const auto& samples) { return planeOf(samples); }, channel.samples);
  }
  return image;
}

void addMissingColours(embedded::Image& image) {
  const auto pixels =
      static_cast<std::size_t>(image.box.w()) * static_cast<std::size_t>(image.box.h());
  for (const DD::Image::Channel colour : DD::Image::ChannelSet(DD::Image::Mask_RGB)) {
    if (image.planes.count(colour) == 0) {
      image.planes[colour] = std::make_shared<embedded::Plane>(pixels);
    }
  }
}

DD::Image::Box hostBox(const PixelBox& box) {
  return {box.x, box.y, box.r, box.t};
}

PixelBox pixelBox(const DD::Image::Box& box) {
  return {box.x(), box.y(), box.r(), box.t()};
}

}  // namespace drevintool

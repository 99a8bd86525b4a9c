#include "node/DeepBench.h"

#include <gtest/gtest.h>

namespace drevin::test {

using DD::Image::ChannelMap;

namespace {

std::vector<float> hostSamples(const LiteralDeepPixel& pixel, const ChannelMap& map) {
  std::vector<float> values;
  for (const LiteralDeepSample& sample : pixel) {
    const std::size_t begin = values.size();
    values.resize(begin + map.size());
    for (const auto& [channel, value] : sample.values) {
      const auto place = static_cast<std::size_t>(map.chanNo(hostChannel(channel)));
      values[begin + place] = value;
    }
  }
  return values;
}

}  // namespace

LiteralDeepSample redSample(float front, float back, float red, float alpha) {
  return {front,
          back,
          {{1, red},
           {2, 0.5F * red},
           {3, 0.25F * red},
           {4, alpha},
           {literalFront, front},
           {literalBack, back}}};
}

LiteralDeepImage evenDeepImage(const LiteralBox& box, const LiteralDeepPixel& pixel) {
  LiteralDeepImage image;
  image.box = box;
  image.channels = {1, 2, 3, 4, literalFront, literalBack};
  const int pixels = (box.right - box.left) * (box.top - box.bottom);
  image.pixels.assign(static_cast<std::size_t>(pixels), pixel);
  return image;
}

LiteralDeepPixel& deepPixelAt(LiteralDeepImage& image, int column, int row) {
  const LiteralBox& box = image.box;
  const int at = (row - box.bottom) * (box.right - box.left) + (column - box.left);
  return image.pixels[static_cast<std::size_t>(at)];
}

std::shared_ptr<embedded::DeepImage> hostDeepImage(const LiteralDeepImage& image, int width,
                                                   int height) {
  const LiteralBox& box = image.box;
  const DD::Image::ChannelSet channels = hostChannels(image.channels);
  auto made = std::make_shared<embedded::DeepImage>(
      DD::Image::Format(width, height), DD::Image::Box(box.left, box.bottom, box.right, box.top),
      channels);
  const ChannelMap map(channels);
  for (int y = box.bottom; y < box.top; ++y) {
    for (int x = box.left; x < box.right; ++x)
      made->setPixel(x, y, hostSamples(image.at(x, y), map));
  }
  return made;
}

OrderGuard::OrderGuard(bool farFirst) : before_(embedded::deepOrder()) {
  embedded::setDeepOrder(farFirst ? embedded::DeepOrder::FarFirst : embedded::DeepOrder::NearFirst);
}

OrderGuard::~OrderGuard() {
  embedded::setDeepOrder(before_);
}

DeepBench::DeepBench(const LiteralDeepScene& scene)
    : deep_(hostDeepImage(scene.deep, scene.flat.image.formatWidth, scene.flat.image.formatHeight)),
      node_(scene.flat) {
  EXPECT_TRUE(node_.connect(dvInput::deep, &deep_));
}

DeepBench::~DeepBench() {
  node_.connect(dvInput::deep, nullptr);
}

float renderedAt(const embedded::Image& image, int channel, int x, int y) {
  const auto plane = image.planes.find(hostChannel(channel));
  if (plane == image.planes.end()) return 0.0F;
  const int at = (y - image.box.y()) * image.box.w() + (x - image.box.x());
  return (*plane->second)[static_cast<std::size_t>(at)];
}

}  // namespace drevin::test

#include "inspect/SmallPictures.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "deep/DeepCompanion.h"
#include "picture/FloatSamples.h"
#include "render/HostPicture.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

int divided(std::size_t length, int stride) {
  const auto step = static_cast<std::size_t>(stride);
  return static_cast<int>((length + step - 1) / step);
}

// The picture's windows 1/n as large, without channels.
Picture smallWindows(const Picture& picture, int stride) {
  Picture small = picture;
  small.channels.clear();
  small.width = std::max(1, picture.width / stride);
  small.height = std::max(1, picture.height / stride);
  small.box.x = picture.box.x / stride;
  small.box.y = picture.box.y / stride;
  small.box.r = small.box.x + divided(picture.box.width(), stride);
  small.box.t = small.box.y + divided(picture.box.height(), stride);
  return small;
}

// Every n-th pixel of a row.
void takePixels(const embedded::DeepRow& row, int y, int stride, std::size_t channels,
                embedded::DeepImage& image) {
  const float* samples = row.values.data();
  const auto step = static_cast<std::size_t>(stride);
  for (std::size_t x = 0; x < row.counts.size(); ++x) {
    const float* end = samples + row.counts[x] * channels;
    const int column = image.box().x() + static_cast<int>(x / step);
    if (x % step == 0) image.setPixel(column, y, std::vector<float>(samples, end));
    samples = end;
  }
}

}  // namespace

int strideFor(std::size_t pixels, std::uint64_t samples) {
  constexpr double kEnoughPixels = 100000.0;
  constexpr double kEnoughSamples = 1e6;
  const double stride = std::max(std::sqrt(static_cast<double>(pixels) / kEnoughPixels),
                                 std::sqrt(static_cast<double>(samples) / kEnoughSamples));
  return std::max(1, static_cast<int>(std::lround(stride)));
}

Picture everyNth(const Picture& picture, int stride) {
  Picture small = smallWindows(picture, stride);
  for (const PictureChannel& channel : picture.channels) {
    small.channels.push_back(
        {channel.fileName, channel.hostName, everyNth(picture, channel, stride)});
  }
  return small;
}

FloatSamples everyNth(const Picture& picture, const PictureChannel& channel, int stride) {
  const FloatSamples all = floatSamples(channel.samples);
  auto some = std::make_shared<std::vector<float>>();
  const auto step = static_cast<std::size_t>(stride);
  for (std::size_t y = 0; y < picture.box.height(); y += step) {
    for (std::size_t x = 0; x < picture.box.width(); x += step)
      some->push_back((*all)[y * picture.box.width() + x]);
  }
  return some;
}

std::shared_ptr<embedded::DeepSource> everyNth(DeepExrSource& deep, int stride) {
  const Picture small = smallWindows(emptyPicture(deep), stride);
  const DD::Image::Format format(small.width, small.height, small.pixelAspect);
  auto image = std::make_shared<embedded::DeepImage>(format, hostBox(small.box), deep.channels());
  embedded::DeepRow row;
  const DD::Image::Box& box = deep.box();
  for (int y = small.box.y; y < small.box.t; ++y) {
    throwIfInterrupted();
    const int from = box.y() + (y - small.box.y) * stride;
    deep.readRow(from, box.x(), box.r(), deep.channels(), row);
    takePixels(row, y, stride, deep.channels().size(), *image);
  }
  return image;
}

}  // namespace drevintool

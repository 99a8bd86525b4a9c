#include "EmbeddedHost/ImageInput.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>

namespace embedded {

using DD::Image::Channel;
using DD::Image::ChannelMask;
using DD::Image::ChannelSet;
using DD::Image::Row;

ImageInput::ImageInput(Image image) : Iop(nullptr), image_(std::move(image)) {
  inputs(0);
  const DD::Image::Box& box = image_.box;
  const std::size_t pixels =
      box.empty() ? 0 : static_cast<std::size_t>(box.w()) * static_cast<std::size_t>(box.h());
  for (const auto& [channel, plane] : image_.planes) {
    if (plane == nullptr || (pixels != 0 && plane->size() != pixels)) {
      throw std::invalid_argument(std::string(DD::Image::getName(channel)) +
                                  ": the plane does not fill the box");
    }
  }
}
ImageInput::~ImageInput() = default;

const char* ImageInput::Class() const {
  return "Image";
}
const char* ImageInput::node_help() const {
  return "A picture in memory";
}

void ImageInput::append(DD::Image::Hash& hash) {
  std::call_once(hashed_, [this] { content_ = contentHash(); });
  hash.append(content_);
}

DD::Image::Hash ImageInput::contentHash() const {
  DD::Image::Hash hash;
  hash.append(image_.format.width());
  hash.append(image_.format.height());
  for (const int edge : {image_.box.x(), image_.box.y(), image_.box.r(), image_.box.t()}) {
    hash.append(edge);
  }
  for (const auto& [channel, plane] : image_.planes) {
    hash.append(DD::Image::getName(channel));
    hash.append(plane->data(), plane->size() * sizeof(float));
  }
  return hash;
}

void ImageInput::_validate(bool /*for_real*/) {
  info_.setFormats(DD::Image::FormatPair(image_.format));
  info_.set(image_.box);
  ChannelSet channels;
  for (const auto& entry : image_.planes)
    channels += entry.first;
  info_.channels(channels);
}

const float* ImageInput::directRow(int y, Channel z) const {
  const auto found = image_.planes.find(z);
  if (found == image_.planes.end()) return nullptr;
  const auto row = static_cast<std::ptrdiff_t>(y) - image_.box.y();
  return found->second->data() + row * image_.box.w() - image_.box.x();
}

void ImageInput::engine(int y, int x, int r, ChannelMask channels, Row& row) {
  row.get(*this, y, x, r, channels);
}

}  // namespace embedded

#include <stdexcept>
#include <string>
#include <utility>

#include "DDImage/Hash.h"
#include "EmbeddedHost/DeepInput.h"

namespace embedded {

using DD::Image::Chan_DeepBack;
using DD::Image::Chan_DeepFront;
using DD::Image::Channel;
using DD::Image::ChannelSet;

DeepSource::~DeepSource() = default;

DeepImage::DeepImage(const DD::Image::Format& format, const DD::Image::Box& box,
                     const ChannelSet& channels)
    : format_(format), box_(box), channels_(channels), map_(channels) {
  if (!channels.contains(Chan_DeepFront) || !channels.contains(Chan_DeepBack)) {
    throw std::invalid_argument("a deep picture needs deep.front and deep.back");
  }
  if (!box.empty()) {
    pixels_.resize(static_cast<std::size_t>(box.w()) * static_cast<std::size_t>(box.h()));
  }
}

void DeepImage::setPixel(int x, int y, std::vector<float> samples) {
  if (x < box_.x() || x >= box_.r() || y < box_.y() || y >= box_.t()) {
    throw std::invalid_argument("pixel " + std::to_string(x) + "," + std::to_string(y) +
                                " is outside the deep picture");
  }
  if (samples.size() % map_.size() != 0) {
    throw std::invalid_argument("a deep sample has one value for each channel");
  }
  sortNearestFirst(samples.data(), samples.size() / map_.size(), map_.size(),
                   static_cast<std::size_t>(map_.chanNo(Chan_DeepFront)),
                   static_cast<std::size_t>(map_.chanNo(Chan_DeepBack)));
  const auto row = static_cast<std::size_t>(y - box_.y());
  const auto column = static_cast<std::size_t>(x - box_.x());
  pixels_[row * static_cast<std::size_t>(box_.w()) + column] = std::move(samples);
}

void DeepImage::readRow(int y, int x, int r, const ChannelSet& channels, DeepRow& row) {
  row.clear();
  std::vector<std::size_t> places;
  for (const Channel z : channels)
    places.push_back(static_cast<std::size_t>(map_.chanNo(z)));
  const auto first = static_cast<std::size_t>(y - box_.y()) * static_cast<std::size_t>(box_.w());
  for (int column = x; column < r; ++column) {
    const std::vector<float>& samples =
        pixels_[first + static_cast<std::size_t>(column - box_.x())];
    row.counts.push_back(static_cast<std::uint32_t>(samples.size() / map_.size()));
    for (std::size_t begin = 0; begin < samples.size(); begin += map_.size()) {
      for (const std::size_t place : places)
        row.values.push_back(samples[begin + place]);
    }
  }
}

void DeepImage::append(DD::Image::Hash& hash) const {
  hash.append(format_.width());
  hash.append(format_.height());
  for (const int edge : {box_.x(), box_.y(), box_.r(), box_.t()})
    hash.append(edge);
  for (const Channel z : channels_)
    hash.append(DD::Image::getName(z));
  for (const std::vector<float>& samples : pixels_) {
    hash.append(static_cast<int>(samples.size()));
    hash.append(samples.data(), samples.size() * sizeof(float));
  }
}

}  // namespace embedded

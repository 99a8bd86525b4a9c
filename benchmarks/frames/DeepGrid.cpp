#include "frames/DeepGrid.h"

#include "DDImage/Hash.h"

namespace drevin::bench {

using DD::Image::Channel;

namespace {

constexpr float spacing = 1.0F;
constexpr float thickness = 1.5F;

}  // namespace

DeepGrid::DeepGrid(const embedded::Image& flat, int samples, bool thick)
    : format_(flat.format),
      box_(flat.box),
      channels_(DD::Image::Mask_RGBA | DD::Image::Mask_Deep),
      samples_(samples) {
  const auto pixels = static_cast<std::size_t>(box_.w()) * static_cast<std::size_t>(box_.h());
  values_.reserve(pixels * static_cast<std::size_t>(samples) * sampleSize);
  for (std::size_t at = 0; at < pixels; ++at) {
    for (int i = 0; i < samples; ++i)
      addSample(flat, at, i, thick);
  }
}

void DeepGrid::addSample(const embedded::Image& flat, std::size_t at, int index, bool thick) {
  const float alpha = index + 1 == samples_ ? 1.0F : 0.5F;
  const float front =
      (*flat.planes.at(DD::Image::Chan_Z))[at] + spacing * static_cast<float>(index);
  for (const Channel z : {DD::Image::Chan_Red, DD::Image::Chan_Green, DD::Image::Chan_Blue})
    values_.push_back(alpha * (*flat.planes.at(z))[at]);
  values_.push_back(alpha);
  values_.push_back(front);
  values_.push_back(thick ? front + thickness : front);
}

const float* DeepGrid::pixel(int x, int y) const {
  const std::size_t at =
      static_cast<std::size_t>(y - box_.y()) * static_cast<std::size_t>(box_.w()) +
      static_cast<std::size_t>(x - box_.x());
  return values_.data() + at * static_cast<std::size_t>(samples_) * sampleSize;
}

void DeepGrid::readRow(int y, int x, int r, const DD::Image::ChannelSet& channels,
                       embedded::DeepRow& row) {
  row.counts.assign(static_cast<std::size_t>(r - x), static_cast<std::uint32_t>(samples_));
  std::vector<std::size_t> places;
  std::size_t place = 0;
  foreach (z, channels_) {
    if (channels.contains(z)) places.push_back(place);
    ++place;
  }
  const auto samples = static_cast<std::size_t>(r - x) * static_cast<std::size_t>(samples_);
  row.values.resize(samples * places.size());
  const float* from = pixel(x, y);
  float* to = row.values.data();
  for (std::size_t i = 0; i < samples; ++i, from += sampleSize) {
    for (const std::size_t wanted : places)
      *to++ = from[wanted];
  }
}

void DeepGrid::append(DD::Image::Hash& hash) const {
  hash.append(samples_);
}

}  // namespace drevin::bench

#pragma once

/// The samples of one deep pixel.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "DDImage/ChannelMap.h"

namespace DD {
namespace Image {

/// A view of samples that lie one after the other, each with one float for every channel of the map
/// in the map's order. Neither the map nor the data is copied: both must outlive the pixel.
class DD_EXPORT DeepPixel {
 public:
  /// How the samples are stored: anyhow, nearest first, or farthest first.
  enum Ordering { eUnordered, eZAscending, eZDescending };

  /// `dataCount` is the number of floats.
  DeepPixel(const ChannelMap& channels, const float* data, std::size_t dataCount,
            Ordering ordering);

  const ChannelMap& channels() const { return *channels_; }
  Ordering ordering() const { return ordering_; }
  std::size_t getSampleCount() const { return count_; }
  std::size_t getDataCount() const { return dataCount_; }
  const float* data() const { return data_; }

  /// The values of a sample as stored.
  const float* getUnorderedSample(std::size_t i) const { return data_ + i * channels_->size(); }
  /// One value of a sample as stored; 0 for a channel that the samples do not have.
  const float& getUnorderedSample(std::size_t i, Channel z) const {
    const int place = channels_->chanNo(z);
    return place < 0 ? noValue : getUnorderedSample(i)[place];
  }
  /// One value of a sample by its place in the host's depth order; 0 for a channel that the samples
  /// do not have. Which end of that order is the nearest is the host's definition: see
  /// embedded::DeepOrder. Samples stored in an order are believed, and read from one end or the
  /// other; unordered ones are sorted by front, then back; ties stay as stored. A NaN depth is
  /// infinitely far.
  const float& getOrderedSample(std::size_t depthIndex, Channel z) const {
    return getUnorderedSample(stored(depthIndex), z);
  }

 private:
  static constexpr float noValue = 0.0F;

  std::size_t stored(std::size_t depthIndex) const {
    if (!sorted_.empty()) return sorted_[depthIndex];
    return reversed_ ? count_ - 1 - depthIndex : depthIndex;
  }

  const ChannelMap* channels_;
  const float* data_;
  std::size_t dataCount_;
  std::size_t count_;
  Ordering ordering_;
  bool reversed_ = false;              ///< the host's order is the reverse of the stored one
  std::vector<std::uint32_t> sorted_;  ///< of unordered samples, in the host's order
};

/// A growing list of sample values, in the channel order of the pixel that is made of it.
class DD_EXPORT DeepOutPixel {
 public:
  void push_back(float value) { values_.push_back(value); }
  void reserve(std::size_t values) { values_.reserve(values); }
  std::size_t size() const { return values_.size(); }
  bool empty() const { return values_.empty(); }
  void clear() { values_.clear(); }
  const float* data() const { return values_.data(); }
  const float& operator[](std::size_t i) const { return values_[i]; }

  /// A view of the list, which must not grow while the view is used.
  DeepPixel getPixel(const ChannelMap& channels, DeepPixel::Ordering ordering) const {
    return {channels, values_.data(), values_.size(), ordering};
  }

 private:
  std::vector<float> values_;
};

}  // namespace Image
}  // namespace DD

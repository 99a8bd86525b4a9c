#pragma once

/// The channels of deep samples and the place of each among a sample's values.

#include <array>
#include <cstddef>
#include <cstdint>

#include "DDImage/ChannelSet.h"

namespace DD {
namespace Image {

/// Channels in ascending order of their numbers, numbered from 0.
class DD_EXPORT ChannelMap {
 public:
  ChannelMap() : ChannelMap(ChannelSet()) {}
  ChannelMap(const ChannelSet& channels);  // NOLINT(google-explicit-constructor)

  operator const ChannelSet&() const { return channels_; }  // NOLINT(google-explicit-constructor)

  bool contains(Channel z) const { return channels_.contains(z); }
  bool containsAll(const ChannelSet& channels) const { return channels_.contains(channels); }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  /// The place of a channel of the map; -1 for any other.
  int chanNo(Channel z) const { return places_[static_cast<std::size_t>(z)]; }

 private:
  ChannelSet channels_;
  std::size_t size_ = 0;
  std::array<std::int16_t, Chan_Last + 1> places_;
};

}  // namespace Image
}  // namespace DD

#pragma once

/// Where a channel's value stands among those of a deep sample.

#include <cstddef>

#include "DDImage/ChannelMap.h"

namespace drevintool {

/// The place in samples of those channels; the channel must be one of them.
inline std::size_t placeOf(const DD::Image::ChannelMap& channels, DD::Image::Channel channel) {
  return static_cast<std::size_t>(channels.chanNo(channel));
}

}  // namespace drevintool

#include "DDImage/ChannelMap.h"

namespace DD {
namespace Image {

ChannelMap::ChannelMap(const ChannelSet& channels) : channels_(channels) {
  places_.fill(-1);
  for (const Channel z : channels_)
    places_[static_cast<std::size_t>(z)] = static_cast<std::int16_t>(size_++);
}

}  // namespace Image
}  // namespace DD

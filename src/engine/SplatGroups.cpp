#include "engine/SplatGroups.h"

#include <cstring>

namespace drevin {

namespace {

bool sameKernels(const dvKernelBank& bank, int a, int b) {
  for (const dvChannelFloatBuffer& entry : bank) {
    const float* planes[] = {entry.plane(a), entry.plane(b)};
    if (planes[0] == planes[1]) continue;
    const auto bytes = static_cast<std::size_t>(entry.count) * sizeof(float);
    if (std::memcmp(planes[0], planes[1], bytes) != 0) return false;
  }
  return true;
}

}  // namespace

std::vector<dvSplatGroup> splatGroups(const dvKernelBank& bank,
                                      const dvChromaticAberration& aberration,
                                      const std::vector<int>& channels) {
  std::vector<dvSplatGroup> groups;
  for (std::size_t place = 0; place < channels.size(); ++place) {
    const float shift = channelShift(aberration, channels[place]);
    dvSplatGroup* alike = nullptr;
    for (dvSplatGroup& group : groups) {
      const int first = channels[group.places.front()];
      if (group.shift == shift && sameKernels(bank, first, channels[place])) alike = &group;
    }
    if (alike != nullptr) {
      alike->places.push_back(place);
    } else {
      groups.push_back(
          {{place}, shift, std::make_shared<const dvKernelTable>(bank, channels[place])});
    }
  }
  return groups;
}

}  // namespace drevin

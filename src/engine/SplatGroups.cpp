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
                                      const std::vector<int>& channels, dvParallel& parallel) {
  std::vector<dvSplatGroup> groups;
  for (std::size_t place = 0; place < channels.size(); ++place) {
    const float shift = channelShift(aberration, channels[place]);
    dvSplatGroup* alike = nullptr;
    std::shared_ptr<const dvKernelTable> kernels;
    for (dvSplatGroup& group : groups) {
      if (!sameKernels(bank, channels[group.places.front()], channels[place])) continue;
      kernels = group.kernels;
      if (group.shift == shift) alike = &group;
    }
    if (alike != nullptr) {
      alike->places.push_back(place);
      continue;
    }
    if (kernels == nullptr) {
      kernels = std::make_shared<const dvKernelTable>(bank, channels[place], parallel);
    }
    groups.push_back({{place}, shift, kernels});
  }
  return groups;
}

}  // namespace drevin

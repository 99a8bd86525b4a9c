#include "kernel/KernelImage.h"

#include <algorithm>
#include <cstddef>

namespace drevin {

void dvChannelFloatBuffer::resize(int side, const std::vector<int>& planes) {
  width = height = std::max(side, 0);
  centre = width == 1 ? 0 : width / 2;
  count = static_cast<std::int64_t>(width) * height;
  channels.assign(dvChannelCount, {});
  for (const int channel : planes) {
    if (channel >= 0 && channel < dvChannelCount) {
      channels[static_cast<std::size_t>(channel)].assign(static_cast<std::size_t>(count), 0.0F);
    }
  }
}

void dvChannelFloatBuffer::clear() {
  width = height = centre = 0;
  count = 0;
  channels.clear();
}

const float* dvChannelFloatBuffer::plane(int channel) const {
  if (channel < 0 || static_cast<std::size_t>(channel) >= channels.size()) {
    return nullptr;
  }
  const std::vector<float>& values = channels[static_cast<std::size_t>(channel)];
  return values.empty() ? nullptr : values.data();
}

float* dvChannelFloatBuffer::plane(int channel) {
  return const_cast<float*>(static_cast<const dvChannelFloatBuffer*>(this)->plane(channel));
}

}  // namespace drevin

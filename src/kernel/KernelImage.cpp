#include "kernel/KernelImage.h"

#include <algorithm>
#include <cstddef>

namespace drevin {

void dvKernelPlane::assign(std::size_t count, float value) {
  values_ = std::make_shared<std::vector<float>>(count, value);
}

const std::vector<float>& dvKernelPlane::values() const {
  static const std::vector<float> none;
  return values_ == nullptr ? none : *values_;
}

std::vector<float>& dvKernelPlane::own() {
  if (values_ == nullptr || values_.use_count() > 1) {
    values_ = std::make_shared<std::vector<float>>(values());
  }
  return *values_;
}

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
  const dvKernelPlane& plane = channels[static_cast<std::size_t>(channel)];
  return plane.empty() ? nullptr : plane.data();
}

float* dvChannelFloatBuffer::plane(int channel) {
  const dvChannelFloatBuffer& read = *this;
  return read.plane(channel) == nullptr ? nullptr
                                        : channels[static_cast<std::size_t>(channel)].data();
}

void dvChannelFloatBuffer::share(int channel, int from) {
  channels[static_cast<std::size_t>(channel)] = channels[static_cast<std::size_t>(from)];
}

}  // namespace drevin

#include "kernel/HeroKernel.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace drevin {
namespace {

using Cancelled = std::function<bool()>;

// Calls fill(row, values) for each row of a plane, until cancelled.
template <typename Fill>
void fillRows(float* plane, int side, const Cancelled& cancelled, const Fill& fill) {
  for (int row = 0; row < side && !(cancelled && cancelled()); ++row, plane += side)
    fill(row, plane);
}

// A procedural shape is the same in every channel: it is drawn once and shared.
void drawShape(dvChannelFloatBuffer& hero, const dvApertureShape& shape,
               const std::vector<int>& channels, const Cancelled& cancelled) {
  const float gain = softnessGain(shape.softness);
  const float half = 0.5F * static_cast<float>(hero.width);
  fillRows(hero.plane(channels.front()), hero.width, cancelled, [&](int row, float* values) {
    for (int column = 0; column < hero.width; ++column)
      values[column] = apertureValue(shape, gain, half, half * half, column, row);
  });
  for (const int channel : channels) {
    hero.share(channel, channels.front());
  }
}

// Shares the plane of one of the channels in [first, last) that has the same bits.
void shareEqualPlane(dvChannelFloatBuffer& hero, int channel, const int* first, const int* last) {
  const dvChannelFloatBuffer& read = hero;
  const auto bytes = static_cast<std::size_t>(hero.count) * sizeof(float);
  const int* equal = std::find_if(first, last, [&](int other) {
    return std::memcmp(read.plane(other), read.plane(channel), bytes) == 0;
  });
  if (equal != last) hero.share(channel, *equal);
}

// The colours of a grey aperture image are equal, and what is equal is resampled only once.
void drawInput(dvChannelFloatBuffer& hero, const dvKernelSampling& sampling,
               const std::vector<int>& channels, const dvKernelInput& input,
               const Cancelled& cancelled) {
  for (const int& channel : channels) {
    dvInputKernelRows rows(input, sampling, hero.width, inputKernelChannel(input, channel));
    fillRows(hero.plane(channel), hero.width, cancelled,
             [&](int row, float* values) { rows.sample(row, values); });
    shareEqualPlane(hero, channel, channels.data(), &channel);
  }
}

// Pixels in [from, to), also where the ends are further apart than an int can say.
int extent(int from, int to) {
  const std::int64_t pixels = static_cast<std::int64_t>(to) - from;
  return static_cast<int>(std::clamp<std::int64_t>(pixels, 0, std::numeric_limits<int>::max()));
}

}  // namespace

dvHeroSizing sizeHeroKernel(const dvHeroRequest& request) {
  const int wanted = request.sizeToFormat ? std::min(request.formatHeight, request.formatWidth)
                                          : request.maxKernelSize;
  dvHeroSizing sizing;
  sizing.side = std::max(wanted, 0);
  if (request.type != dvKernelType::Input || !request.kernelInput || wanted < 1) {
    return sizing;
  }
  const dvKernelBox& box = *request.kernelInput;
  dvKernelSampling& sampling = sizing.sampling;
  sampling.left = box.left;
  sampling.bottom = box.bottom;
  sampling.width = extent(box.left, box.right);
  sampling.height = extent(box.bottom, box.top);
  sampling.scaleX = static_cast<float>(sampling.width) / static_cast<float>(wanted);
  sampling.scaleY = static_cast<float>(sampling.height) / static_cast<float>(wanted);
  sizing.side = std::min({wanted, sampling.height, sampling.width});
  return sizing;
}

void makeHeroKernel(dvChannelFloatBuffer& hero, const dvApertureShape& shape,
                    const dvHeroSizing& sizing, const std::vector<int>& channels,
                    const dvKernelInput& input, const std::function<bool()>& cancelled) {
  hero.resize(sizing.side, channels);
  std::vector<int> drawn;
  for (const int channel : channels) {
    if (hero.plane(channel) != nullptr) drawn.push_back(channel);
  }
  if (drawn.empty()) return;
  if (shape.type == dvKernelType::Input) {
    drawInput(hero, sizing.sampling, drawn, input, cancelled);
  } else {
    drawShape(hero, shape, drawn, cancelled);
  }
}

}  // namespace drevin

#include "kernel/KernelBank.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "kernel/CatmullRom.h"

namespace drevin {
namespace {

// Where the pixels of one output axis fall on the hero.
struct AxisPlace {
  int base;        // hero index left of (below) the place
  float fraction;  // from the base to the next index
};

std::vector<AxisPlace> axisPlaces(int size, int heroSize) {
  const float scale = static_cast<float>(heroSize) / static_cast<float>(size);
  std::vector<AxisPlace> places(static_cast<std::size_t>(size));
  for (int i = 0; i < size; ++i) {
    const int base = static_cast<int>((static_cast<double>(i) + 0.5) * static_cast<double>(scale));
    const float place = (static_cast<float>(i) + 0.5F) * scale;
    places[static_cast<std::size_t>(i)] = {base, place - static_cast<float>(base)};
  }
  return places;
}

bool isBlank(const AxisPlace& place, int heroSize) {
  return place.base < 1 || place.base >= heroSize;
}

// Interpolates every hero column at one height: each serves up to four output pixels.
void interpolateColumns(const float* plane, int width, int height, const AxisPlace& place,
                        float* columns) {
  const auto row = [&](int index) {
    return plane + static_cast<std::ptrdiff_t>(std::clamp(index, 0, height - 1)) * width;
  };
  const float* below = row(place.base - 1);
  const float* base = row(place.base);
  const float* above = row(place.base + 1);
  const float* last = row(place.base + 2);
  for (int i = 0; i < width; ++i) {
    columns[i] = catmullRom(below[i], base[i], above[i], last[i], place.fraction);
  }
}

float interpolateAcross(const float* columns, int width, const AxisPlace& place) {
  const auto at = [&](int index) { return columns[std::clamp(index, 0, width - 1)]; };
  return catmullRom(at(place.base - 1), at(place.base), at(place.base + 1), at(place.base + 2),
                    place.fraction);
}

// In double: a float sum of a large kernel is off by more than the accuracy of a picture.
float planeSum(const float* plane, std::int64_t count) {
  double sum = 0.0;
  for (std::int64_t i = 0; i < count; ++i) {
    sum += static_cast<double>(plane[i]);
  }
  return static_cast<float>(sum);
}

// Scales the channels of positive sum by the reciprocal of the largest sum.
void normalise(dvChannelFloatBuffer& kernel, const std::vector<int>& channels,
               const std::vector<float>& sums) {
  float largest = 0.0F;
  for (const float sum : sums) {
    largest = sum > largest ? sum : largest;
  }
  if (!(largest > 0.0F)) {
    return;
  }
  const float factor = 1.0F / largest;
  for (std::size_t i = 0; i < channels.size(); ++i) {
    if (sums[i] > 0.0F) {
      float* plane = kernel.plane(channels[i]);
      std::transform(plane, plane + kernel.count, plane, [=](float v) { return v * factor; });
    }
  }
}

}  // namespace

int kernelSide(int index) {
  return std::max(index % 2 == 0 ? index - 1 : index, 1);
}

int bankSize(int kernelSize) {
  constexpr int spare = 5;
  if (kernelSize > std::numeric_limits<int>::max() - spare) {
    return std::numeric_limits<int>::max();
  }
  return std::max(kernelSize + spare, 0);
}

void buildKernel(dvChannelFloatBuffer& kernel, int size, const dvChannelFloatBuffer& hero,
                 int channel) {
  float* plane = kernel.plane(channel);
  const float* source = hero.plane(channel);
  if (size < 1 || plane == nullptr || source == nullptr) {
    return;
  }
  const std::vector<AxisPlace> rows = axisPlaces(size, hero.height);
  const std::vector<AxisPlace> columns = axisPlaces(size, hero.width);
  std::vector<float> interpolated(static_cast<std::size_t>(hero.width));
  for (int r = 0; r < size; ++r) {
    float* out = plane + static_cast<std::ptrdiff_t>(r) * kernel.width;
    const AxisPlace& row = rows[static_cast<std::size_t>(r)];
    if (isBlank(row, hero.height)) {
      std::fill_n(out, size, 0.0F);
      continue;
    }
    interpolateColumns(source, hero.width, hero.height, row, interpolated.data());
    for (const AxisPlace& column : columns) {
      *out++ = isBlank(column, hero.width)
                   ? 0.0F
                   : interpolateAcross(interpolated.data(), hero.width, column);
    }
  }
}

void initializeBankEntry(dvChannelFloatBuffer& entry, int index, const dvChannelFloatBuffer& hero,
                         const std::vector<int>& channels) {
  const int side = kernelSide(index);
  entry.resize(side, channels);
  std::vector<float> sums;
  sums.reserve(channels.size());
  for (const int channel : channels) {
    buildKernel(entry, side, hero, channel);
    const float* plane = entry.plane(channel);
    sums.push_back(plane == nullptr ? 0.0F : planeSum(plane, entry.count));
  }
  normalise(entry, channels, sums);
}

}  // namespace drevin

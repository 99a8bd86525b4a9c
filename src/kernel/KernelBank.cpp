#include "kernel/KernelBank.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "kernel/CatmullRom.h"

namespace drevin {
namespace {

// Where the pixels of one output axis fall on the hero.
struct AxisPlaces {
  std::vector<int> base;        // hero index left of (below) the place
  std::vector<float> fraction;  // from the base to the next index
  int first = 0;                // places outside [first, end) are blank
  int end = 0;
};

AxisPlaces axisPlaces(int size, int heroSize) {
  const float scale = static_cast<float>(heroSize) / static_cast<float>(size);
  AxisPlaces places;
  for (int i = 0; i < size; ++i) {
    const int base = static_cast<int>((static_cast<double>(i) + 0.5) * static_cast<double>(scale));
    const float place = (static_cast<float>(i) + 0.5F) * scale;
    places.base.push_back(base);
    places.fraction.push_back(place - static_cast<float>(base));
  }
  // Bases never descend.
  const auto indexOf = [&](int base) {
    const auto found = std::lower_bound(places.base.begin(), places.base.end(), base);
    return static_cast<int>(found - places.base.begin());
  };
  places.first = indexOf(1);
  places.end = indexOf(heroSize);
  return places;
}

// How many repeated edge pixels stand before and after a row, so that no read needs a limit.
constexpr int edgesBefore = 1;
constexpr int edgesAfter = 2;

// Interpolates every hero column at one height, from its base and fraction: each serves up to four
// output pixels. `columns` has room for the edges.
void interpolateColumns(const dvChannelFloatBuffer& hero, const float* plane, int base,
                        float fraction, float* columns) {
  const auto row = [&](int index) {
    const int nearest = std::clamp(index, 0, hero.height - 1);
    return plane + static_cast<std::ptrdiff_t>(nearest) * hero.width;
  };
  const float* below = row(base - 1);
  const float* middle = row(base);
  const float* above = row(base + 1);
  const float* last = row(base + 2);
  float* out = columns + edgesBefore;
  for (int i = 0; i < hero.width; ++i) {
    out[i] = catmullRom(below[i], middle[i], above[i], last[i], fraction);
  }
  std::fill_n(columns, edgesBefore, out[0]);
  std::fill_n(out + hero.width, edgesAfter, out[hero.width - 1]);
}

void interpolateAcross(const float* columns, const AxisPlaces& places, float* out) {
  const int* base = places.base.data();
  const float* fraction = places.fraction.data();
  std::fill(out, out + places.first, 0.0F);
  std::fill(out + places.end, out + places.base.size(), 0.0F);
  for (int i = places.first; i < places.end; ++i) {
    const float* p = columns + edgesBefore + base[i];
    out[i] = catmullRom(p[-1], p[0], p[1], p[2], fraction[i]);
  }
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

// For each channel the first whose plane of the hero it shares; itself where there is none.
std::vector<int> modelsOf(const dvChannelFloatBuffer& hero, const std::vector<int>& channels) {
  std::vector<int> models;
  for (std::size_t i = 0; i < channels.size(); ++i) {
    const float* plane = hero.plane(channels[i]);
    const auto isModel = [&](int channel) {
      return plane != nullptr && hero.plane(channel) == plane;
    };
    const auto own = channels.begin() + static_cast<std::ptrdiff_t>(i);
    models.push_back(*std::find_if(channels.begin(), own, isModel));
  }
  return models;
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
  const AxisPlaces places = axisPlaces(size, hero.width);
  std::vector<float> columns(static_cast<std::size_t>(edgesBefore + hero.width + edgesAfter));
  for (int r = 0; r < size; ++r, plane += size) {
    const auto row = static_cast<std::size_t>(r);
    if (r < places.first || r >= places.end) {
      std::fill_n(plane, size, 0.0F);
      continue;
    }
    interpolateColumns(hero, source, places.base[row], places.fraction[row], columns.data());
    interpolateAcross(columns.data(), places, plane);
  }
}

void initializeBankEntry(dvChannelFloatBuffer& entry, int index, const dvChannelFloatBuffer& hero,
                         const std::vector<int>& channels) {
  const int side = kernelSide(index);
  const std::vector<int> models = modelsOf(hero, channels);
  std::vector<int> own;
  for (std::size_t i = 0; i < channels.size(); ++i) {
    if (models[i] == channels[i]) own.push_back(channels[i]);
  }
  entry.resize(side, own);
  std::vector<float> sums;
  sums.reserve(own.size());
  for (const int channel : own) {
    buildKernel(entry, side, hero, channel);
    const float* plane = entry.plane(channel);
    sums.push_back(plane == nullptr ? 0.0F : planeSum(plane, entry.count));
  }
  normalise(entry, own, sums);
  for (std::size_t i = 0; i < channels.size(); ++i) {
    if (models[i] != channels[i]) entry.share(channels[i], models[i]);
  }
}

}  // namespace drevin

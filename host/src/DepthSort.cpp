#include "DepthSort.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>
#include <vector>

#include "EmbeddedHost/DeepInput.h"

namespace embedded {

namespace {

float placeOf(float depth) {
  return std::isnan(depth) ? std::numeric_limits<float>::infinity() : depth;
}

}  // namespace

bool isNearer(const DepthRange& a, const DepthRange& b) {
  const float frontA = placeOf(a.front);
  const float frontB = placeOf(b.front);
  if (frontA != frontB) return frontA < frontB;
  return placeOf(a.back) < placeOf(b.back);
}

void sortNearestFirst(float* values, std::size_t count, std::size_t channels,
                      std::size_t frontPlace, std::size_t backPlace) {
  const auto range = [&](std::size_t sample) {
    const float* at = values + sample * channels;
    return DepthRange{at[frontPlace], at[backPlace]};
  };
  bool sorted = true;
  for (std::size_t i = 1; i < count && sorted; ++i)
    sorted = !isNearer(range(i), range(i - 1));
  if (sorted) return;
  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return isNearer(range(a), range(b)); });
  const std::vector<float> unsorted(values, values + count * channels);
  for (std::size_t i = 0; i < count; ++i)
    std::copy_n(unsorted.data() + order[i] * channels, channels, values + i * channels);
}

}  // namespace embedded

#include "defocus/CorrectiveSlices.h"

#include <algorithm>
#include <cstddef>

namespace drevin {

dvSliceVolume focusSliceVolume(float focusNear, float focusFar) {
  return {std::max(0.0F, focusNear), focusFar};
}

dvSliceVolume customSliceVolume(float first, float second) {
  return {std::min(first, second), std::max(first, second)};
}

std::vector<float> sliceStarts(int slices, float focalPlane, const dvSliceVolume& volume) {
  if (slices <= 1) return {};
  if (slices == 2) return {0.0F, focalPlane};
  std::vector<float> starts{0.0F};
  starts.reserve(static_cast<std::size_t>(slices));
  const float step = (volume.far - volume.near) / static_cast<float>(slices);
  for (int i = 1; i < slices; ++i)
    starts.push_back(volume.near + static_cast<float>(i) * step);
  return starts;
}

std::uint64_t sliceIndex(float depth, int slices, const std::vector<float>& starts) {
  if (slices == 1) return 0;
  // Written out because a custom volume below 0 gives starts that do not ascend; the bisection is
  // defined for them all the same.
  std::size_t first = 0;
  std::size_t length = starts.size();
  while (length > 0) {
    const std::size_t half = length / 2;
    if (depth < starts[first + half]) {
      length = half;
    } else {
      first += half + 1;
      length -= half + 1;
    }
  }
  return static_cast<std::uint64_t>(first) - 1;
}

}  // namespace drevin

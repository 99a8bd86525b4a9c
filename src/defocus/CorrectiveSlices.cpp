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

}  // namespace drevin

#pragma once

/// Corrective slices: the depth layers that keep near and far from bleeding into one another.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace drevin {

/// The slice of a depth that lies in no slice.
constexpr std::uint64_t dvNoSlice = ~std::uint64_t{0};

/// The depths that the slices divide, scene units.
struct dvSliceVolume {
  float near = 0.0F;
  float far = 0.0F;
};

/// From the focus region, the near end not in front of depth 0.
dvSliceVolume focusSliceVolume(float focusNear, float focusFar);
/// From the artist's two values, in either order.
dvSliceVolume customSliceVolume(float first, float second);

/// Start depths of the slices. 1 or fewer: empty. 2: 0 and the focal plane. n > 2: 0, then
/// near + i * (far - near) / n for i = 1 ... n - 1 (the first slice starts at 0, not at near).
std::vector<float> sliceStarts(int slices, float focalPlane, const dvSliceVolume& volume);

/// Slice of a normalised depth: 0 when there is one slice, else the last start that is not greater,
/// found by bisection. A depth before the first start, or an empty list, gives dvNoSlice; a NaN
/// depth the last slice.
inline std::uint64_t sliceIndex(float depth, int slices, const std::vector<float>& starts) {
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

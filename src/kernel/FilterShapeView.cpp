#include "kernel/FilterShapeView.h"

#include <algorithm>
#include <cstddef>

namespace drevin {

void filterShapeRow(const dvChannelFloatBuffer& hero, int channel, int y, int x, int r,
                    float* out) {
  if (x >= r) {
    return;
  }
  std::fill(out + x, out + r, 0.0F);
  const float* plane = hero.plane(channel);
  const int left = std::max(x, 0);
  const int right = std::min(r, hero.width);
  if (plane == nullptr || y < 0 || y >= hero.height || left >= right) {
    return;
  }
  const float* row = plane + static_cast<std::ptrdiff_t>(y) * hero.width;
  std::copy(row + left, row + right, out + left);
}

}  // namespace drevin

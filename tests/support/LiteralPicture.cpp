#include "support/LiteralPicture.h"

#include <algorithm>
#include <cstddef>

namespace drevin::test {

float LiteralPicture::at(int column, int row, int channel) const {
  const auto plane = planes.find(channel);
  if (plane == planes.end() || box.right <= box.left || box.top <= box.bottom) {
    return 0.0F;
  }
  const int c = std::clamp(column, box.left, box.right - 1) - box.left;
  const int r = std::clamp(row, box.bottom, box.top - 1) - box.bottom;
  return plane
      ->second[static_cast<std::size_t>(r) * static_cast<std::size_t>(box.right - box.left) +
               static_cast<std::size_t>(c)];
}

}  // namespace drevin::test

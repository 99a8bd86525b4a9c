#include "frames/PictureDifference.h"

#include <algorithm>

#include "support/Agreement.h"

namespace drevin::bench {

double differenceOf(const embedded::Image& part, const embedded::Image& whole) {
  double worst = 0.0;
  for (const auto& [channel, plane] : part.planes) {
    const embedded::Plane& other = *whole.planes.at(channel);
    for (int y = part.box.y(); y < part.box.t(); ++y) {
      const float* row =
          plane->data() + static_cast<std::ptrdiff_t>(y - part.box.y()) * part.box.w();
      const float* wholeRow = other.data() +
                              static_cast<std::ptrdiff_t>(y - whole.box.y()) * whole.box.w() +
                              (part.box.x() - whole.box.x());
      for (int x = 0; x < part.box.w(); ++x)
        worst = std::max(worst, test::differenceInParts(row[x], static_cast<double>(wholeRow[x])));
    }
  }
  return worst;
}

}  // namespace drevin::bench

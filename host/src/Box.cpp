#include "DDImage/Box.h"

#include <algorithm>

namespace DD {
namespace Image {

void Box::merge(const Box& other) {
  if (other.empty()) return;
  if (empty()) {
    *this = other;
    return;
  }
  *this = Box(std::min(x_, other.x_), std::min(y_, other.y_), std::max(r_, other.r_),
              std::max(t_, other.t_));
}

void Box::intersect(const Box& other) {
  *this = Box(std::max(x_, other.x_), std::max(y_, other.y_), std::min(r_, other.r_),
              std::min(t_, other.t_));
  if (empty()) clear();
}

}  // namespace Image
}  // namespace DD

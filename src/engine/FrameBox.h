#pragma once

/// A rectangle of output pixels and pictures of it.

#include <algorithm>
#include <cstddef>
#include <vector>

#include "engine/LargeMemory.h"
#include "engine/Parallel.h"

namespace drevin {

/// Columns [left, right) and rows [bottom, top).
struct dvFrameBox {
  int left = 0;
  int bottom = 0;
  int right = 0;
  int top = 0;

  int width() const { return right > left ? right - left : 0; }
  int height() const { return top > bottom ? top - bottom : 0; }
  bool empty() const { return width() == 0 || height() == 0; }
};

/// Columns [begin, end) of a row, counted from its first.
struct dvColumnSpan {
  int begin = 0;
  int end = 0;

  bool empty() const { return begin >= end; }
};

/// The least span that holds both.
inline dvColumnSpan together(const dvColumnSpan& a, const dvColumnSpan& b) {
  if (a.empty()) return b;
  if (b.empty()) return a;
  return {a.begin < b.begin ? a.begin : b.begin, a.end > b.end ? a.end : b.end};
}

/// One value for each pixel of a box, 0 at first.
template <typename Value>
class dvFramePlane {
 public:
  dvFramePlane() = default;
  explicit dvFramePlane(const dvFrameBox& box)
      : box_(box),
        values_(static_cast<std::size_t>(box.width()) * static_cast<std::size_t>(box.height())) {
    clearRows(0, box.height());
  }
  /// As above, by many threads. After an abort the values are undefined.
  dvFramePlane(const dvFrameBox& box, dvParallel& parallel)
      : box_(box),
        values_(static_cast<std::size_t>(box.width()) * static_cast<std::size_t>(box.height())) {
    constexpr int rows = 64;
    parallel.forEach((box.height() + rows - 1) / rows, [&](int /*worker*/, int item) {
      clearRows(item * rows, std::min(item * rows + rows, box_.height()));
    });
  }

  const dvFrameBox& box() const { return box_; }
  /// Row y of the box; its first value is that of column box().left.
  Value* row(int y) { return values_.data() + offset(y); }
  const Value* row(int y) const { return values_.data() + offset(y); }

 private:
  void clearRows(int begin, int end) {
    const std::ptrdiff_t width = box_.width();
    std::fill(values_.begin() + begin * width, values_.begin() + end * width, Value{});
  }
  std::ptrdiff_t offset(int y) const {
    return static_cast<std::ptrdiff_t>(y - box_.bottom) * box_.width();
  }

  dvFrameBox box_;
  std::vector<Value, dvUnfilledAllocator<Value>> values_;
};

}  // namespace drevin

#pragma once

/// A rectangle of pixels: columns x to r - 1 and rows y to t - 1, row 0 at the bottom.

#include "DDImage/Export.h"

namespace DD {
namespace Image {

class DD_EXPORT Box {
 public:
  Box() = default;
  Box(int x, int y, int r, int t) : x_(x), y_(y), r_(r), t_(t) {}

  int x() const { return x_; }
  int y() const { return y_; }
  int r() const { return r_; }
  int t() const { return t_; }
  int w() const { return r_ - x_; }
  int h() const { return t_ - y_; }
  void x(int v) { x_ = v; }
  void y(int v) { y_ = v; }
  void r(int v) { r_ = v; }
  void t(int v) { t_ = v; }
  void w(int v) { r_ = x_ + v; }
  void h(int v) { t_ = y_ + v; }

  void set(int x, int y, int r, int t) { *this = Box(x, y, r, t); }
  void set(const Box& box) { *this = box; }
  void clear() { *this = Box(); }

  /// The column of the box nearest to `x`; the box must not be empty.
  int clampx(int x) const { return x < x_ ? x_ : (x >= r_ ? r_ - 1 : x); }
  /// The row of the box nearest to `y`; the box must not be empty.
  int clampy(int y) const { return y < y_ ? y_ : (y >= t_ ? t_ - 1 : y); }

  /// The smallest box around both; an empty box adds nothing.
  void merge(const Box& other);
  void merge(int x, int y, int r, int t) { merge(Box(x, y, r, t)); }
  /// What both have in common; the empty default box if there is nothing.
  void intersect(const Box& other);
  void intersect(int x, int y, int r, int t) { intersect(Box(x, y, r, t)); }
  /// Moves every edge outwards by `n` pixels.
  void expand(int n) { *this = Box(x_ - n, y_ - n, r_ + n, t_ + n); }
  bool contains(const Box& other) const {
    return other.x_ >= x_ && other.y_ >= y_ && other.r_ <= r_ && other.t_ <= t_;
  }

  bool operator==(const Box& o) const {
    return x_ == o.x_ && y_ == o.y_ && r_ == o.r_ && t_ == o.t_;
  }
  bool operator!=(const Box& other) const { return !(*this == other); }

  // embedded host
  bool empty() const { return r_ <= x_ || t_ <= y_; }

 private:
  int x_ = 0;
  int y_ = 0;
  int r_ = 0;
  int t_ = 0;
};

}  // namespace Image
}  // namespace DD

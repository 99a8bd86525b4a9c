#pragma once

/// Where a picture has pixels, and in which frame.

#include "DDImage/Box.h"
#include "DDImage/Format.h"

namespace DD {
namespace Image {

/// A bounding box together with its formats. The box may be smaller or larger than the format.
class DD_EXPORT Info2D : public Box {
 public:
  const Format& format() const { return *formats_.format(); }
  void format(const Format& format) { formats_ = FormatPair(format, full_size_format()); }
  const Format& full_size_format() const { return *formats_.fullSizeFormat(); }
  void full_size_format(const Format& full) { formats_ = FormatPair(format(), full); }
  const FormatPair& formats() const { return formats_; }
  void setFormats(const FormatPair& formats) { formats_ = formats; }

  using Box::set;
  /// Adds each amount to the edge x, y, r and t.
  void clipmove(int dx, int dy, int dr, int dt) { set(x() + dx, y() + dy, r() + dr, t() + dt); }

 private:
  FormatPair formats_;
};

}  // namespace Image
}  // namespace DD

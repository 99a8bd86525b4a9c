#pragma once

/// The frame of a picture: its size and the shape of its pixels.

#include "DDImage/Box.h"

namespace DD {
namespace Image {

/// A box from (0, 0) to (width, height) with a pixel aspect. Pictures may have data beyond it.
class DD_EXPORT Format : public Box {
 public:
  Format() = default;
  Format(int width, int height, double pixelAspect = 1.0)
      : Box(0, 0, width, height), width_(width), height_(height), pixelAspect_(pixelAspect) {}

  int width() const { return width_; }
  int height() const { return height_; }
  double pixel_aspect() const { return pixelAspect_; }

 private:
  int width_ = 0;
  int height_ = 0;
  double pixelAspect_ = 1.0;
};

/// The working format and the format before any proxy reduction.
class DD_EXPORT FormatPair {
 public:
  FormatPair() = default;
  FormatPair(const Format& format, const Format& fullSize) : format_(format), fullSize_(fullSize) {}
  explicit FormatPair(const Format& format) : FormatPair(format, format) {}

  const Format* format() const { return &format_; }
  const Format* fullSizeFormat() const { return &fullSize_; }

 private:
  Format format_;
  Format fullSize_;
};

}  // namespace Image
}  // namespace DD

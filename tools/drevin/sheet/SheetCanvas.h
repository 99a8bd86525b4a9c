#pragma once

/// What a sheet is drawn on.

#include <array>
#include <string>
#include <vector>

#include "picture/OutputFormat.h"
#include "picture/OutputPicture.h"
#include "sheet/AreaFilter.h"

namespace drevintool {

/// Red, green and blue of a small picture in linear light, row-major, the bottom row first.
struct SmallPicture {
  PixelSize size;
  std::array<std::vector<float>, 3> planes;
};

/// Columns run to the right and rows downward from the top left; what lies outside is cut off.
class SheetCanvas {
 public:
  /// All dark grey.
  explicit SheetCanvas(const PixelSize& size);

  void drawPicture(int x, int y, const SmallPicture& picture);
  /// Printable ASCII in light grey; letters are made of squares of `dotSize` pixels.
  void drawText(int x, int y, int dotSize, const std::string& text);
  /// The sheet as R, G and B; half where the format says so.
  OutputPicture takeOutput(const OutputFormat& format);

 private:
  void fill(int x, int y, int width, int height, float value);

  PixelSize size_;
  std::array<std::vector<float>, 3> planes_;
};

}  // namespace drevintool

#include "sheet/SheetCanvas.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

#include "picture/HalfFloat.h"
#include "sheet/BitmapFont.h"

namespace drevintool {
namespace {

// Linear light: about 50 and 225 of 255 on a screen.
constexpr float kGround = 0.03F;
constexpr float kText = 0.75F;

std::size_t areaOf(const PixelSize& size) {
  return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
}

Samples samplesOf(std::vector<float> plane, ResultType type) {
  if (type == ResultType::Half) return halfSamples(plane);
  return std::make_shared<const std::vector<float>>(std::move(plane));
}

}  // namespace

SheetCanvas::SheetCanvas(const PixelSize& size) : size_(size) {
  for (std::vector<float>& plane : planes_)
    plane.assign(areaOf(size), kGround);
}

void SheetCanvas::fill(int x, int y, int width, int height, float value) {
  const int end = std::min(x + width, size_.width);
  for (int row = std::max(y, 0); row < std::min(y + height, size_.height); ++row) {
    for (int column = std::max(x, 0); column < end; ++column) {
      const auto upward = static_cast<std::size_t>(size_.height - 1 - row);
      for (std::vector<float>& plane : planes_)
        plane[upward * static_cast<std::size_t>(size_.width) + static_cast<std::size_t>(column)] =
            value;
    }
  }
}

void SheetCanvas::drawPicture(int x, int y, const SmallPicture& picture) {
  const int firstRow = std::max(0, -y);
  const int lastRow = std::min(picture.size.height, size_.height - y);
  const int first = std::max(0, -x);
  const int last = std::min(picture.size.width, size_.width - x);
  if (last <= first) return;
  for (int row = firstRow; row < lastRow; ++row) {
    const auto from =
        static_cast<std::ptrdiff_t>(picture.size.height - 1 - row) * picture.size.width + first;
    const auto to =
        static_cast<std::ptrdiff_t>(size_.height - 1 - y - row) * size_.width + x + first;
    for (std::size_t c = 0; c < planes_.size(); ++c)
      std::copy_n(picture.planes[c].begin() + from, last - first, planes_[c].begin() + to);
  }
}

void SheetCanvas::drawText(int x, int y, int dotSize, const std::string& text) {
  for (const char letter : text) {
    for (int row = 0; row < kGlyphHeight; ++row) {
      for (int column = 0; column < kGlyphWidth; ++column) {
        if (!glyphHasDot(letter, column, row)) continue;
        fill(x + column * dotSize, y + row * dotSize, dotSize, dotSize, kText);
      }
    }
    x += kGlyphAdvance * dotSize;
  }
}

OutputPicture SheetCanvas::takeOutput(const OutputFormat& format) {
  constexpr std::array<const char*, 3> kFileNames = {"R", "G", "B"};
  constexpr std::array<const char*, 3> kHostNames = {"rgba.red", "rgba.green", "rgba.blue"};
  OutputPicture output;
  output.display = {0, 0, size_.width - 1, size_.height - 1};
  output.box = {0, 0, size_.width, size_.height};
  output.compression = format.compression;
  for (std::size_t c = 0; c < planes_.size(); ++c) {
    output.channels.push_back(
        {kFileNames[c], kHostNames[c], samplesOf(std::move(planes_[c]), format.type)});
  }
  return output;
}

}  // namespace drevintool

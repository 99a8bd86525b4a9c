#pragma once

/// A picture as the command holds it: windows in the host's coordinates, samples in the file's
/// type.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace drevintool {

/// Columns [x, r) and rows [y, t); row 0 is the bottom row of the display window.
struct PixelBox {
  int x = 0;
  int y = 0;
  int r = 0;
  int t = 0;

  bool empty() const { return r <= x || t <= y; }
  std::size_t width() const { return empty() ? 0 : static_cast<std::size_t>(r - x); }
  std::size_t height() const { return empty() ? 0 : static_cast<std::size_t>(t - y); }
  std::size_t area() const { return width() * height(); }
};

/// The bits of one channel, row-major, the bottom row first: half, float or unsigned integer.
using HalfSamples = std::shared_ptr<const std::vector<std::uint16_t>>;
using FloatSamples = std::shared_ptr<const std::vector<float>>;
using UintSamples = std::shared_ptr<const std::vector<std::uint32_t>>;
using Samples = std::variant<HalfSamples, FloatSamples, UintSamples>;

struct PictureChannel {
  std::string fileName;  ///< the name under which it is written
  std::string hostName;  ///< the name by which the host's channel pickers know it
  Samples samples;       ///< of the picture's box
  PixelBox window = {};  ///< the pixels that its part has; empty: all of the box

  bool isUint() const { return std::holds_alternative<UintSamples>(samples); }
};

/// The display window of the file that the picture came from; pixel rows run downward in it.
struct DisplayWindow {
  int minX = 0;
  int minY = 0;
  int maxX = 0;
  int maxY = 0;
};

/// What of a file's header a result keeps.
struct HeaderAttributes;

struct Picture {
  std::string path;
  DisplayWindow display;
  int width = 0;  ///< of the format [0, width) x [0, height)
  int height = 0;
  double pixelAspect = 1.0;
  PixelBox box;  ///< where it has pixels
  std::vector<PictureChannel> channels;
  std::shared_ptr<const HeaderAttributes> attributes;
};

}  // namespace drevintool

#pragma once

/// Deep OpenEXR files made for a test.

#include <OpenEXR/ImfHeader.h>
#include <OpenEXR/ImfPixelType.h>

#include <functional>
#include <string>
#include <vector>

namespace drevintool::testing {

struct DeepChannelFixture {
  std::string name;
  Imf::PixelType type;
};

/// The samples of a pixel as they are stored: each has one value for every channel of the part.
using DeepPixelFixture = std::vector<std::vector<double>>;

struct DeepPartFixture {
  Imath::Box2i display;
  Imath::Box2i data;
  std::vector<DeepChannelFixture> channels;
  /// By column and row in the file's own coordinates (rows run downward).
  std::function<DeepPixelFixture(int x, int y)> samples;
  std::string name;
  std::string view;
  Imf::Compression compression = Imf::ZIPS_COMPRESSION;
  Imf::LineOrder lineOrder = Imf::INCREASING_Y;
  int tileWidth = 0;  ///< 0: scanlines
  int tileHeight = 0;
  bool mipMaps = false;  ///< lower levels are empty
  bool flat = false;     ///< a flat part instead, of zeros
};

/// A file of one part or of several.
void writeDeepFixture(const std::string& path, const std::vector<DeepPartFixture>& parts);

/// Scanlines with the channels of opaqueDeepPart, every pixel with the same `samples` samples.
/// Takes memory for one row only.
void writeUniformDeepFile(const std::string& path, int width, int height, int samples);

/// A part with A, B, G, R (half), Z (float) over the whole display window, each pixel with one
/// opaque sample of that depth, red 0.75, green 0.5 and blue 0.25.
DeepPartFixture opaqueDeepPart(int width, int height, double depth);

/// Replaces bytes of a file's block, counted from the block's own head, in place. `block` counts as
/// in the part's table; the file has one part.
void damageBlock(const std::string& path, std::size_t block, std::size_t offset,
                 const std::string& bytes);

}  // namespace drevintool::testing

#pragma once

/// OpenEXR files made for a test, and files read back without the command's own reader.

#include <OpenEXR/ImfHeader.h>
#include <OpenEXR/ImfPixelType.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace drevintool::testing {

/// The value of a pixel by its column and row in the file's own coordinates (rows run downward).
using PixelFunction = std::function<double(int x, int y)>;

struct ChannelFixture {
  std::string name;
  Imf::PixelType type;
  PixelFunction value;
};

struct PartFixture {
  Imath::Box2i display;
  Imath::Box2i data;
  std::vector<ChannelFixture> channels;
  std::string name;  ///< of the part, in files of several
  Imf::Compression compression = Imf::ZIP_COMPRESSION;
  int tileSize = 0;  ///< 0: scanlines
  bool mipMaps = false;
  float pixelAspect = 1.0F;
};

/// A value as the bits of a sample; half bits in the lower 16.
std::uint32_t bitsFor(Imf::PixelType type, double value);

/// One part as a file of its own.
void writeExrFixture(const std::string& path, const PartFixture& part);
/// Scanline parts in one file.
void writeMultiPartFixture(const std::string& path, const std::vector<PartFixture>& parts);

/// A part with R, G, B, A (half) and Z (float, constant `depth`) over the whole display window.
PartFixture rgbazPart(int width, int height, double depth);

/// One channel of a file: its type and bits, rows downward.
struct ReadChannel {
  Imf::PixelType type;
  std::vector<std::uint32_t> bits;  ///< half bits in the lower 16
};

struct ReadFile {
  Imf::Header header;
  Imath::Box2i display;
  Imath::Box2i data;
  std::map<std::string, ReadChannel> channels;

  /// The value at a column and row in the file's own coordinates.
  double value(const std::string& channel, int x, int y) const;
  std::uint32_t bits(const std::string& channel, int x, int y) const;
  std::vector<std::string> names() const;
};

/// The first part of a file.
ReadFile readBack(const std::string& path, int part = 0);

}  // namespace drevintool::testing

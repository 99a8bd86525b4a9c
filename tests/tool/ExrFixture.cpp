#include "ExrFixture.h"

#include <Imath/half.h>
#include <OpenEXR/ImfChannelList.h>
#include <OpenEXR/ImfFrameBuffer.h>
#include <OpenEXR/ImfInputPart.h>
#include <OpenEXR/ImfMultiPartInputFile.h>
#include <OpenEXR/ImfMultiPartOutputFile.h>
#include <OpenEXR/ImfOutputFile.h>
#include <OpenEXR/ImfOutputPart.h>
#include <OpenEXR/ImfPartType.h>
#include <OpenEXR/ImfTiledOutputFile.h>

#include <cstring>

namespace drevintool::testing {
namespace {

std::size_t widthOf(const Imath::Box2i& box) {
  return static_cast<std::size_t>(box.max.x - box.min.x) + 1;
}
std::size_t heightOf(const Imath::Box2i& box) {
  return static_cast<std::size_t>(box.max.y - box.min.y) + 1;
}

double valueOf(Imf::PixelType type, std::uint32_t bits) {
  if (type == Imf::UINT) return bits;
  if (type == Imf::HALF) return imath_half_to_float(static_cast<std::uint16_t>(bits));
  float single = 0.0F;
  std::memcpy(&single, &bits, sizeof bits);
  return single;
}

// Samples of one channel in memory, four bytes apart whatever the type.
using Cells = std::vector<std::uint32_t>;

Cells cellsOf(const ChannelFixture& channel, const Imath::Box2i& data) {
  Cells cells;
  for (int y = data.min.y; y <= data.max.y; ++y) {
    for (int x = data.min.x; x <= data.max.x; ++x) {
      cells.push_back(bitsFor(channel.type, channel.value(x, y)));
    }
  }
  return cells;
}

Imf::Slice sliceOver(Imf::PixelType type, Cells& cells, const Imath::Box2i& data) {
  constexpr std::size_t kCell = sizeof(std::uint32_t);
  return Imf::Slice::Make(type, cells.data(), data, kCell, kCell * widthOf(data));
}

Imf::Header headerOf(const PartFixture& part) {
  Imf::Header header(part.display, part.data);
  header.compression() = part.compression;
  header.pixelAspectRatio() = part.pixelAspect;
  for (const ChannelFixture& channel : part.channels) {
    header.channels().insert(channel.name, Imf::Channel(channel.type));
  }
  if (!part.name.empty()) header.setName(part.name);
  if (part.tileSize > 0) {
    const auto size = static_cast<unsigned>(part.tileSize);
    header.setTileDescription({size, size, part.mipMaps ? Imf::MIPMAP_LEVELS : Imf::ONE_LEVEL});
  }
  return header;
}

// The frame buffer of a part and the memory behind it.
struct Frame {
  explicit Frame(const PartFixture& part) {
    cells.reserve(part.channels.size());
    for (const ChannelFixture& channel : part.channels) {
      cells.push_back(cellsOf(channel, part.data));
      buffer.insert(channel.name, sliceOver(channel.type, cells.back(), part.data));
    }
  }
  std::vector<Cells> cells;
  Imf::FrameBuffer buffer;
};

void writeTiled(const std::string& path, const PartFixture& part) {
  Imf::TiledOutputFile file(path.c_str(), headerOf(part));
  Frame frame(part);
  file.setFrameBuffer(frame.buffer);
  file.writeTiles(0, file.numXTiles(0) - 1, 0, file.numYTiles(0) - 1, 0);
  if (!part.mipMaps) return;
  // Levels below the first hold ones, so that taking one of them by mistake shows.
  PartFixture lower = part;
  for (ChannelFixture& channel : lower.channels)
    channel.value = [](int, int) { return 1.0; };
  Frame ones(lower);
  file.setFrameBuffer(ones.buffer);
  for (int level = 1; level < file.numLevels(); ++level) {
    file.writeTiles(0, file.numXTiles(level) - 1, 0, file.numYTiles(level) - 1, level);
  }
}

}  // namespace

std::uint32_t bitsFor(Imf::PixelType type, double value) {
  if (type == Imf::UINT) return static_cast<std::uint32_t>(value);
  const auto single = static_cast<float>(value);
  if (type == Imf::HALF) return imath_float_to_half(single);
  std::uint32_t bits = 0;
  std::memcpy(&bits, &single, sizeof bits);
  return bits;
}

void writeExrFixture(const std::string& path, const PartFixture& part) {
  if (part.tileSize > 0) {
    writeTiled(path, part);
    return;
  }
  Imf::OutputFile file(path.c_str(), headerOf(part));
  const Frame frame(part);
  file.setFrameBuffer(frame.buffer);
  file.writePixels(static_cast<int>(heightOf(part.data)));
}

void writeMultiPartFixture(const std::string& path, const std::vector<PartFixture>& parts) {
  std::vector<Imf::Header> headers;
  for (const PartFixture& part : parts) {
    headers.push_back(headerOf(part));
    headers.back().setType(Imf::SCANLINEIMAGE);
  }
  Imf::MultiPartOutputFile file(path.c_str(), headers.data(), static_cast<int>(headers.size()));
  for (std::size_t i = 0; i < parts.size(); ++i) {
    Imf::OutputPart output(file, static_cast<int>(i));
    const Frame frame(parts[i]);
    output.setFrameBuffer(frame.buffer);
    output.writePixels(static_cast<int>(heightOf(parts[i].data)));
  }
}

PartFixture rgbazPart(int width, int height, double depth) {
  PartFixture part;
  part.display = part.data = Imath::Box2i({0, 0}, {width - 1, height - 1});
  part.channels = {
      {"R", Imf::HALF, [](int x, int y) { return ((x * 7 + y * 3) % 16) / 16.0; }},
      {"G", Imf::HALF, [](int x, int y) { return ((x * 5 + y * 11) % 16) / 16.0; }},
      {"B", Imf::HALF, [](int x, int y) { return ((x + y) % 16) / 16.0; }},
      {"A", Imf::HALF, [](int, int) { return 1.0; }},
      {"Z", Imf::FLOAT, [depth](int, int) { return depth; }},
  };
  return part;
}

std::uint32_t ReadFile::bits(const std::string& channel, int x, int y) const {
  const std::size_t row = static_cast<std::size_t>(y - data.min.y);
  return channels.at(channel).bits.at(row * widthOf(data) +
                                      static_cast<std::size_t>(x - data.min.x));
}

double ReadFile::value(const std::string& channel, int x, int y) const {
  return valueOf(channels.at(channel).type, bits(channel, x, y));
}

std::vector<std::string> ReadFile::names() const {
  std::vector<std::string> list;
  for (const auto& entry : channels)
    list.push_back(entry.first);
  return list;
}

ReadFile readBack(const std::string& path, int part) {
  Imf::MultiPartInputFile file(path.c_str());
  ReadFile result;
  result.header = file.header(part);
  result.display = result.header.displayWindow();
  result.data = result.header.dataWindow();
  Imf::FrameBuffer buffer;
  const Imf::ChannelList& list = result.header.channels();
  for (auto it = list.begin(); it != list.end(); ++it) {
    ReadChannel& channel = result.channels[it.name()];
    channel.type = it.channel().type;
    channel.bits.resize(widthOf(result.data) * heightOf(result.data));
    buffer.insert(it.name(), sliceOver(channel.type, channel.bits, result.data));
  }
  Imf::InputPart input(file, part);
  input.setFrameBuffer(buffer);
  input.readPixels(result.data.min.y, result.data.max.y);
  return result;
}

}  // namespace drevintool::testing

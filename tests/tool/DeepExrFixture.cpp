#include "DeepExrFixture.h"

#include <OpenEXR/ImfChannelList.h>
#include <OpenEXR/ImfDeepFrameBuffer.h>
#include <OpenEXR/ImfDeepScanLineOutputPart.h>
#include <OpenEXR/ImfDeepTiledOutputPart.h>
#include <OpenEXR/ImfFrameBuffer.h>
#include <OpenEXR/ImfMultiPartOutputFile.h>
#include <OpenEXR/ImfOutputPart.h>
#include <OpenEXR/ImfPartType.h>

#include <cstring>
#include <memory>

#include "ExrFixture.h"
#include "ScratchFolder.h"
#include "picture/ExrHeaderScan.h"

namespace drevintool::testing {
namespace {

std::string typeOf(const DeepPartFixture& part) {
  if (part.flat) return Imf::SCANLINEIMAGE;
  return part.tileWidth > 0 ? Imf::DEEPTILE : Imf::DEEPSCANLINE;
}

Imf::Header headerOf(const DeepPartFixture& part) {
  Imf::Header header(part.display, part.data);
  header.setType(typeOf(part));
  header.compression() = part.compression;
  header.lineOrder() = part.lineOrder;
  for (const DeepChannelFixture& channel : part.channels)
    header.channels().insert(channel.name, Imf::Channel(channel.type));
  if (!part.name.empty()) header.setName(part.name);
  if (!part.view.empty()) header.setView(part.view);
  if (part.tileWidth > 0) {
    header.setTileDescription({static_cast<unsigned>(part.tileWidth),
                               static_cast<unsigned>(part.tileHeight),
                               part.mipMaps ? Imf::MIPMAP_LEVELS : Imf::ONE_LEVEL});
  }
  return header;
}

std::size_t widthOf(const DeepPartFixture& part) {
  return static_cast<std::size_t>(part.data.max.x - part.data.min.x) + 1;
}
int heightOf(const DeepPartFixture& part) {
  return part.data.max.y - part.data.min.y + 1;
}

// A part in memory as the library takes it; samples are four bytes apart whatever their type.
class DeepMemory {
 public:
  explicit DeepMemory(const DeepPartFixture& part) : part_(part) {
    std::vector<DeepPixelFixture> pixels;
    for (int y = part.data.min.y; y <= part.data.max.y; ++y) {
      for (int x = part.data.min.x; x <= part.data.max.x; ++x)
        pixels.push_back(part.samples(x, y));
    }
    for (const DeepPixelFixture& pixel : pixels)
      counts_.push_back(static_cast<std::uint32_t>(pixel.size()));
    for (std::size_t channel = 0; channel < part.channels.size(); ++channel)
      addChannel(pixels, channel);
  }

  Imf::DeepFrameBuffer frame() {
    const std::size_t width = widthOf(part_);
    Imf::DeepFrameBuffer frame;
    constexpr std::size_t kCell = sizeof(std::uint32_t);
    frame.insertSampleCountSlice(
        Imf::Slice::Make(Imf::UINT, counts_.data(), part_.data, kCell, kCell * width));
    for (std::size_t channel = 0; channel < part_.channels.size(); ++channel) {
      constexpr std::size_t kPointer = sizeof(char*);
      const Imf::PixelType type = part_.channels[channel].type;
      char* base =
          Imf::Slice::Make(type, pointers_[channel].data(), part_.data, kPointer, kPointer * width)
              .base;
      frame.insert(part_.channels[channel].name,
                   Imf::DeepSlice(type, base, kPointer, kPointer * width, kCell));
    }
    return frame;
  }

 private:
  void addChannel(const std::vector<DeepPixelFixture>& pixels, std::size_t channel) {
    std::vector<std::uint32_t> cells;
    for (const DeepPixelFixture& pixel : pixels) {
      for (const std::vector<double>& sample : pixel)
        cells.push_back(bitsFor(part_.channels[channel].type, sample.at(channel)));
    }
    cells_.push_back(std::move(cells));
    std::vector<std::uint32_t*> pointers;
    std::uint32_t* at = cells_.back().data();
    for (const DeepPixelFixture& pixel : pixels) {
      pointers.push_back(at);
      at += pixel.size();
    }
    pointers_.push_back(std::move(pointers));
  }

  const DeepPartFixture& part_;
  std::vector<std::uint32_t> counts_;
  std::vector<std::vector<std::uint32_t>> cells_;
  std::vector<std::vector<std::uint32_t*>> pointers_;
};

void writeTiles(Imf::MultiPartOutputFile& file, int number, const DeepPartFixture& part) {
  Imf::DeepTiledOutputPart output(file, number);
  DeepMemory memory(part);
  output.setFrameBuffer(memory.frame());
  output.writeTiles(0, output.numXTiles(0) - 1, 0, output.numYTiles(0) - 1, 0);
  if (!part.mipMaps) return;
  DeepPartFixture empty = part;
  empty.samples = [](int, int) { return DeepPixelFixture(); };
  DeepMemory nothing(empty);
  output.setFrameBuffer(nothing.frame());
  for (int level = 1; level < output.numLevels(); ++level)
    output.writeTiles(0, output.numXTiles(level) - 1, 0, output.numYTiles(level) - 1, level);
}

void writeZeros(Imf::MultiPartOutputFile& file, int number, const DeepPartFixture& part) {
  Imf::OutputPart output(file, number);
  constexpr std::size_t kCell = sizeof(std::uint32_t);
  std::vector<std::uint32_t> zeros(widthOf(part));
  const Imath::Box2i row({part.data.min.x, 0}, {part.data.max.x, 0});
  Imf::FrameBuffer frame;
  for (const DeepChannelFixture& channel : part.channels) {
    char* base = Imf::Slice::Make(channel.type, zeros.data(), row, kCell, 0).base;
    frame.insert(channel.name, Imf::Slice(channel.type, base, kCell, 0));
  }
  output.setFrameBuffer(frame);
  output.writePixels(heightOf(part));
}

void writePart(Imf::MultiPartOutputFile& file, int number, const DeepPartFixture& part) {
  if (part.flat) {
    writeZeros(file, number, part);
  } else if (part.tileWidth > 0) {
    writeTiles(file, number, part);
  } else {
    Imf::DeepScanLineOutputPart output(file, number);
    DeepMemory memory(part);
    output.setFrameBuffer(memory.frame());
    output.writePixels(heightOf(part));
  }
}

}  // namespace

void writeDeepFixture(const std::string& path, const std::vector<DeepPartFixture>& parts) {
  std::vector<Imf::Header> headers;
  headers.reserve(parts.size());
  for (const DeepPartFixture& part : parts)
    headers.push_back(headerOf(part));
  Imf::MultiPartOutputFile file(path.c_str(), headers.data(), static_cast<int>(headers.size()));
  for (std::size_t number = 0; number < parts.size(); ++number)
    writePart(file, static_cast<int>(number), parts[number]);
}

void writeUniformDeepFile(const std::string& path, int width, int height, int samples) {
  const DeepPartFixture part = opaqueDeepPart(width, height, 100.0);
  const Imf::Header header = headerOf(part);
  Imf::MultiPartOutputFile file(path.c_str(), &header, 1);
  Imf::DeepScanLineOutputPart output(file, 0);
  std::vector<std::uint32_t> counts(widthOf(part), static_cast<std::uint32_t>(samples));
  Imf::DeepFrameBuffer frame;
  frame.insertSampleCountSlice(
      Imf::Slice(Imf::UINT, reinterpret_cast<char*>(counts.data()), sizeof(std::uint32_t), 0));
  std::vector<std::vector<std::uint32_t>> values;
  std::vector<std::vector<std::uint32_t*>> pointers;
  for (const DeepChannelFixture& channel : part.channels) {
    values.emplace_back(static_cast<std::size_t>(samples), bitsFor(channel.type, 0.5));
    pointers.emplace_back(widthOf(part), values.back().data());
    frame.insert(channel.name,
                 Imf::DeepSlice(channel.type, reinterpret_cast<char*>(pointers.back().data()),
                                sizeof(char*), 0, sizeof(std::uint32_t)));
  }
  output.setFrameBuffer(frame);
  output.writePixels(height);
}

DeepPartFixture opaqueDeepPart(int width, int height, double depth) {
  DeepPartFixture part;
  part.display = part.data = Imath::Box2i({0, 0}, {width - 1, height - 1});
  part.channels = {
      {"A", Imf::HALF}, {"B", Imf::HALF}, {"G", Imf::HALF}, {"R", Imf::HALF}, {"Z", Imf::FLOAT}};
  part.samples = [depth](int, int) { return DeepPixelFixture{{1.0, 0.25, 0.5, 0.75, depth}}; };
  return part;
}

void damageBlock(const std::string& path, std::size_t block, std::size_t offset,
                 const std::string& bytes) {
  std::string file = bytesOfFile(path);
  std::uint64_t place = 0;
  std::memcpy(&place, file.data() + scanExrHeader(path).headersEnd + 8 * block, sizeof place);
  file.replace(static_cast<std::size_t>(place) + offset, bytes.size(), bytes);
  writeBytes(path, file);
}

}  // namespace drevintool::testing

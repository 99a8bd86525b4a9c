#include "picture/ExrWriter.h"

#include <OpenEXR/ImfChannelList.h>
#include <OpenEXR/ImfFrameBuffer.h>
#include <OpenEXR/ImfHeader.h>
#include <OpenEXR/ImfOutputFile.h>
#include <OpenEXR/ImfThreading.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>
#include <new>
#include <vector>

#include "picture/AtomicFile.h"
#include "picture/CheckedStream.h"
#include "picture/ExrCompression.h"
#include "picture/HeaderAttributes.h"
#include "picture/WrittenFile.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

Imf::PixelType typeOf(const Samples& samples) {
  constexpr std::array<Imf::PixelType, 3> kTypes = {Imf::HALF, Imf::FLOAT, Imf::UINT};
  return kTypes[samples.index()];
}

std::size_t sampleSize(const Samples& samples) {
  return typeOf(samples) == Imf::HALF ? 2 : 4;
}

const char* bytesOf(const Samples& samples) {
  return std::visit([](const auto& s) { return reinterpret_cast<const char*>(s->data()); },
                    samples);
}

Imath::Box2i dataWindow(const OutputPicture& picture) {
  const PixelBox& box = picture.box;
  return {{box.x + picture.display.minX, picture.display.maxY - box.t + 1},
          {box.r - 1 + picture.display.minX, picture.display.maxY - box.y}};
}

// Attributes that speak of the input file's layout or of pixels as they were before.
bool outdated(const std::string& name, bool multiPart) {
  static const std::array<const char*, 12> kLayout = {
      "channels", "compression", "dataWindow", "displayWindow", "lineOrder", "tiles",
      "type",     "chunkCount",  "preview",    "version",       "wrapmodes", "maxSamplesPerPixel"};
  for (const char* entry : kLayout) {
    if (name == entry) return true;
  }
  return multiPart && (name == "name" || name == "view" || name == "multiView");
}

// The input's, unless it would change channels that are only passed on.
Imf::Compression compressionFor(const OutputPicture& picture) {
  if (picture.compression) return *picture.compression;
  if (!picture.attributes) return Imf::ZIP_COMPRESSION;
  const Imf::Compression before = picture.attributes->header.compression();
  return keepsBits(before) ? before : Imf::ZIP_COMPRESSION;
}

Imf::Header headerFor(const OutputPicture& picture) {
  const DisplayWindow& display = picture.display;
  const Imath::Box2i displayWindow({display.minX, display.minY}, {display.maxX, display.maxY});
  Imf::Header header(displayWindow, dataWindow(picture));
  if (picture.attributes) {
    const Imf::Header& from = picture.attributes->header;
    for (auto it = from.begin(); it != from.end(); ++it) {
      if (!outdated(it.name(), picture.attributes->multiPart)) {
        header.insert(it.name(), it.attribute());
      }
    }
  }
  header.compression() = compressionFor(picture);
  header.lineOrder() = Imf::INCREASING_Y;
  for (const OutputChannel& channel : picture.channels) {
    header.channels().insert(channel.fileName, Imf::Channel(typeOf(channel.samples)));
  }
  return header;
}

// Rows of the picture (upward) turned into the file's order (downward), some at a time.
class Band {
 public:
  explicit Band(const OutputPicture& picture) : picture_(picture) {
    for (const OutputChannel& channel : picture.channels) {
      rowBytes_ += sampleSize(channel.samples) * picture.box.width();
    }
    constexpr std::size_t kMostBytes = std::size_t{64} << 20;
    constexpr std::size_t kBlockRows = 16;
    constexpr std::size_t kMostRows = 256;
    const std::size_t fitting = kMostBytes / std::max<std::size_t>(rowBytes_, 1);
    rows_ = static_cast<int>(std::clamp(fitting / kBlockRows * kBlockRows, kBlockRows, kMostRows));
    bytes_.resize(rowBytes_ * static_cast<std::size_t>(rows_));
  }

  int rows() const { return rows_; }

  void write(Imf::OutputFile& file, int first, int last) {
    const Imath::Box2i all = dataWindow(picture_);
    const Imath::Box2i window({all.min.x, first}, {all.max.x, last});
    Imf::FrameBuffer frame;
    std::size_t offset = 0;
    for (const OutputChannel& channel : picture_.channels) {
      const std::size_t size = sampleSize(channel.samples);
      const std::size_t rowBytes = size * picture_.box.width();
      copyRows(channel, first, last, bytes_.data() + offset);
      frame.insert(channel.fileName,
                   Imf::Slice::Make(typeOf(channel.samples), bytes_.data() + offset, window, size,
                                    rowBytes));
      offset += rowBytes * static_cast<std::size_t>(rows_);
    }
    file.setFrameBuffer(frame);
    file.writePixels(last - first + 1);
  }

 private:
  void copyRows(const OutputChannel& channel, int first, int last, char* to) const {
    const std::size_t rowBytes = sampleSize(channel.samples) * picture_.box.width();
    for (int y = first; y <= last; ++y, to += rowBytes) {
      const auto row = static_cast<std::size_t>(picture_.display.maxY - y - picture_.box.y);
      std::memcpy(to, bytesOf(channel.samples) + row * rowBytes, rowBytes);
    }
  }

  const OutputPicture& picture_;
  std::size_t rowBytes_ = 0;
  int rows_ = 1;
  std::vector<char> bytes_;
};

void writeRows(const OutputPicture& picture, AtomicFile& place, const std::string& path) {
  CheckedStream stream(place, path);
  Imf::OutputFile file(stream, headerFor(picture), Imf::globalThreadCount());
  const Imath::Box2i window = dataWindow(picture);
  Band band(picture);
  for (int first = window.min.y; first <= window.max.y; first += band.rows()) {
    throwIfInterrupted();
    band.write(file, first, std::min(first + band.rows() - 1, window.max.y));
  }
}

}  // namespace

void writeExr(const OutputPicture& picture, const std::string& path) {
  AtomicFile place(path);
  try {
    writeRows(picture, place, path);
  } catch (const ToolError&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw ToolError(ExitCode::RenderFailed, oneLine(path) + ": not enough memory to write it");
  } catch (const std::exception& error) {
    throw ToolError(ExitCode::OutputNotWritten, oneLine(path + ": " + error.what()));
  }
  place.commit(faultOfWrittenExr);
}

}  // namespace drevintool

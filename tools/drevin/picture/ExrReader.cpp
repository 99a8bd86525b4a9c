#include "picture/ExrReader.h"

#include <OpenEXR/ImfChannelList.h>
#include <OpenEXR/ImfFrameBuffer.h>
#include <OpenEXR/ImfHeader.h>
#include <OpenEXR/ImfInputPart.h>
#include <OpenEXR/ImfMultiPartInputFile.h>
#include <OpenEXR/ImfPartType.h>
#include <OpenEXR/ImfThreading.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <functional>
#include <new>

#include "picture/ChannelNames.h"
#include "picture/ExrHeaderScan.h"
#include "picture/ExrLimits.h"
#include "picture/FlatChunks.h"
#include "picture/HeaderAttributes.h"
#include "picture/MemoryBudget.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

// Makes samples up to that number, zeros at first, and gives the place of the first.
using Extend = std::function<char*(std::size_t count)>;

// A channel of one part and its samples in the picture.
struct PartChannel {
  std::string nameInPart;
  Imf::PixelType type;
  std::size_t target;  // index into Picture::channels
  Extend extend;
};

struct FlatPart {
  int number;
  Imath::Box2i window;
  std::vector<PartChannel> channels;
};

bool isDeep(const Imf::Header& header) {
  return header.hasType() && Imf::isDeepData(header.type());
}

std::size_t sampleSize(Imf::PixelType type) {
  return type == Imf::HALF ? 2 : 4;
}

PixelBox boxOf(const Imath::Box2i& window, const DisplayWindow& display) {
  return {window.min.x - display.minX, display.maxY - window.max.y, window.max.x - display.minX + 1,
          display.maxY - window.min.y + 1};
}

void grow(PixelBox& box, const PixelBox& other) {
  if (box.empty()) {
    box = other;
    return;
  }
  box = {std::min(box.x, other.x), std::min(box.y, other.y), std::max(box.r, other.r),
         std::max(box.t, other.t)};
}

void takeFormat(const Imf::Header& header, Picture& picture) {
  const Imath::Box2i& window = header.displayWindow();
  picture.display = {window.min.x, window.min.y, window.max.x, window.max.y};
  picture.width = window.max.x - window.min.x + 1;
  picture.height = window.max.y - window.min.y + 1;
  picture.pixelAspect = static_cast<double>(header.pixelAspectRatio());
}

FlatPart planPart(int number, const Imf::Header& header, TakenNames& taken, Picture& picture) {
  FlatPart part{number, header.dataWindow(), {}};
  const PixelBox window = boxOf(part.window, picture.display);
  const std::string partName = header.hasName() ? header.name() : std::string();
  for (auto it = header.channels().begin(); it != header.channels().end(); ++it) {
    const ChannelNaming naming = taken.add(it.name(), partName);
    part.channels.push_back({it.name(), it.channel().type, picture.channels.size(), {}});
    picture.channels.push_back({naming.fileName, naming.hostName, {}, window});
  }
  grow(picture.box, window);
  return part;
}

std::vector<FlatPart> planParts(const Imf::MultiPartInputFile& file, Picture& picture) {
  std::vector<FlatPart> parts;
  TakenNames taken;
  for (int number = 0; number < file.parts(); ++number) {
    const Imf::Header& header = file.header(number);
    if (isDeep(header)) continue;
    if (parts.empty()) {
      takeFormat(header, picture);
      picture.attributes =
          std::make_shared<HeaderAttributes>(HeaderAttributes{header, file.parts() > 1});
    }
    parts.push_back(planPart(number, header, taken, picture));
  }
  return parts;
}

// Room for `count` samples: memory that none of them has come into yet costs nothing.
template <typename Sample>
Extend reserve(std::size_t count, Samples& samples) {
  auto values = std::make_shared<std::vector<Sample>>();
  values->reserve(count);
  samples = values;
  return [values](std::size_t size) {
    if (size > values->size()) values->resize(size);
    return reinterpret_cast<char*>(values->data());
  };
}

Extend reserve(Imf::PixelType type, std::size_t count, Samples& samples) {
  if (type == Imf::HALF) return reserve<std::uint16_t>(count, samples);
  if (type == Imf::FLOAT) return reserve<float>(count, samples);
  return reserve<std::uint32_t>(count, samples);
}

// Rows of one part on their way from the file (downward) into the picture (upward).
class Band {
 public:
  Band(const FlatPart& part, const Picture& picture, std::size_t mostRows)
      : part_(part), picture_(picture) {
    for (const PartChannel& channel : part.channels)
      rowBytes_ += sampleSize(channel.type) * width();
    constexpr std::size_t kMostBytes = std::size_t{64} << 20;
    const std::size_t fitting = kMostBytes / std::max<std::size_t>(rowBytes_, 1);
    rows_ = static_cast<int>(std::clamp<std::size_t>(fitting, 1, mostRows));
    bytes_.resize(rowBytes_ * static_cast<std::size_t>(rows_));
  }

  int rows() const { return rows_; }

  void read(Imf::InputPart& input, int first, int last) {
    const Imath::Box2i window({part_.window.min.x, first}, {part_.window.max.x, last});
    Imf::FrameBuffer frame;
    std::size_t offset = 0;
    for (const PartChannel& channel : part_.channels) {
      const std::size_t size = sampleSize(channel.type);
      frame.insert(channel.nameInPart, Imf::Slice::Make(channel.type, bytes_.data() + offset,
                                                        window, size, size * width()));
      offset += size * width() * static_cast<std::size_t>(rows_);
    }
    input.setFrameBuffer(frame);
    input.readPixels(first, last);
  }

  // Into the picture's samples.
  void copy(int first, int last) const {
    std::size_t offset = 0;
    for (const PartChannel& channel : part_.channels) {
      const std::size_t rowBytes = sampleSize(channel.type) * width();
      char* samples = channel.extend((rowOf(first) + 1) * picture_.box.width());
      for (int y = first; y <= last; ++y) {
        const std::size_t from = offset + rowBytes * static_cast<std::size_t>(y - first);
        std::memcpy(samples + placeOf(y) * sampleSize(channel.type), bytes_.data() + from,
                    rowBytes);
      }
      offset += rowBytes * static_cast<std::size_t>(rows_);
    }
  }

 private:
  std::size_t width() const {
    return static_cast<std::size_t>(part_.window.max.x - part_.window.min.x) + 1;
  }

  // From the bottom of the picture's box.
  std::size_t rowOf(int fileRow) const {
    return static_cast<std::size_t>(picture_.display.maxY - fileRow - picture_.box.y);
  }

  // Of the row's first sample.
  std::size_t placeOf(int fileRow) const {
    const int column = part_.window.min.x - picture_.display.minX - picture_.box.x;
    return rowOf(fileRow) * picture_.box.width() + static_cast<std::size_t>(column);
  }

  const FlatPart& part_;
  const Picture& picture_;
  std::size_t rowBytes_ = 0;
  int rows_ = 1;
  std::vector<char> bytes_;
};

// Unpacks the block of the first row, so that what looks whole but is not costs no memory.
void tryPart(Imf::MultiPartInputFile& file, const FlatPart& part, const Picture& picture) {
  Imf::InputPart input(file, part.number);
  Band(part, picture, 1).read(input, part.window.min.y, part.window.min.y);
}

// From the bottom up, as the picture's rows lie: samples come to be as their rows are unpacked, and
// what fails on the way has cost no more than that.
void readPart(Imf::MultiPartInputFile& file, const FlatPart& part, const Picture& picture) {
  Imf::InputPart input(file, part.number);
  constexpr std::size_t kMostRows = 256;
  Band band(part, picture, kMostRows);
  const int top = part.window.min.y;
  for (int number = (part.window.max.y - top) / band.rows(); number >= 0; --number) {
    throwIfInterrupted();
    const int first = top + number * band.rows();
    const int last = std::min(first + band.rows() - 1, part.window.max.y);
    band.read(input, first, last);
    band.copy(first, last);
  }
  for (const PartChannel& channel : part.channels)
    channel.extend(picture.box.area());
}

Picture readParts(const std::string& path) {
  Imf::MultiPartInputFile file(path.c_str(), Imf::globalThreadCount(), false);
  Picture picture;
  picture.path = path;
  std::vector<FlatPart> parts = planParts(file, picture);
  if (parts.empty()) {
    throw ToolError(ExitCode::InputUnreadable, oneLine(path) + ": has no flat part");
  }
  for (const FlatPart& part : parts)
    tryPart(file, part, picture);
  for (FlatPart& part : parts) {
    for (PartChannel& channel : part.channels) {
      Samples& samples = picture.channels[channel.target].samples;
      channel.extend = reserve(channel.type, picture.box.area(), samples);
    }
  }
  for (const FlatPart& part : parts)
    readPart(file, part, picture);
  return picture;
}

}  // namespace

Picture readExr(const std::string& path) {
  const ExrFacts facts = scanExrHeader(path);
  const auto deep = [](const ExrPartFacts& part) { return part.deep; };
  if (std::all_of(facts.parts.begin(), facts.parts.end(), deep)) {
    throw ToolError(ExitCode::InputUnreadable,
                    oneLine(path) + ": holds only deep images; give such a file with --deep");
  }
  checkExrLimits(facts, path, memoryBudget());
  checkFlatChunks(path, facts);
  try {
    return readParts(path);
  } catch (const ToolError&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw ToolError(ExitCode::InputUnreadable, oneLine(path) + ": not enough memory to read it");
  } catch (const std::exception& error) {
    const std::string text = error.what();
    const bool named = text.find(path) != std::string::npos;
    throw ToolError(ExitCode::InputUnreadable, oneLine(named ? text : path + ": " + text));
  }
}

}  // namespace drevintool

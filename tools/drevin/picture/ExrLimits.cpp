#include "picture/ExrLimits.h"

#include <algorithm>
#include <array>
#include <limits>

#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

// Bytes of a pixel's sample count in the file.
constexpr std::uint64_t kSampleCountBytes = 4;

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
  throw ToolError(ExitCode::InputUnreadable, oneLine(path) + ": " + reason);
}

void checkWindow(const ExrWindow& window, const char* what, const std::string& path) {
  const std::int64_t width = window.width();
  const std::int64_t height = window.height();
  const std::string name = std::string("damaged: the ") + what + " window ";
  if (width < 1 || height < 1) fail(path, name + "is empty or inverted");
  if (width > kMostSide || height > kMostSide) {
    fail(path, name + "of " + std::to_string(width) + " x " + std::to_string(height) +
                   " pixels is larger than the most, " + std::to_string(kMostSide) + " on a side");
  }
  for (const std::int64_t corner : {window.minX, window.minY, window.maxX, window.maxY}) {
    if (corner < -kFarthestCorner || corner > kFarthestCorner) {
      fail(path, name + "lies too far from the origin");
    }
  }
}

std::int64_t ceilDivide(std::int64_t a, std::int64_t b) {
  return (a + b - 1) / b;
}

void checkTiles(const ExrPartFacts& part, const std::string& path) {
  const std::int64_t width = part.tileWidth;
  const std::int64_t height = part.tileHeight;
  if (width < 1 || height < 1) fail(path, "damaged: its tiles have no size");
  const bool sides = width <= kMostSide && height <= kMostSide;
  const std::int64_t mostPixels =
      part.deep ? kMostDeepTilePixels
                : kMostTileBytes / std::max<std::int64_t>(bytesOfPixel(part), 1);
  if (!sides || width * height > mostPixels) {
    fail(path, "its tiles of " + std::to_string(width) + " x " + std::to_string(height) +
                   " pixels are too large");
  }
}

void checkChunkTable(std::int64_t chunks, const ExrFacts& facts, const std::string& path) {
  constexpr std::uint64_t kEntryBytes = 8;
  if (chunks < 0 || static_cast<std::uint64_t>(chunks) > facts.fileSize / kEntryBytes) {
    fail(path, "damaged or unfinished: the file is too short for the " + std::to_string(chunks) +
                   " blocks that its header announces");
  }
}

void checkChannels(const ExrPartFacts& part, const std::string& path) {
  if (part.channels.empty()) fail(path, "damaged: a part has no channels");
  for (const ExrChannelFacts& channel : part.channels) {
    if (channel.xSampling != 1 || channel.ySampling != 1) {
      fail(path, "channel " + oneLine(channel.name) +
                     " is subsampled; convert the picture to full resolution channels");
    }
    if (channel.type < 0 || channel.type > 2) {
      fail(path, "damaged: channel " + oneLine(channel.name) + " has an unknown pixel type");
    }
  }
}

// The reader builds the chunk tables of all parts, deep ones too.
void checkLayout(const ExrPartFacts& part, const ExrFacts& facts, const std::string& path) {
  checkWindow(part.dataWindow, "data", path);
  checkWindow(part.displayWindow, "display", path);
  if (part.tiled) checkTiles(part, path);
  checkChunkTable(chunksOf(part), facts, path);
  checkChunkTable(part.chunkCount.value_or(0), facts, path);
}

std::uint64_t pixelsOf(const ExrPartFacts& part) {
  return static_cast<std::uint64_t>(part.dataWindow.width()) *
         static_cast<std::uint64_t>(part.dataWindow.height());
}

void checkPixels(const ExrPartFacts& part, const ExrFacts& facts, const std::string& path) {
  checkChannels(part, path);
  const std::uint64_t pixelBytes =
      part.deep ? kSampleCountBytes : static_cast<std::uint64_t>(bytesOfPixel(part));
  if (pixelsOf(part) * pixelBytes / mostCompression(part.compression) > facts.fileSize) {
    fail(path,
         "damaged or unfinished: the file is too short for the pixels that its header announces");
  }
}

void checkDeep(const ExrPartFacts& part, const std::string& path) {
  constexpr int kLastDeepCompression = 2;  // none, run lengths, deflate by rows
  if (part.compression > kLastDeepCompression) {
    fail(path, "damaged: its compression is none of those for deep images");
  }
}

// All channels of all flat parts over the union of the data windows: the file's samples and a float
// copy for those that are not float.
double neededBytes(const ExrFacts& facts) {
  ExrWindow all{std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::max(),
                std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::min()};
  double pixelBytes = 0;
  for (const ExrPartFacts& part : facts.parts) {
    if (part.deep) continue;
    all.minX = std::min(all.minX, part.dataWindow.minX);
    all.minY = std::min(all.minY, part.dataWindow.minY);
    all.maxX = std::max(all.maxX, part.dataWindow.maxX);
    all.maxY = std::max(all.maxY, part.dataWindow.maxY);
    for (const ExrChannelFacts& channel : part.channels) {
      pixelBytes += channel.type == 0 ? 8 : channel.type == 1 ? 6 : 4;
    }
  }
  return pixelBytes == 0.0
             ? 0.0
             : pixelBytes * static_cast<double>(all.width()) * static_cast<double>(all.height());
}

}  // namespace

std::uint64_t mostCompression(int compression) {
  // Deflate comes to 1032 at most, a third more where floats lose a byte before; run lengths to 64,
  // and the 4 x 4 block codes to 11. The wavelet code ends in one of single bits, where a value's
  // bit, that of the repetition and 8 for their number stand for 256 numbers of 16 bits: 410. The
  // cosine code packs run lengths by deflate.
  constexpr std::uint64_t kNone = std::numeric_limits<std::uint32_t>::max();
  constexpr std::uint64_t kCosine = 64 * 1032;
  constexpr std::array<std::uint64_t, 10> kRatios = {1,    128, 1100, 1100,    512,
                                                     1400, 16,  16,   kCosine, kCosine};
  return compression < static_cast<int>(kRatios.size())
             ? kRatios[static_cast<std::size_t>(compression)]
             : kNone;
}

std::int64_t bytesOfPixel(const ExrPartFacts& part) {
  std::int64_t bytes = 0;
  for (const ExrChannelFacts& channel : part.channels)
    bytes += channel.type == 1 ? 2 : 4;
  return bytes;
}

std::int64_t rowsOfChunk(const ExrPartFacts& part) {
  // The last two are of newer releases of the library.
  constexpr std::array<std::int64_t, 12> kRows = {1, 1, 1, 16, 32, 16, 32, 32, 32, 256, 256, 32};
  const auto compression = static_cast<std::size_t>(part.compression);
  return compression < kRows.size() ? kRows[compression] : 1;
}

std::int64_t chunksOf(const ExrPartFacts& part) {
  const std::int64_t width = part.dataWindow.width();
  const std::int64_t height = part.dataWindow.height();
  if (!part.tiled) return ceilDivide(height, rowsOfChunk(part));
  return ceilDivide(width, part.tileWidth) * ceilDivide(height, part.tileHeight);
}

void checkExrLimits(const ExrFacts& facts, const std::string& path, const MemoryBudget& budget) {
  for (const ExrPartFacts& part : facts.parts) {
    checkLayout(part, facts, path);
    if (part.deep) checkDeep(part, path);
    checkPixels(part, facts, path);
  }
  checkMemory(neededBytes(facts), budget, path);
}

void checkMemory(double needed, const MemoryBudget& budget, const std::string& path,
                 const std::string& subject) {
  if (needed <= static_cast<double>(budget.bytes)) return;
  fail(path, subject + beyondBudget(needed, budget));
}

}  // namespace drevintool

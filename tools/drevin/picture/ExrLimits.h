#pragma once

/// Whether a picture file's sizes are sane, decided from its header before anything is allocated.

#include <cstdint>
#include <string>

#include "picture/ExrHeaderScan.h"
#include "picture/MemoryBudget.h"

namespace drevintool {

/// Largest side of a window, and largest distance of a window's corner from the origin, in pixels.
constexpr std::int64_t kMostSide = std::int64_t{1} << 17;
constexpr std::int64_t kFarthestCorner = std::int64_t{1} << 28;
/// Largest tile in bytes.
constexpr std::int64_t kMostTileBytes = std::int64_t{1} << 29;
/// Largest tile of a deep part in pixels: its sample counts alone take 4 bytes for each.
constexpr std::int64_t kMostDeepTilePixels = std::int64_t{1} << 24;

/// How many times smaller than its content a block can be, by the file's number of the compression;
/// the largest 32-bit number where there is no bound.
std::uint64_t mostCompression(int compression);

/// Bytes that a pixel's samples take in a flat part; in a deep one, those of one sample.
std::int64_t bytesOfPixel(const ExrPartFacts& part);

/// Rows of one chunk of a scanline part, by its compression.
std::int64_t rowsOfChunk(const ExrPartFacts& part);

/// Chunks that a part with sane sizes has, of a tiled one those of its first level.
std::int64_t chunksOf(const ExrPartFacts& part);

/// Throws ToolError (InputUnreadable) with one line that names the file if a part has a window that
/// is inverted, too large or too far away, or tiles or a table of chunks that the file cannot hold;
/// if a part has subsampled channels or claims more pixels than its compression can bring into the
/// file (of a deep part, more sample counts); if a deep part has a compression that there is not
/// for deep samples; or if the flat parts need more than the budget.
void checkExrLimits(const ExrFacts& facts, const std::string& path, const MemoryBudget& budget);

/// Throws ToolError (InputUnreadable) with one line that names the file and both figures if
/// `needed` bytes are more than the budget. `subject` is put before "needs".
void checkMemory(double needed, const MemoryBudget& budget, const std::string& path,
                 const std::string& subject = "");

}  // namespace drevintool

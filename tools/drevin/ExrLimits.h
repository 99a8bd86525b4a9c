#pragma once

/// Whether a picture file's sizes are sane, decided from its header before anything is allocated.

#include <cstdint>
#include <string>

#include "ExrHeaderScan.h"

namespace drevintool {

/// Largest side of a window, and largest distance of a window's corner from the origin, in pixels.
constexpr std::int64_t kMostSide = std::int64_t{1} << 17;
constexpr std::int64_t kFarthestCorner = std::int64_t{1} << 28;
/// Largest tile in bytes.
constexpr std::int64_t kMostTileBytes = std::int64_t{1} << 29;

/// Throws ToolError (InputUnreadable) with one line that names the file if a part has a window that
/// is inverted, too large or too far away, or tiles or a table of chunks that the file cannot hold;
/// if a flat part has subsampled channels or claims more pixels than its compression can bring into
/// the file; or if the flat parts need more than `budget` bytes.
void checkExrLimits(const ExrFacts& facts, const std::string& path, std::uint64_t budget);

}  // namespace drevintool

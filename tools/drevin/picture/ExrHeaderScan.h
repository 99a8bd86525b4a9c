#pragma once

/// The facts of an OpenEXR header that decide how much memory reading will take, read before any
/// allocation and without trust in them.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace drevintool {

/// Corners of a window as the header gives them, both inclusive; nothing says that they are in
/// order.
struct ExrWindow {
  std::int32_t minX = 0;
  std::int32_t minY = 0;
  std::int32_t maxX = 0;
  std::int32_t maxY = 0;

  std::int64_t width() const { return std::int64_t{maxX} - minX + 1; }
  std::int64_t height() const { return std::int64_t{maxY} - minY + 1; }
};

struct ExrChannelFacts {
  std::string name;
  std::int32_t type = 0;  ///< 0 unsigned integer, 1 half, 2 float
  std::int32_t xSampling = 1;
  std::int32_t ySampling = 1;
};

struct ExrPartFacts {
  std::string name;
  std::string view;
  ExrWindow dataWindow;
  ExrWindow displayWindow;
  std::vector<ExrChannelFacts> channels;
  std::optional<std::int64_t> chunkCount;
  int compression = 0;          ///< the file's own number, 0 (none) to 9
  std::uint32_t tileWidth = 0;  ///< 0 if the part has no tiles
  std::uint32_t tileHeight = 0;
  bool severalLevels = false;  ///< of tiles, the full one first
  bool tiled = false;
  bool deep = false;
};

struct ExrFacts {
  std::uint64_t fileSize = 0;
  std::uint64_t headersEnd = 0;  ///< where the tables of chunks begin, part after part
  bool multiPart = false;        ///< chunks begin with the number of their part
  std::vector<ExrPartFacts> parts;
};

/// Reads the headers of all parts. Throws ToolError (InputUnreadable) with one line that names the
/// file if it is missing, no regular file, no OpenEXR file, or if an attribute does not fit in it.
ExrFacts scanExrHeader(const std::string& path);

}  // namespace drevintool

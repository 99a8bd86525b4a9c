#pragma once

/// The blocks of a part: where its table says that they lie, and what their own heads say.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "picture/ExrHeaderScan.h"
#include "picture/FileBytes.h"

namespace drevintool {

/// Bytes of one chunk's entry in the table of chunks.
constexpr std::uint64_t kChunkEntryBytes = 8;

/// Where in its part a block belongs, and how much it holds.
struct ChunkPlace {
  std::array<std::int32_t, 4> numbers;  ///< tile column, tile row and level, or the row alone
  std::size_t count;                    ///< of the numbers that are stored
  std::uint64_t pixels;
  std::uint64_t fullPixels;  ///< of a block that no edge cuts
};

/// Walks over the blocks of a scanline part from the top, over those of the first level of a tiled
/// part by rows of tiles from the top. The part's sizes must have passed checkExrLimits. Everything
/// throws ToolError (InputUnreadable) with one line that names the file, and the block if it is at
/// fault.
class ExrChunks {
 public:
  /// Reads the part's table of blocks. `facts` must outlive this.
  ExrChunks(const std::string& path, const ExrFacts& facts, std::size_t part);

  std::size_t size() const { return offsets_.size(); }
  const ExrPartFacts& part() const { return part_; }
  /// Behind enter(), the sizes in the block's head come next.
  FileBytes& bytes() { return bytes_; }

  /// Goes to a block and over its place, of which it checks that the table is right. `sizeBytes` is
  /// what must follow in the file at least.
  ChunkPlace enter(std::size_t block, std::uint64_t sizeBytes);

  [[noreturn]] void failBlock(std::size_t block, const std::string& reason) const;

 private:
  std::uint64_t tableStart() const;
  void readTable();
  ChunkPlace placeOf(std::size_t block) const;
  ChunkPlace rowsPlace(std::size_t block) const;
  ChunkPlace tilePlace(std::size_t block) const;
  [[noreturn]] void fail(const std::string& reason) const;

  FileBytes bytes_;
  const ExrFacts& facts_;
  const ExrPartFacts& part_;
  std::size_t number_;
  std::vector<std::uint64_t> offsets_;
};

}  // namespace drevintool

#include "picture/ExrChunks.h"

#include <algorithm>

#include "picture/ExrLimits.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {

ExrChunks::ExrChunks(const std::string& path, const ExrFacts& facts, std::size_t part)
    : bytes_(path), facts_(facts), part_(facts.parts[part]), number_(part) {
  readTable();
}

// The tables of all parts follow the headers, each as long as its part's chunk count.
std::uint64_t ExrChunks::tableStart() const {
  std::uint64_t start = facts_.headersEnd;
  for (std::size_t part = 0; part < number_; ++part) {
    const ExrPartFacts& before = facts_.parts[part];
    const std::int64_t chunks = before.chunkCount.value_or(-1);
    const bool sane =
        before.severalLevels ? chunks >= chunksOf(before) : chunks == chunksOf(before);
    if (!sane) fail("damaged: part " + std::to_string(part) + " has a wrong number of blocks");
    start += static_cast<std::uint64_t>(chunks) * kChunkEntryBytes;
  }
  return start;
}

void ExrChunks::readTable() {
  const auto chunks = static_cast<std::uint64_t>(chunksOf(part_));
  const std::uint64_t start = tableStart();
  if (start > bytes_.size() || chunks > (bytes_.size() - start) / kChunkEntryBytes) {
    fail("damaged or unfinished: the file ends inside its table of blocks");
  }
  bytes_.seek(start);
  offsets_.resize(static_cast<std::size_t>(chunks));
  for (std::uint64_t& offset : offsets_)
    offset = bytes_.u64();
}

ChunkPlace ExrChunks::placeOf(std::size_t block) const {
  return part_.tiled ? tilePlace(block) : rowsPlace(block);
}

ChunkPlace ExrChunks::rowsPlace(std::size_t block) const {
  const ExrWindow& window = part_.dataWindow;
  const std::int64_t rows = rowsOfChunk(part_);
  const std::int64_t above = static_cast<std::int64_t>(block) * rows;
  const std::int64_t held = std::min(rows, window.height() - above);
  return {{static_cast<std::int32_t>(window.minY + above)},
          1,
          static_cast<std::uint64_t>(window.width() * held),
          static_cast<std::uint64_t>(window.width() * rows)};
}

ChunkPlace ExrChunks::tilePlace(std::size_t block) const {
  const ExrWindow& window = part_.dataWindow;
  const std::int64_t across = (window.width() + part_.tileWidth - 1) / part_.tileWidth;
  const std::int64_t column = static_cast<std::int64_t>(block) % across;
  const std::int64_t row = static_cast<std::int64_t>(block) / across;
  const std::int64_t width =
      std::min<std::int64_t>(part_.tileWidth, window.width() - column * part_.tileWidth);
  const std::int64_t height =
      std::min<std::int64_t>(part_.tileHeight, window.height() - row * part_.tileHeight);
  return {{static_cast<std::int32_t>(column), static_cast<std::int32_t>(row), 0, 0},
          4,
          static_cast<std::uint64_t>(width * height),
          std::uint64_t{part_.tileWidth} * part_.tileHeight};
}

ChunkPlace ExrChunks::enter(std::size_t block, std::uint64_t sizeBytes) {
  const ChunkPlace place = placeOf(block);
  const std::uint64_t offset = offsets_[block];
  const std::uint64_t head = sizeof(std::int32_t) * (place.count + (facts_.multiPart ? 1 : 0));
  if (offset == 0) failBlock(block, "is missing: the file is unfinished");
  if (offset < facts_.headersEnd || offset > bytes_.size() ||
      bytes_.size() - offset < head + sizeBytes) {
    failBlock(block, "lies outside the file: damaged or unfinished");
  }
  bytes_.seek(offset);
  bool same = !facts_.multiPart || bytes_.i32() == static_cast<std::int32_t>(number_);
  for (std::size_t i = 0; i < place.count; ++i)
    same = bytes_.i32() == place.numbers[i] && same;
  if (!same) failBlock(block, "is damaged: it stands for another place of the picture");
  return place;
}

void ExrChunks::failBlock(std::size_t block, const std::string& reason) const {
  fail("block " + std::to_string(block + 1) + " of " + std::to_string(size()) + " " + reason);
}

void ExrChunks::fail(const std::string& reason) const {
  throw ToolError(ExitCode::InputUnreadable, oneLine(bytes_.path()) + ": " + reason);
}

}  // namespace drevintool

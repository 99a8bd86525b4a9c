#include "deep/DeepChunks.h"

#include <algorithm>
#include <array>

#include "picture/ExrLimits.h"
#include "picture/FileBytes.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

constexpr std::uint64_t kTableEntryBytes = 8;

// Where in its part a block belongs: tile column, tile row and level, or the row alone.
struct Place {
  std::array<std::int32_t, 4> numbers;
  std::size_t count;  // of the numbers that are stored
  std::uint64_t pixels;
  std::uint64_t tablePixels;  // tiles at the edges may have a count for every pixel of a full tile
};

class DeepChunkScan {
 public:
  DeepChunkScan(const std::string& path, const ExrFacts& facts, std::size_t part)
      : bytes_(path), facts_(facts), part_(facts.parts[part]), number_(part) {
    for (const ExrChannelFacts& channel : part_.channels)
      sampleBytes_ += channel.type == 1 ? 2 : 4;
  }

  std::vector<std::uint64_t> samples() {
    const std::vector<std::uint64_t> offsets = table();
    std::vector<std::uint64_t> samples;
    samples.reserve(offsets.size());
    for (std::size_t block = 0; block < offsets.size(); ++block)
      samples.push_back(samplesOf(block, offsets[block]));
    return samples;
  }

 private:
  // The tables of all parts follow the headers, each as long as its part's chunk count.
  std::uint64_t tableStart() const {
    std::uint64_t start = facts_.headersEnd;
    for (std::size_t part = 0; part < number_; ++part) {
      const ExrPartFacts& before = facts_.parts[part];
      const std::int64_t chunks = before.chunkCount.value_or(-1);
      const bool sane =
          before.severalLevels ? chunks >= chunksOf(before) : chunks == chunksOf(before);
      if (!sane) fail("damaged: part " + std::to_string(part) + " has a wrong number of blocks");
      start += static_cast<std::uint64_t>(chunks) * kTableEntryBytes;
    }
    return start;
  }

  std::vector<std::uint64_t> table() {
    const auto chunks = static_cast<std::uint64_t>(chunksOf(part_));
    const std::uint64_t start = tableStart();
    if (start > bytes_.size() || chunks > (bytes_.size() - start) / kTableEntryBytes) {
      fail("damaged or unfinished: the file ends inside its table of blocks");
    }
    bytes_.seek(start);
    std::vector<std::uint64_t> offsets(static_cast<std::size_t>(chunks));
    for (std::uint64_t& offset : offsets)
      offset = bytes_.u64();
    return offsets;
  }

  Place placeOf(std::size_t block) const {
    const ExrWindow& window = part_.dataWindow;
    if (!part_.tiled) {
      const auto row = static_cast<std::int32_t>(window.minY + static_cast<std::int64_t>(block));
      const auto pixels = static_cast<std::uint64_t>(window.width());
      return {{row}, 1, pixels, pixels};
    }
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

  std::uint64_t samplesOf(std::size_t block, std::uint64_t offset) {
    const Place place = placeOf(block);
    constexpr std::uint64_t kSizes = 3 * sizeof(std::uint64_t);
    const std::uint64_t head = sizeof(std::int32_t) * (place.count + (facts_.multiPart ? 1 : 0));
    if (offset == 0) failBlock(block, "is missing: the file is unfinished");
    if (offset < facts_.headersEnd || offset > bytes_.size() ||
        bytes_.size() - offset < head + kSizes) {
      failBlock(block, "lies outside the file: damaged or unfinished");
    }
    bytes_.seek(offset);
    checkPlace(block, place);
    return checkedSamples(block, place);
  }

  void checkPlace(std::size_t block, const Place& place) {
    bool same = !facts_.multiPart || bytes_.i32() == static_cast<std::int32_t>(number_);
    for (std::size_t i = 0; i < place.count; ++i)
      same = bytes_.i32() == place.numbers[i] && same;
    if (!same) failBlock(block, "is damaged: it stands for another place of the picture");
  }

  std::uint64_t checkedSamples(std::size_t block, const Place& place) {
    const std::uint64_t countBytes = bytes_.u64();
    const std::uint64_t packed = bytes_.u64();
    const std::uint64_t unpacked = bytes_.u64();
    if (countBytes > bytes_.left() || packed > bytes_.left() - countBytes) {
      failBlock(block, "ends outside the file: damaged or unfinished");
    }
    const bool plain = part_.compression == 0;
    const std::uint64_t least = plain ? place.pixels * sizeof(std::uint32_t) : 0;
    const bool counts =
        countBytes >= least && countBytes <= place.tablePixels * sizeof(std::uint32_t);
    const bool samples =
        plain ? packed == unpacked : unpacked / mostCompression(part_.compression) <= packed;
    if (!counts || !samples || unpacked % sampleBytes_ != 0) {
      failBlock(block, "is damaged: its sizes contradict each other");
    }
    return unpacked / sampleBytes_;
  }

  [[noreturn]] void failBlock(std::size_t block, const std::string& reason) const {
    fail("block " + std::to_string(block + 1) + " of " + std::to_string(chunksOf(part_)) + " " +
         reason);
  }

  [[noreturn]] void fail(const std::string& reason) const {
    throw ToolError(ExitCode::InputUnreadable, oneLine(bytes_.path()) + ": " + reason);
  }

  FileBytes bytes_;
  const ExrFacts& facts_;
  const ExrPartFacts& part_;
  std::size_t number_;
  std::uint64_t sampleBytes_ = 0;
};

}  // namespace

std::vector<std::uint64_t> scanDeepChunks(const std::string& path, const ExrFacts& facts,
                                          std::size_t part) {
  return DeepChunkScan(path, facts, part).samples();
}

}  // namespace drevintool

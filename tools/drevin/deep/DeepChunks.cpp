#include "deep/DeepChunks.h"

#include "picture/ExrChunks.h"
#include "picture/ExrLimits.h"

namespace drevintool {
namespace {

class DeepChunkScan {
 public:
  DeepChunkScan(const std::string& path, const ExrFacts& facts, std::size_t part)
      : chunks_(path, facts, part),
        sampleBytes_(static_cast<std::uint64_t>(bytesOfPixel(chunks_.part()))) {}

  std::vector<std::uint64_t> samples() {
    std::vector<std::uint64_t> samples;
    samples.reserve(chunks_.size());
    for (std::size_t block = 0; block < chunks_.size(); ++block) {
      constexpr std::uint64_t kSizes = 3 * sizeof(std::uint64_t);
      const ChunkPlace place = chunks_.enter(block, kSizes);
      samples.push_back(checkedSamples(block, place));
    }
    return samples;
  }

 private:
  std::uint64_t checkedSamples(std::size_t block, const ChunkPlace& place) {
    FileBytes& bytes = chunks_.bytes();
    const std::uint64_t countBytes = bytes.u64();
    const std::uint64_t packed = bytes.u64();
    const std::uint64_t unpacked = bytes.u64();
    if (countBytes > bytes.left() || packed > bytes.left() - countBytes) {
      chunks_.failBlock(block, "ends outside the file: damaged or unfinished");
    }
    const int compression = chunks_.part().compression;
    const bool plain = compression == 0;
    const std::uint64_t least = plain ? place.pixels * sizeof(std::uint32_t) : 0;
    // Tiles at the edges may have a count for every pixel of a full tile.
    const bool counts =
        countBytes >= least && countBytes <= place.fullPixels * sizeof(std::uint32_t);
    const bool samples =
        plain ? packed == unpacked : unpacked / mostCompression(compression) <= packed;
    if (!counts || !samples || unpacked % sampleBytes_ != 0) {
      chunks_.failBlock(block, "is damaged: its sizes contradict each other");
    }
    return unpacked / sampleBytes_;
  }

  ExrChunks chunks_;
  std::uint64_t sampleBytes_;
};

}  // namespace

std::vector<std::uint64_t> scanDeepChunks(const std::string& path, const ExrFacts& facts,
                                          std::size_t part) {
  return DeepChunkScan(path, facts, part).samples();
}

}  // namespace drevintool

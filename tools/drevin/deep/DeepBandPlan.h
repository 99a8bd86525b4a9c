#pragma once

/// How a deep part is cut into bands of rows that are read one at a time.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "picture/ExrHeaderScan.h"
#include "picture/MemoryBudget.h"

namespace drevintool {

/// Most samples of one pixel; more of them are taken for damage.
constexpr std::uint32_t kMostPixelSamples = 1U << 16;
/// Most samples of one pixel that are thick: where each of them overlaps all others, cutting them
/// makes pieces by the square of their number.
constexpr std::uint32_t kMostThickSamples = 1U << 11;
/// Most samples of one band.
constexpr std::uint64_t kMostBandSamples = std::uint64_t{1} << 26;

/// Rows of the file, both ends inclusive, and the samples of all their pixels.
struct DeepBandRows {
  int first = 0;
  int last = 0;
  std::uint64_t samples = 0;
};

/// The bands from the top of the part to its bottom: each row of tiles, or up to 64 scanlines with
/// about a million samples at most, but at least one.
class DeepBandPlan {
 public:
  /// `chunkSamples` is what scanDeepChunks says of the part. Throws ToolError (InputUnreadable)
  /// with one line that names the file, the rows and their samples if a band has too many of them,
  /// or if reading it with `channels` channels would take more than the budget.
  DeepBandPlan(const ExrPartFacts& part, const std::vector<std::uint64_t>& chunkSamples,
               std::size_t channels, const std::string& path, const MemoryBudget& budget);

  std::size_t size() const { return bands_.size(); }
  const DeepBandRows& operator[](std::size_t band) const { return bands_[band]; }
  /// The band with that row of the part.
  std::size_t bandOf(int row) const;

 private:
  std::vector<DeepBandRows> bands_;
};

}  // namespace drevintool

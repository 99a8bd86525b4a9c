#include "deep/DeepBandPlan.h"

#include <algorithm>

#include "picture/ExrLimits.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

std::vector<DeepBandRows> tileRows(const ExrPartFacts& part,
                                   const std::vector<std::uint64_t>& chunkSamples) {
  const ExrWindow& window = part.dataWindow;
  const auto across =
      static_cast<std::size_t>((window.width() + part.tileWidth - 1) / part.tileWidth);
  std::vector<DeepBandRows> bands;
  std::int64_t first = window.minY;
  for (std::size_t tile = 0; tile < chunkSamples.size(); ++tile) {
    if (tile % across == 0) {
      const std::int64_t last = std::min<std::int64_t>(first + part.tileHeight - 1, window.maxY);
      bands.push_back({static_cast<int>(first), static_cast<int>(last), 0});
      first += part.tileHeight;
    }
    bands.back().samples += chunkSamples[tile];
  }
  return bands;
}

std::vector<DeepBandRows> scanlines(const ExrPartFacts& part,
                                    const std::vector<std::uint64_t>& chunkSamples) {
  constexpr int kMostRows = 64;
  constexpr std::uint64_t kFullSamples = std::uint64_t{1} << 20;
  std::vector<DeepBandRows> bands;
  int row = part.dataWindow.minY;
  for (const std::uint64_t samples : chunkSamples) {
    const bool fits = !bands.empty() && row - bands.back().first < kMostRows &&
                      bands.back().samples + samples <= kFullSamples;
    if (!fits) bands.push_back({row, row, 0});
    bands.back().last = row;
    bands.back().samples += samples;
    ++row;
  }
  return bands;
}

std::string rowsText(const DeepBandRows& band) {
  return band.first == band.last
             ? "row " + std::to_string(band.first) + " holds "
             : "rows " + std::to_string(band.first) + " to " + std::to_string(band.last) + " hold ";
}

// Of one band while it is read: its floats, and a count, a place and a pointer for each channel in
// every pixel.
double bandBytes(const DeepBandRows& band, const ExrPartFacts& part, std::size_t channels) {
  const double pixels = static_cast<double>(part.dataWindow.width()) *
                        static_cast<double>(std::int64_t{band.last} - band.first + 1);
  const double perPixel = static_cast<double>(4 + 8 + 8 * channels);
  return static_cast<double>(band.samples) * 4.0 * static_cast<double>(channels) +
         pixels * perPixel;
}

}  // namespace

DeepBandPlan::DeepBandPlan(const ExrPartFacts& part, const std::vector<std::uint64_t>& chunkSamples,
                           std::size_t channels, const std::string& path,
                           const MemoryBudget& budget)
    : bands_(part.tiled ? tileRows(part, chunkSamples) : scanlines(part, chunkSamples)) {
  // The library keeps the sample counts of a scanline part.
  const double kept = part.tiled ? 0.0
                                 : 4.0 * static_cast<double>(part.dataWindow.width()) *
                                       static_cast<double>(part.dataWindow.height());
  for (const DeepBandRows& band : bands_) {
    if (band.samples > kMostBandSamples) {
      throw ToolError(ExitCode::InputUnreadable,
                      oneLine(path) + ": " + rowsText(band) + std::to_string(band.samples) +
                          " samples, more than the " + std::to_string(kMostBandSamples) +
                          " that can be read at once");
    }
    checkMemory(kept + bandBytes(band, part, channels), budget, path,
                rowsText(band) + std::to_string(band.samples) + " samples; reading them ");
  }
}

std::size_t DeepBandPlan::bandOf(int row) const {
  const auto behind =
      std::upper_bound(bands_.begin(), bands_.end(), row,
                       [](int wanted, const DeepBandRows& band) { return wanted < band.first; });
  return static_cast<std::size_t>(behind - bands_.begin()) - 1;
}

}  // namespace drevintool

#pragma once

/// Some rows of a deep part in memory.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "DDImage/ChannelMap.h"

namespace drevintool {

/// Figures of the samples that were read.
struct DeepSampleCounts {
  std::uint64_t samples = 0;
  std::uint64_t thick = 0;      ///< whose back lies behind the front
  std::uint64_t notFinite = 0;  ///< with a depth or a value that is NaN or infinite
  std::uint64_t inverted = 0;   ///< whose back lies before the front
  std::uint64_t unsorted = 0;   ///< pixels whose samples are not stored nearest first
  std::uint64_t mostPerPixel = 0;
};

/// Samples of whole rows of a part, pixel by pixel, the rows as in the file (downward). Each
/// pixel's samples lie nearest first, each with one float per channel of the map in the map's
/// order.
struct DeepBand {
  int firstRow = 0;
  std::size_t width = 0;
  DD::Image::ChannelMap channels;
  std::vector<std::size_t> starts;  ///< the first sample of each pixel, and at the end their number
  std::vector<float> values;
  DeepSampleCounts counts;

  std::size_t bytes() const {
    return starts.size() * sizeof(std::size_t) + values.size() * sizeof(float);
  }
};

}  // namespace drevintool

#pragma once

/// What a render will take, as an estimate.

#include <cstdint>
#include <optional>

#include "deep/DeepExrSource.h"
#include "inspect/BlurPrediction.h"
#include "picture/Picture.h"

namespace drevintool {

struct PredictedCost {
  double seconds = 0.0;  ///< of the blur alone, wall time, on all processors that may be used
  std::uint64_t memoryBytes = 0;  ///< of the whole command at its peak
};

/// The cost of a flat render whose blurs are known; nothing for views of depth and aperture.
///
/// Time is measured: of every s-th pixel in both directions a small picture (see strideFor) is made
/// and rendered with blurs 1/s as large, the quickest of three times, or of fewer where those take
/// seconds. The whole is then
///
///   t = t_small * N (c + B) / (n (c + b))
///
///   N, n  pixels of the two pictures
///   B, b  their largest blurs in pixels, b = B / s
///   c     blur for which a pixel costs twice what it costs without any, 44 px
///
/// Memory is a plain sum: the program; the file's samples; each channel as floats and the result's;
/// and the node's work of 45 bytes a pixel (19 beyond 8.3 million pixels) and half a megabyte for
/// each pixel of blur; mattes as they are read and as floats. Both were fitted to measured renders;
/// docs/help-with-depth.md has the errors.
std::optional<PredictedCost> predictCost(const AskedRender& asked, const Picture& picture,
                                         const PredictedBlur& blur);

/// What a deep picture holds, as inspectDeep counts it.
struct DeepAmounts {
  std::uint64_t samples = 0;
  std::uint64_t pieces = 0;  ///< into which they are cut, nearest first
};

/// The same of a deep render without a flat picture beside it, its samples nearest first. Memory is
/// the program, 83 bytes a pixel, 36 bytes a sample and its bytes in the bands that stay in memory
/// (at most 64 MiB), a quarter to half a megabyte for each pixel of blur, by the size of the
/// picture, and for each piece beyond the samples 0.39 bytes for each pixel of blur and 32 more.
/// That was fitted to the same renders, the pieces to one volume. Throws what reading rows throws.
std::optional<PredictedCost> predictCost(const AskedRender& asked, DeepExrSource& deep,
                                         const DeepAmounts& amounts, const PredictedBlur& blur);

}  // namespace drevintool

#pragma once

/// What a render will take, as an estimate.

#include <cstdint>
#include <optional>

#include "inspect/BlurPrediction.h"
#include "picture/Picture.h"

namespace drevintool {

struct PredictedCost {
  double seconds = 0.0;  ///< of the blur alone, wall time, on all processors that may be used
  std::uint64_t memoryBytes = 0;  ///< of the whole command at its peak
};

/// The cost of a flat render whose blurs are known; nothing for views of depth and aperture.
///
/// Time is measured: of every s-th pixel in both directions a small picture of about 100000 pixels
/// is made and rendered with blurs 1/s as large, the quickest of three times. The whole is then
///
///   t = t_small * N (c + B) / (n (c + b))
///
///   N, n  pixels of the two pictures
///   B, b  their largest blurs in pixels, b = B / s
///   c     blur for which a pixel costs twice what it costs without any, 44 px
///
/// Memory is a plain sum: the program; the file's samples; each channel as floats and the result's;
/// and the node's work of 45 bytes a pixel (19 beyond 8.3 million pixels) and half a megabyte for
/// each pixel of blur. Both were fitted to measured renders; docs/help-with-depth.md has the
/// errors.
std::optional<PredictedCost> predictCost(const AskedRender& asked, const Picture& picture,
                                         const PredictedBlur& blur);

}  // namespace drevintool

#pragma once

/// Splatting: one source pixel scattered through its kernel onto one output row.

#include <cstdint>
#include <vector>

#include "defocus/Bloom.h"
#include "defocus/ChromaticShift.h"
#include "kernel/KernelBank.h"

namespace drevin {

/// The output row being made: columns [left, right) of row y.
struct dvOutputSpan {
  int left = 0;
  int y = 0;
  int right = 0;
};

/// What the splat reads besides the pixel; fixed while rows are produced.
struct dvSplatSettings {
  dvBloom bloom;
  dvChromaticAberration chromatic;
  bool bloomOnly = false;  ///< colour channels splat their bloom alone
};

/// One source pixel.
struct dvSplatSource {
  int clampedX = 0;  ///< place inside the image, for the bloom's radial position
  int clampedY = 0;
  int x = 0;  ///< place of the kernel's centre; may lie outside the image
  int y = 0;
  float coc = 1.0F;         ///< blur diameter, px; NaN and out-of-bank sizes use the last kernel
  std::uint64_t slice = 0;  ///< first index of the accumulators; out of range: not splatted
  float weight = 1.0F;      ///< of the whole contribution; 0 or less: not splatted
  const float* pixel = nullptr;  ///< values indexed by channel number
  float bloomMatte = 1.0F;
  float chromaticMatte = 1.0F;
};

/// Rows by slice and channel number, each addressed by absolute column.
using dvAccumulatorRows = std::vector<std::vector<float*>>;

/// Adds the part of the source's kernel that falls on `out` into the accumulators of its slice:
///   colour[c][i] += K * v * w,   weight[c][i] += K * w
///
///   K  kernel value of channel c   v  pixel value with its bloom   w  blend weight * source weight
///
/// Two bank entries, k = floor(coc) and k + 2, are blended so that their mean side is the blur.
/// `channels` are the channels to splat, ascending, each with planes in the bank. Kernel rows run
/// against the image: the row above the source takes the kernel row below the centre. A value of
/// NaN or infinity spreads over the whole kernel square, zero kernel values included.
void convole(const dvSplatSettings& settings, const dvKernelBank& bank, const dvOutputSpan& out,
             const dvSplatSource& source, const std::vector<int>& channels,
             dvAccumulatorRows& colour, dvAccumulatorRows& weight);

}  // namespace drevin

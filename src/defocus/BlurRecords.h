#pragma once

/// Blur records: what the splat needs to know of each pixel of a source row besides its colour.

#include <cstdint>
#include <vector>

#include "defocus/DepthToBlur.h"

namespace drevin {

/// Which side of the focal plane reaches the output.
enum class dvFocusOutput { Both, Front, Back };

/// How depths become blur records; fixed while rows are produced.
struct dvBlurSettings {
  dvLens lens;
  int slices = 1;
  std::vector<float> sliceStarts;
  dvFocusOutput focusOutput = dvFocusOutput::Both;
};

struct dvBlurRecord {
  float coc = 1.0F;         ///< blur diameter, px; at least 1, or NaN
  bool splatted = true;     ///< false where the focus output excludes the pixel's region
  std::uint64_t slice = 0;  ///< corrective slice; dvNoSlice in front of the first
};

/// Whether the focus output shows a region; unordered depths count as back.
bool showsRegion(dvFocusOutput output, dvFocusRegion region);

/// The record of one pixel; `defocusMatte` is 1 where no matte is used.
dvBlurRecord blurRecord(float rawDepth, float defocusMatte, const dvBlurSettings& settings);

}  // namespace drevin

#pragma once

/// Blur records: what the splat needs to know of each pixel of a source row besides its colour.

#include <cstdint>
#include <vector>

#include "defocus/CorrectiveSlices.h"
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
inline bool showsRegion(dvFocusOutput output, dvFocusRegion region) {
  if (output == dvFocusOutput::Both) return true;
  const bool front = region == dvFocusRegion::Front;
  return front == (output == dvFocusOutput::Front);
}

/// The record of one pixel; `defocusMatte` is 1 where no matte is used.
inline dvBlurRecord blurRecord(float rawDepth, float defocusMatte, const dvBlurSettings& settings) {
  const dvBlur blur = depthToBlur(rawDepth, settings.lens);
  dvBlurRecord record;
  record.coc = splattedCoc(blur.coc, defocusMatte);
  record.splatted = showsRegion(settings.focusOutput, blur.region);
  record.slice = sliceIndex(blur.depth, settings.slices, settings.sliceStarts);
  return record;
}

}  // namespace drevin

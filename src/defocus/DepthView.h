#pragma once

/// The depth visualizations of a flat picture: blur size and focus side, one row of one channel.

#include "defocus/DepthToBlur.h"
#include "defocus/PassValue.h"

namespace drevin {

/// Writes columns [x, r) of `out` for channel 1, 2 or 3 (red, green, blue) from raw depths. Both
/// pointers are addressed by absolute column. No matte and no least blur is applied.
void depthViewRow(const float* depth, int channel, int x, int r, const dvLens& lens,
                  const dvPassSettings& settings, float* out);

}  // namespace drevin

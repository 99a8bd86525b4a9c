#pragma once

/// The filter-shape output: the hero kernel drawn from the image's origin.

#include "kernel/KernelImage.h"

namespace drevin {

/// Writes out[x] to out[r - 1] of image row y: the hero's plane `channel`, pixel (0, 0) at image
/// pixel (0, 0), as it stands; 0 outside the hero (below 0 as well as beyond its side) and for a
/// channel that the hero does not have. `out` is indexed by absolute column.
void filterShapeRow(const dvChannelFloatBuffer& hero, int channel, int y, int x, int r, float* out);

}  // namespace drevin

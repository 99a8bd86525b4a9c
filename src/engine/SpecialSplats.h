#pragma once

/// Splats of values that are not finite, one kernel value after the other.

#include <vector>

#include "engine/SplatLine.h"

namespace drevin {

/// Adds the kernels of a slice's special splats to the sums of output row y, columns [left, right):
///   colour[c] += K * value[c] * share,   weight += K * share
/// for both kernels whose share is not 0 or less, zero kernel values included. `sums` are the
/// planes of as many values, or less, as the splats have, then that of the weight; index 0 is
/// column `left`.
void addSpecialSplats(const std::vector<dvSpecialSplat>& splats, std::uint32_t slice, int dy,
                      const dvKernelTable& kernels, int left, int right,
                      std::vector<std::vector<double>>& sums);

}  // namespace drevin

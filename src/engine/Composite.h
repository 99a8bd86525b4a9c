#pragma once

/// Slices laid one under the other, the nearest first.

#include <cstddef>
#include <vector>

#include "engine/FrameBox.h"

namespace drevin {

/// Lays the sums of a slice under what is there, as far as there is room, for some columns:
///
///   share       = min(1, (1 - coverage) / weight)
///   colour[c]  += share * sums[c]
///   coverage   += share * weight
///
/// `sums` are values, then weight. A weight that is NaN has a share of 1.
void compositeSlice(const std::vector<std::vector<double>>& sums, const dvColumnSpan& columns,
                    const std::vector<float*>& colours, double* coverage);

/// Divides colours by the coverage where that is above 0, columns [0, width).
void divideByCoverage(const std::vector<float*>& colours, const double* coverage, int width);

/// The same of a colour whose sums are those of the coverage.
void divideCoverageByItself(const double* coverage, int width, float* colour);

}  // namespace drevin

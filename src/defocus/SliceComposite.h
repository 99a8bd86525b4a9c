#pragma once

/// Compositing the corrective slices of one channel into the output row.

#include <cstddef>

#include "defocus/SliceAccumulators.h"

namespace drevin {

/// Slices front to back, each capped by the coverage still free, then divided by the coverage:
///   room = 1 - K,  f = room < W ? room / W : 1,  out += f * C,  K += min(W, room);  out /= K
///
///   C, W  flushed colour and weight sums of a slice    K  coverage, 0 at first
///
/// `channelPlace` is the channel's place in the accumulators' channel list; `out` is addressed by
/// absolute column and written over [left, right). Where K is not above 0 (nothing was splatted, or
/// NaN) the undivided sum stays.
void compositeSlices(const dvSliceAccumulators& accumulators, std::size_t channelPlace, float* out);

}  // namespace drevin

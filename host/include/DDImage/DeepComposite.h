#pragma once

/// The host's own merge of deep samples.

#include "DDImage/ChannelMap.h"
#include "DDImage/DeepPixel.h"

namespace DD {
namespace Image {

/// Appends to `out` the samples of `in` made tidy: nearest first, no two in a common stretch of
/// depth. Needs front, back and alpha among the channels of `in`, which are also those of `out`; a
/// flat depth is written as the front.
///
/// The published rules for deep pixels hold, in double precision. Samples are cut at every front
/// and back; a piece that is the share f of its sample's depth has
///   alpha' = 1 - (1 - alpha)^f,   colour' = colour * alpha' / alpha    (colour * f for alpha 0)
/// Pieces of one stretch are media that share the space: alpha = 1 - prod(1 - a_i), and with
/// u_i = -log(1 - a_i), U = sum u_i: colour = sum(colour_i * u_i / a_i) * alpha / U, as limits for
/// a_i 0 and 1. Points at one depth are composited one over the other in their order, and come
/// before a stretch that begins there. Alpha is limited to [0, 1], NaN to 0. A back in front of its
/// front counts as the front.
DD_EXPORT void CombineOverlappingSamples(const ChannelMap& channels, const DeepPixel& in,
                                         DeepOutPixel& out);

}  // namespace Image
}  // namespace DD

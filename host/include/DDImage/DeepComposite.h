#pragma once

/// The host's own merge of deep samples.

#include "DDImage/ChannelMap.h"
#include "DDImage/DeepPixel.h"

namespace DD {
namespace Image {

/// Appends to `out` the samples of `in` made tidy: nearest first, no two in a common stretch of
/// depth. `channels` are those written, as a rule those of `in`; one that `in` lacks is read as 0.
/// The front and the flat depth are written as the front; what is neither depth nor alpha is a
/// premultiplied colour.
///
/// The published rules for deep pixels hold, in double precision. Samples are cut at every front
/// and back; a piece that is the share f of its sample's depth has
///   alpha' = 1 - (1 - alpha)^f,   colour' = colour * alpha' / alpha    (colour * f for alpha 0)
/// Pieces of one stretch are media that share the space: alpha = 1 - prod(1 - a_i), and with
/// u_i = -log(1 - a_i), U = sum u_i: colour = sum(colour_i * u_i / a_i) * alpha / U, as limits for
/// a_i 0 and 1: of opaque pieces alone the mean, where there are any. Points at one depth are
/// composited one over the other in the order in which they are stored, and come before a stretch
/// that begins there. Alpha is limited to [0, 1], NaN to 0. A back in front of its front counts as
/// the front.
///
/// A NaN depth is infinitely far, and written so. Of a sample that reaches to infinity a bounded
/// piece has the share 0: its alpha, unless it is 1, lies at the open end, half at each if both
/// are.
///
/// Without a back all samples are points. Without a front or alpha nothing can be merged: samples
/// are copied, sorted by the front and back that there are.
DD_EXPORT void CombineOverlappingSamples(const ChannelMap& channels, const DeepPixel& in,
                                         DeepOutPixel& out);

}  // namespace Image
}  // namespace DD

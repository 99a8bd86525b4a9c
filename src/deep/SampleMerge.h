#pragma once

/// The merge of overlapping deep samples that precedes the deep defocus.

#include <cstddef>
#include <vector>

#include "deep/DeepSamples.h"

namespace drevin {

/// A sample thinner than this is a point and is never cut.
constexpr float dvThinSample = 1e-6F;

/// A part of a sample.
struct dvDeepPiece {
  std::size_t sample = 0;  ///< index of the sample that it is cut from
  float front = 0.0F;
  float back = 0.0F;
  float fraction = 1.0F;  ///< of the sample's depth length; may be 0 or negative
  bool whole = true;      ///< not cut: values are copied, not scaled
};

/// Emits the pieces of sample `index` and of the lower-index samples that it reaches into, and
/// returns its back depth. `index` is lowered by the number of samples reached.
///
/// Sample k (front F, back B, t = B - F) is whole if it is thin, is the first, or does not reach
/// past the front P of sample k - 1. Else it leaves (F, P) with the fraction (P - F) / t; then come
/// the pieces of sample k - 1; and where B is behind the back N of that sample, (N, B) with the
/// fraction (B - N) / t. The stretch that the two share belongs to sample k - 1 alone.
float addSample(const dvDeepSamples& samples, std::size_t& index, std::vector<dvDeepPiece>& pieces);

/// Appends the pieces of all samples, from the last index to the first.
///
/// The samples are taken in the order given, whichever end is the nearest. A sample that a chain
/// reaches is emitted by that chain and again on its own turn; nothing is removed or limited. NaN
/// depths compare false and leave a sample whole.
void combineSamples(const dvDeepSamples& samples, std::vector<dvDeepPiece>& pieces);

/// Sorts pieces as a deep pixel is read: by front, then back, then order of emission. NaN counts as
/// infinitely far.
void sortPieces(std::vector<dvDeepPiece>& pieces);

/// Replaces `pieces` by those of all samples in the order in which they are composited, nearest
/// first.
void mergeSamples(const dvDeepSamples& samples, std::vector<dvDeepPiece>& pieces);

/// One value of a piece: the front for the front and the flat depth, the back for the back depth,
/// else the sample's value, scaled by the fraction unless the piece is whole.
float pieceValue(const dvDeepLayout& layout, const dvDeepSamples& samples, const dvDeepPiece& piece,
                 std::size_t place);

}  // namespace drevin

#pragma once

/// Whether the values of a depth channel are distances or 1/z, guessed from the values themselves.

#include <cstddef>
#include <string>

#include "depth/DepthCodes.h"
#include "depth/DepthPlane.h"

namespace drevintool {

struct StyleGuess {
  DepthStyle style = DepthStyle::Real;
  std::string why;
};

/// How surfaces lie in the picture: a flat surface under a perspective camera is a straight line in
/// 1/z and a hollow curve in z, and what bulges towards the camera is more so.
struct SlopeVotes {
  std::size_t distances = 0;    ///< triples of pixels that are straighter in 1/value
  std::size_t reciprocals = 0;  ///< triples that are straighter in the value itself

  std::size_t all() const { return distances + reciprocals; }
};

/// Votes of all triples of pixels p - k, p, p + k in rows and columns (k is 1/64 of the plane's
/// width, at least 2) whose values are above 0, no codes, rise or fall evenly (the middle one
/// between a quarter and three quarters of the way) and differ by more than the rounding of the
/// values could bend: 0.08 of the middle one for halves, 0.004 for floats.
SlopeVotes slopeVotes(const DepthPlane& plane);

/// The guess, by the first of these that decides:
///
/// 1. values below 0: distances, for nothing in front of the camera has them in 1/z, while
///    distances have them where the axis of view points the other way or a code is negative;
/// 2. values that are all above 1 (apart from 0 and other codes): distances, for as 1/z all would
///    be nearer than one unit;
/// 3. two thirds of at least 500 votes of slopes;
/// 4. some values above 1: distances, for 1/z above 1 would be nearer than one unit;
/// 5. values from 0 to 1 with pixels of 0, which is infinitely far in 1/z: 1/z;
/// 6. else distances, which the node takes by itself.
///
/// None of this is certain but that 1/z is not below 0: a picture in 1/z of what is all nearer than
/// a unit (a close-up in metres, or 1/z times a factor) is taken for distances by 2. Distances from
/// 1 on are so much commoner that slopes, which hollow shapes can mislead, do not outweigh it.
StyleGuess guessStyle(const DepthPlane& plane);

}  // namespace drevintool

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
/// 1. two thirds of at least 500 votes;
/// 2. values above 1, or below 0: distances, for 1/z above 1 would be nearer than one unit;
/// 3. values from 0 to 1 with pixels of 0, which is infinitely far in 1/z: 1/z;
/// 4. else distances, which the node takes by itself.
StyleGuess guessStyle(const DepthPlane& plane);

}  // namespace drevintool

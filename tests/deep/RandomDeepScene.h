#pragma once

/// Deep scenes that draw every control, the pictures and the samples at random from a seed.

#include "support/Draw.h"
#include "support/LiteralDeepFrame.h"

namespace drevin::test {

/// Up to 10 samples: points, volumes and samples about as thin as a point may be, in any of the
/// usual orders; with `specials` also NaN, infinite and denormal depths, alphas and colours.
LiteralDeepPixel randomDeepPixel(Draw& draw, const LiteralSettings& settings,
                                 const std::vector<int>& channels, bool specials);

/// The scene of a seed; the same on every machine. The output type is the image or the bloom.
LiteralDeepScene randomDeepScene(unsigned seed);

}  // namespace drevin::test

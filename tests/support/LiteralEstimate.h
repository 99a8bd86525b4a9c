#pragma once

/// The literal size estimate: the largest blur of the whole frame.

#include "support/LiteralLens.h"
#include "support/LiteralPicture.h"
#include "support/LiteralSettings.h"

namespace drevin::test {

struct LiteralEstimate {
  int largest = 0;  ///< the largest diameter found, px
  int kernelSize = 0;
  int padding = 0;
  bool warned = false;
};

LiteralEstimate literalEstimate(const LiteralSettings& settings, const LiteralLens& lens,
                                const LiteralPicture& image);

}  // namespace drevin::test

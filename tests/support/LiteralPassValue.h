#pragma once

/// One channel of a visualization pixel, literally.

#include "support/LiteralSettings.h"

namespace drevin::test {

/// Writes red, green or blue (1 to 3) of the focal-distance and focus-matte outputs to `out`.
void literalPassValue(const LiteralSettings& settings, int kernelSize, float coc, int region,
                      int channel, float& out);

}  // namespace drevin::test

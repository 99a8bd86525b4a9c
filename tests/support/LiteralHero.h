#pragma once

/// The literal hero kernel: the aperture in full size, pixel by pixel in single precision.

#include <map>
#include <vector>

#include "support/LiteralPicture.h"
#include "support/LiteralSettings.h"

namespace drevin::test {

/// A square of planes by channel number, row 0 first.
struct LiteralKernel {
  int side = 0;
  std::map<int, std::vector<float>> planes;
};

/// `wanted`: the side before a Kernel image limits it. `image` may be null: nothing is connected.
LiteralKernel literalHero(const LiteralSettings& settings, const std::vector<int>& channels,
                          int wanted, const LiteralPicture* image);

}  // namespace drevin::test

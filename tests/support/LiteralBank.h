#pragma once

/// The literal kernel bank: every odd side up to the largest blur, resampled from the hero kernel.

#include <vector>

#include "support/LiteralHero.h"

namespace drevin::test {

/// The side of bank entry `index`.
int literalSide(int index);

/// All kernelSize + 5 entries, normalised together by the strongest channel of each.
std::vector<LiteralKernel> literalBank(const LiteralKernel& hero, int kernelSize);

}  // namespace drevin::test

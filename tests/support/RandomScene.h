#pragma once

/// Scenes that draw every control and every picture at random from a seed.

#include "support/LiteralFrame.h"

namespace drevin::test {

/// Channel numbers of the two channels beyond colour and depth that pictures may have.
constexpr int firstExtraChannel = 8;
constexpr int secondExtraChannel = 9;

/// The scene of a seed; the same on every machine. Pictures of a few hundred pixels with kernels up
/// to 64 px; non-finite, negative, zero and denormal depths and colours in a part of the scenes.
LiteralScene randomScene(unsigned seed);

}  // namespace drevin::test

#pragma once

/// The literal compositing of the slices of one channel at one column.

#include <cstddef>

#include "support/LiteralFrame.h"

namespace drevin::test {

/// How far, relatively, each product of a single-precision sum may stray; the sums themselves and
/// the reciprocal of the kernel's sum included.
constexpr double literalRounding = 1e-6;

/// `at`: the column from the span's left.
LiteralValue literalComposite(const LiteralSums& sums, int channel, std::size_t at);

}  // namespace drevin::test

#pragma once

/// Which two kernels make a blur.

#include <algorithm>
#include <cstddef>

#include "kernel/KernelBank.h"

namespace drevin {

/// Bank entries and their shares; the mean side of the two is the blur.
///
///   k = floor(coc),  entries k and k + 2,  shares 1 - (coc - side(k)) / 2 and the rest
///
/// Entry 0 is read as entry 1, which is the same, and the last entry stands in beyond the bank. A
/// blur that is NaN or out of the bank has the last entry alone. A share may be 0 or negative: it
/// is then not splatted.
struct dvKernelPair {
  std::size_t index[2] = {0, 0};
  float share[2] = {1.0F, 0.0F};
  int count = 1;
};

/// The bank must not be empty; `coc` in px.
inline dvKernelPair kernelPair(float coc, const dvKernelBank& bank) {
  const std::size_t last = bank.size() - 1;
  if (!(coc >= 0.0F && coc < static_cast<float>(bank.size()))) {
    return {{last, last}, {1.0F, 0.0F}, 1};
  }
  const auto k = static_cast<std::size_t>(coc);
  const float first = 1.0F - (coc - static_cast<float>(bank[k].width)) * 0.5F;
  const std::size_t least = std::min<std::size_t>(1, last);
  return {{std::max(k, least), std::min(k + 2, last)}, {first, 1.0F - first}, 2};
}

}  // namespace drevin

#pragma once

/// Which two kernels make a blur.

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
dvKernelPair kernelPair(float coc, const dvKernelBank& bank);

}  // namespace drevin

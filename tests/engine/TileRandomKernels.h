#pragma once

/// Kernel tables of random values, asymmetric, in part negative and in part zero.

#include <cstddef>
#include <random>

#include "engine/KernelTable.h"

namespace drevin::test {

/// Radii from 0 to `radius`.
inline dvKernelTable randomKernels(int radius, unsigned seed) {
  constexpr int channel = 1;
  std::mt19937 generator(seed);
  std::uniform_real_distribution<float> value(-0.3F, 1.0F);
  dvKernelBank bank(static_cast<std::size_t>(2 * radius + 2));
  for (std::size_t i = 1; i < bank.size(); i += 2) {
    bank[i].resize(static_cast<int>(i), {channel});
    for (float& v : bank[i].channels[channel]) {
      const float drawn = value(generator);
      v = drawn > 0.8F ? 0.0F : drawn;
    }
  }
  return {bank, channel};
}

}  // namespace drevin::test

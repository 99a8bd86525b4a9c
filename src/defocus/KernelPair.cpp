#include "defocus/KernelPair.h"

#include <algorithm>
#include <cmath>

namespace drevin {

dvKernelPair kernelPair(float coc, const dvKernelBank& bank) {
  const float floored = std::floor(coc);
  const std::size_t last = bank.size() - 1;
  if (!(floored >= 0.0F && floored < static_cast<float>(bank.size()))) {
    return {{last, last}, {1.0F, 0.0F}, 1};
  }
  const auto k = static_cast<std::size_t>(floored);
  const float first = 1.0F - (coc - static_cast<float>(bank[k].width)) * 0.5F;
  const std::size_t least = std::min<std::size_t>(1, last);
  return {{std::max(k, least), std::min(k + 2, last)}, {first, 1.0F - first}, 2};
}

}  // namespace drevin

#include "engine/KernelTable.h"

#include <algorithm>
#include <cstring>

namespace drevin {

namespace {

bool sameBits(float a, float b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

dvConstantStretch longestConstant(const float* row, int count) {
  dvConstantStretch longest;
  for (int begin = 0; begin < count;) {
    int end = begin + 1;
    while (end < count && sameBits(row[end], row[begin]))
      ++end;
    if (end - begin > longest.end - longest.begin) longest = {begin, end};
    begin = end;
  }
  return longest;
}

}  // namespace

dvKernelTable::dvKernelTable(const dvKernelBank& bank, int channel) {
  // Entries 0 and 1 are the same kernel of one pixel; of each pair of equal side the odd index is
  // always there.
  for (std::size_t index = 1; index < bank.size(); index += 2) {
    const float* plane = bank[index].plane(channel);
    if (plane == nullptr) break;
    kernels_.push_back(paddedKernel(bank[index], plane));
  }
}

dvKernelTable::Kernel dvKernelTable::paddedKernel(const dvChannelFloatBuffer& entry,
                                                  const float* plane) {
  Kernel kernel;
  const int side = entry.width;
  kernel.stride = side + 2 * dvKernelPad;
  kernel.values.assign(static_cast<std::size_t>(kernel.stride) * static_cast<std::size_t>(side),
                       0.0F);
  for (int r = 0; r < side; ++r) {
    const float* from = plane + static_cast<std::ptrdiff_t>(r) * side;
    std::copy_n(from, side, kernel.values.data() + r * kernel.stride + dvKernelPad);
    kernel.constant.push_back(longestConstant(from, side));
  }
  return kernel;
}

bool dvKernelTable::operator==(const dvKernelTable& other) const {
  const auto same = [](const Kernel& a, const Kernel& b) {
    return a.values.size() == b.values.size() &&
           std::memcmp(a.values.data(), b.values.data(), a.values.size() * sizeof(float)) == 0;
  };
  return std::equal(kernels_.begin(), kernels_.end(), other.kernels_.begin(), other.kernels_.end(),
                    same);
}

}  // namespace drevin

#include "engine/KernelTable.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace drevin {

namespace {

bool sameBits(float a, float b) {
  std::uint32_t bits[2];
  std::memcpy(&bits[0], &a, sizeof a);
  std::memcpy(&bits[1], &b, sizeof b);
  return bits[0] == bits[1];
}

// The part of a row from its first to its last value that is not zero (NaN is not).
dvConstantStretch nonZeroPart(const float* row, int count) {
  const auto isZero = [](float v) { return v == 0.0F; };
  const float* begin = std::find_if_not(row, row + count, isZero);
  if (begin == row + count) return {};
  int end = count;
  while (isZero(row[end - 1]))
    --end;
  return {static_cast<int>(begin - row), end};
}

dvConstantStretch longestConstant(const float* row, const dvConstantStretch& part) {
  dvConstantStretch longest;
  for (int begin = part.begin; begin < part.end;) {
    int end = begin + 1;
    while (end < part.end && sameBits(row[end], row[begin]))
      ++end;
    if (row[begin] != 0.0F && end - begin > longest.end - longest.begin) longest = {begin, end};
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
    append(bank[index], plane);
  }
  if (!empty()) describeRows();
}

void dvKernelTable::append(const dvChannelFloatBuffer& entry, const float* plane) {
  const int side = entry.width;
  values_.resize(std::max<std::size_t>(values_.size(), dvKernelPad), 0.0F);
  kernels_.push_back(static_cast<Kernel>(values_.size()));
  for (int r = 0; r < side; ++r) {
    const float* from = plane + static_cast<std::ptrdiff_t>(r) * side;
    values_.insert(values_.end(), from, from + side);
    values_.insert(values_.end(), dvKernelPad, 0.0F);
  }
}

void dvKernelTable::describeRows() {
  constexpr int far = std::numeric_limits<int>::max() / 2;
  const int largest = largestRadius();
  zeroRow_ = {static_cast<std::ptrdiff_t>(values_.size()) + largest, far, -far, -far, far, 0.0F};
  values_.insert(values_.end(), 2 * kernels_.size() - 1 + dvKernelPad, 0.0F);

  rows_.assign(static_cast<std::size_t>(2 * largest + 1) * kernels_.size(), zeroRow_);
  dvKernelRow* described = rows_.data();
  for (int dy = -largest; dy <= largest; ++dy) {
    for (int radius = 0; radius <= largest; ++radius, ++described) {
      if (std::abs(dy) > radius) continue;
      const float* values = row(radius, radius - dy);
      const dvConstantStretch part = nonZeroPart(values, 2 * radius + 1);
      if (part.begin == part.end) continue;
      const dvConstantStretch constant = longestConstant(values, part);
      *described = {
          values - values_.data() + radius, part.begin - radius,   part.end - radius,
          constant.begin - radius,          constant.end - radius, values[constant.begin]};
    }
  }
}

dvConstantStretch dvKernelTable::constant(int radius, int r) const {
  const dvKernelRow& described = rowsAt(radius - r)[radius];
  if (described.begin >= described.end) return {};
  return {described.constantBegin + radius, described.constantEnd + radius};
}

bool dvKernelTable::operator==(const dvKernelTable& other) const {
  return kernels_.size() == other.kernels_.size() &&
         std::equal(values_.begin(), values_.end(), other.values_.begin(), other.values_.end(),
                    sameBits);
}

}  // namespace drevin

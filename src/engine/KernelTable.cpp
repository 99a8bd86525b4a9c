#include "engine/KernelTable.h"

#include <algorithm>
#include <cmath>
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
    // One that is not finite would stay in what is summed up from the left.
    const bool usable = row[begin] != 0.0F && std::isfinite(row[begin]);
    if (usable && end - begin > longest.end - longest.begin) longest = {begin, end};
    begin = end;
  }
  return longest;
}

dvKernelRow rowOfZeros(std::ptrdiff_t centre) {
  constexpr int far = std::numeric_limits<int>::max() / 2;
  return {centre, far, -far, -far, far, 0.0F};
}

dvKernelRow described(const float* values, int radius, std::ptrdiff_t centre) {
  const dvConstantStretch part = nonZeroPart(values, 2 * radius + 1);
  if (part.begin == part.end) return rowOfZeros(centre);
  const dvConstantStretch constant = longestConstant(values, part);
  return {centre,
          part.begin - radius,
          part.end - radius,
          constant.begin - radius,
          constant.end - radius,
          values[constant.begin]};
}

/// Entries 0 and 1 are the same kernel of one pixel; of each pair of equal side the odd index is
/// always there.
std::size_t entryOf(int radius) {
  return 2 * static_cast<std::size_t>(radius) + 1;
}

}  // namespace

dvKernelTable::dvKernelTable(const dvKernelBank& bank, int channel) {
  dvSerial serial;
  *this = dvKernelTable(bank, channel, serial);
}

dvKernelTable::dvKernelTable(const dvKernelBank& bank, int channel, dvParallel& parallel) {
  while (entryOf(largestRadius_ + 1) < bank.size() &&
         bank[entryOf(largestRadius_ + 1)].plane(channel) != nullptr)
    ++largestRadius_;
  if (empty()) return;
  zeroRow_ = rowOfZeros(largestRadius_ + dvKernelPad);
  std::vector<std::ptrdiff_t> places;
  std::ptrdiff_t size = 2 * (largestRadius_ + dvKernelPad) + 1;
  for (int dy = -largestRadius_; dy <= largestRadius_; ++dy) {
    places.push_back(size);
    for (int radius = std::abs(dy); radius <= largestRadius_; ++radius)
      size += 2 * radius + 1 + dvKernelPad;
  }
  values_.resize(static_cast<std::size_t>(size));
  rows_.resize(places.size() * (static_cast<std::size_t>(largestRadius_) + 1), zeroRow_);
  parallel.forEach(static_cast<int>(places.size()), [&](int /*worker*/, int item) {
    fillRows(bank, channel, item - largestRadius_, places[static_cast<std::size_t>(item)]);
  });
  finite_.resize(static_cast<std::size_t>(largestRadius_) + 1);
  parallel.forEach(largestRadius_ + 1, [&](int /*worker*/, int item) {
    const int radius = largestRadius_ - item;
    finite_[static_cast<std::size_t>(radius)] = hasOnlyFinite(radius) ? 1 : 0;
  });
}

bool dvKernelTable::hasOnlyFinite(int radius) const {
  // Zero times a finite value is 0, times another one NaN.
  float sum = 0.0F;
  for (int r = 0; r <= 2 * radius; ++r) {
    const float* values = row(radius, r);
    for (int i = 0; i <= 2 * radius; ++i)
      sum += 0.0F * values[i];
  }
  return sum == 0.0F;
}

void dvKernelTable::fillRows(const dvKernelBank& bank, int channel, int dy, std::ptrdiff_t place) {
  dvKernelRow* rows =
      rows_.data() + static_cast<std::ptrdiff_t>(dy + largestRadius_) * (largestRadius_ + 1);
  for (int radius = std::abs(dy); radius <= largestRadius_; ++radius) {
    const dvChannelFloatBuffer& entry = bank[entryOf(radius)];
    const float* values =
        entry.plane(channel) + static_cast<std::ptrdiff_t>(radius - dy) * entry.width;
    rows[radius] = described(values, radius, place + radius);
    std::copy_n(values, entry.width, values_.data() + place);
    place += entry.width + dvKernelPad;
  }
}

dvConstantStretch dvKernelTable::constant(int radius, int r) const {
  const dvKernelRow& row = rowsAt(radius - r)[radius];
  if (row.begin >= row.end) return {};
  return {row.constantBegin + radius, row.constantEnd + radius};
}

bool dvKernelTable::operator==(const dvKernelTable& other) const {
  return largestRadius_ == other.largestRadius_ &&
         std::equal(values_.begin(), values_.end(), other.values_.begin(), other.values_.end(),
                    sameBits);
}

}  // namespace drevin

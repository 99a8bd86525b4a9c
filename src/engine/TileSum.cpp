#include "engine/TileSum.h"

#include <algorithm>

namespace drevin {

namespace {

/// Adds pixels [left, right) of a row of blocks to a row; columns repeat every `length`.
void addRow(const float* blocks, int length, int left, int right, float* target) {
  for (int x = left; x < right;) {
    const int column = (x % length + length) % length;
    const int lane = column % dvStripLanes;
    const int count = std::min(right - x, dvStripLanes - lane);
    const float* from = blocks + static_cast<std::ptrdiff_t>(column - lane) * dvStripStep + lane;
    for (int i = 0; i < count; ++i)
      target[x + i] += from[i];
    x += count;
  }
}

}  // namespace

dvTileSum::dvTileSum(int side, int planes)
    : side_(side), pairs_(static_cast<std::size_t>((planes + 1) / 2)) {
  pairs_.back().odd = planes % 2 != 0;
}

void dvTileSum::begin(int length) {
  transform_.begin(length);
  strip_.reserve(static_cast<std::size_t>(length) * dvStripStep);
  for (Pair& pair : pairs_) {
    pair.empty = true;
    pair.sums.reserve(transformFloats(length));
  }
}

void dvTileSum::add(const float* planes, const dvKernelSpectrum& spectrum) {
  const std::ptrdiff_t plane = static_cast<std::ptrdiff_t>(side_) * side_;
  for (Pair& pair : pairs_) {
    const float* second = pair.odd ? nullptr : planes + plane;
    if (transform_.columns({planes, second, side_, side_, side_})) addPair(pair, spectrum);
    planes += 2 * plane;
  }
}

void dvTileSum::addPair(Pair& pair, const dvKernelSpectrum& spectrum) {
  const dvFourierPlan& plan = transform_.plan();
  for (int block = 0; block < plan.blocks(); ++block) {
    if (pair.odd && !plan.isKept(block)) continue;
    float* sums = pair.sums.data() + static_cast<std::ptrdiff_t>(block) * plan.side() * dvStripStep;
    transform_.multiplyRows(block, spectrum.factors(block), pair.empty, sums);
  }
  pair.empty = false;
}

void dvTileSum::finish() {
  for (Pair& pair : pairs_) {
    if (pair.empty) continue;
    inverseTransform(transform_.plan(), transform_.passes(), pair.odd, pair.sums.data(),
                     strip_.data());
  }
}

void dvTileSum::addInto(int plane, const dvTileBox& box, int reach, float* target,
                        std::ptrdiff_t stride) const {
  const Pair& pair = pairs_[static_cast<std::size_t>(plane / 2)];
  if (pair.empty) return;
  const int length = transform_.plan().side();
  const float* picture = pair.sums.data() + (plane % 2 == 0 ? 0 : dvStripLanes);
  const int left = std::max(box.left, -reach);
  const int right = std::min(box.right, side_ + reach);
  for (int y = std::max(box.bottom, -reach); y < std::min(box.top, side_ + reach); ++y) {
    const int row = (y % length + length) % length;
    const int inBlock = row % dvStripLanes;
    const std::ptrdiff_t blocks =
        static_cast<std::ptrdiff_t>(row - inBlock) * length / dvStripLanes + inBlock;
    addRow(picture + blocks * dvStripStep, length, left, right, target + y * stride);
  }
}

}  // namespace drevin

#include "engine/TileSum.h"

#include <algorithm>

namespace drevin {

namespace {

/// Pixels [begin, end) of an axis that lie in the same block, and where.
struct BlockPart {
  int block;
  int first;  ///< within the block
  int count;

  /// From `begin` on; the axis repeats every `length`.
  BlockPart(int begin, int end, int length) {
    const int place = (begin % length + length) % length;
    block = place / dvStripLanes;
    first = place % dvStripLanes;
    count = std::min(end - begin, dvStripLanes - first);
  }
};

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

/// A block of a plane's picture.
const float* dvTileSum::block(int plane, int row, int column) const {
  const Pair& pair = pairs_[static_cast<std::size_t>(plane / 2)];
  const int part = pair.odd ? column % 2 : plane % 2;
  if (pair.odd) column -= part;
  const std::ptrdiff_t position = row * transform_.plan().side() + column * dvStripLanes;
  return pair.sums.data() + position * dvStripStep + part * dvStripLanes;
}

void dvTileSum::addInto(int plane, const dvTileBox& box, int reach, float scale, float* target,
                        std::ptrdiff_t origin, std::ptrdiff_t stride) const {
  if (pairs_[static_cast<std::size_t>(plane / 2)].empty) return;
  const int length = transform_.plan().side();
  const int right = std::min(box.right, side_ + reach);
  const int top = std::min(box.top, side_ + reach);
  for (int y = std::max(box.bottom, -reach); y < top;) {
    const BlockPart rows(y, top, length);
    for (int x = std::max(box.left, -reach); x < right;) {
      const BlockPart columns(x, right, length);
      const float* from = block(plane, rows.block, columns.block);
      transform_.passes().add(from + rows.first * dvStripStep + columns.first, rows.count,
                              columns.count, scale, target + (origin + y * stride + x), stride);
      x += columns.count;
    }
    y += rows.count;
  }
}

}  // namespace drevin

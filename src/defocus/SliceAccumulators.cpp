#include "defocus/SliceAccumulators.h"

#include <algorithm>

#include "kernel/KernelImage.h"

namespace drevin {

dvSliceAccumulators::dvSliceAccumulators(int slices, const std::vector<int>& channels, int left,
                                         int right)
    : channels_(channels),
      left_(left),
      right_(right),
      width_(static_cast<std::size_t>(std::max(0, right - left))),
      blocks_(static_cast<std::size_t>(std::max(0, slices))),
      colourRows_(blocks_.size()),
      weightRows_(blocks_.size()) {}

bool dvSliceAccumulators::use(std::uint64_t slice) {
  if (slice >= blocks_.size()) return false;
  const auto index = static_cast<std::size_t>(slice);
  Block& block = blocks_[index];
  if (block.touched) return true;
  if (block.total.empty()) makeRows(index);
  block.touched = true;
  touched_.push_back(index);
  return true;
}

void dvSliceAccumulators::makeRows(std::size_t slice) {
  Block& block = blocks_[slice];
  block.recent.assign(2 * channels_.size() * width_, 0.0F);
  block.total.assign(block.recent.size(), 0.0);
  colourRows_[slice].assign(static_cast<std::size_t>(dvChannelCount), nullptr);
  weightRows_[slice].assign(static_cast<std::size_t>(dvChannelCount), nullptr);
  if (block.recent.empty()) return;  // no channels or no columns: nothing to address
  float* row = block.recent.data() - left_;
  for (const int channel : channels_) {
    const auto c = static_cast<std::size_t>(channel);
    colourRows_[slice][c] = row;
    weightRows_[slice][c] = row + width_;
    row += 2 * width_;
  }
}

void dvSliceAccumulators::flush() {
  for (const std::size_t slice : touched_) {
    Block& block = blocks_[slice];
    for (std::size_t i = 0; i < block.recent.size(); ++i) {
      block.total[i] += static_cast<double>(block.recent[i]);
    }
    std::fill(block.recent.begin(), block.recent.end(), 0.0F);
    block.touched = false;
  }
  touched_.clear();
}

const double* dvSliceAccumulators::sum(int slice, std::size_t row) const {
  const Block& block = blocks_[static_cast<std::size_t>(slice)];
  return block.total.empty() ? nullptr : block.total.data() + row * width_;
}

const double* dvSliceAccumulators::colourSum(int slice, std::size_t channelPlace) const {
  return sum(slice, 2 * channelPlace);
}

const double* dvSliceAccumulators::weightSum(int slice, std::size_t channelPlace) const {
  return sum(slice, 2 * channelPlace + 1);
}

}  // namespace drevin

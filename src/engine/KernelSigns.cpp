#include "engine/KernelSigns.h"

#include <cstdlib>

namespace drevin {

namespace {

dvSign signOf(float value) {
  if (value > 0.0F) return dvSign::Kept;
  return value < 0.0F ? dvSign::Turned : dvSign::None;
}

std::vector<dvSignStretch> stretches(const float* values, int radius) {
  std::vector<dvSignStretch> found;
  for (int x = -radius; x <= radius; ++x) {
    const dvSign sign = signOf(values[x + radius]);
    if (found.empty() || found.back().sign != sign) found.push_back({x, x, sign});
    found.back().end = x + 1;
  }
  return found;
}

}  // namespace

dvKernelSigns::dvKernelSigns(const dvKernelTable& kernels, dvParallel& parallel)
    : rows_(static_cast<std::size_t>(kernels.largestRadius() + 1)) {
  parallel.forEach(static_cast<int>(rows_.size()), [&](int /*worker*/, int radius) {
    std::vector<std::vector<dvSignStretch>>& rows = rows_[static_cast<std::size_t>(radius)];
    for (int dy = -radius; dy <= radius; ++dy)
      rows.push_back(stretches(kernels.row(radius, radius - dy), radius));
  });
}

const std::vector<dvSignStretch>& dvKernelSigns::row(int radius, int dy) const {
  if (std::abs(dy) > radius) return none_;
  const int place = radius + dy;
  return rows_[static_cast<std::size_t>(radius)][static_cast<std::size_t>(place)];
}

}  // namespace drevin

#include "engine/SpecialSplats.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace drevin {

namespace {

void addKernelRow(const float* kernel, float share, float value, std::int64_t count,
                  double* colour) {
  for (std::int64_t i = 0; i < count; ++i)
    colour[i] += static_cast<double>(kernel[i] * value * share);
}

void addSplat(const dvSpecialSplat& splat, int pass, int dy, const dvKernelTable& kernels, int left,
              int right, std::vector<std::vector<double>>& sums) {
  const int radius = splat.radius[pass];
  if (splat.share[pass] <= 0.0F || std::abs(dy) > radius) return;
  const std::int64_t x = splat.x;
  const std::int64_t first = std::max<std::int64_t>(left, x - radius);
  const std::int64_t count = std::min<std::int64_t>(right, x + radius + 1) - first;
  if (count <= 0) return;
  const float* kernel = kernels.row(radius, radius - dy) + (first - x + radius);
  for (std::size_t c = 0; c + 1 < sums.size(); ++c)
    addKernelRow(kernel, splat.share[pass], splat.values[c], count, sums[c].data() + first - left);
  addKernelRow(kernel, splat.share[pass], 1.0F, count, sums.back().data() + first - left);
}

}  // namespace

void addSpecialSplats(const std::vector<dvSpecialSplat>& splats, std::uint32_t slice, int dy,
                      const dvKernelTable& kernels, int left, int right,
                      std::vector<std::vector<double>>& sums) {
  for (const dvSpecialSplat& splat : splats) {
    if (splat.slice != slice) continue;
    addSplat(splat, 0, dy, kernels, left, right, sums);
    addSplat(splat, 1, dy, kernels, left, right, sums);
  }
}

}  // namespace drevin

#include "engine/Spectrum.h"

#include <algorithm>

#include "engine/Transform.h"

namespace drevin {

namespace {

/// Adds a row of 2 * radius + 1 values, its middle to place 0, what lies before that or after the
/// end wrapped.
void addCentredRow(const float* row, int radius, float scale, int side, float* to) {
  for (int x = -radius; x <= radius;) {
    const int place = (x % side + side) % side;
    const int count = std::min(radius + 1 - x, side - place);
    const float* from = row + radius + x;
    for (int i = 0; i < count; ++i)
      to[place + i] += from[i] * scale;
    x += count;
  }
}

/// The kernel as image rows of side x side, its centre at (0, 0), what lies before that wrapped to
/// the end.
std::vector<float> centredKernel(const dvKernelTable& table, int side, int radius) {
  const std::ptrdiff_t stride = side;
  const float scale = 1.0F / (static_cast<float>(side) * static_cast<float>(side));
  std::vector<float> plane(static_cast<std::size_t>(stride * stride), 0.0F);
  for (int y = -radius; y <= radius; ++y) {
    float* to = plane.data() + (y % side + side) % side * stride;
    addCentredRow(table.row(radius, radius - y), radius, scale, side, to);
  }
  return plane;
}

}  // namespace

dvKernelSpectrum::dvKernelSpectrum(const dvKernelTable& table, int side, int radius)
    : plan_(&fourierPlan(side)), radius_(radius) {
  int kept = 0;
  places_.resize(static_cast<std::size_t>(plan_->blocks()));
  for (int block = 0; block < plan_->blocks(); ++block) {
    if (plan_->isKept(block)) places_[static_cast<std::size_t>(block)] = kept++;
  }
  const std::vector<float> kernel = centredKernel(table, side, radius);
  const auto strip = static_cast<std::size_t>(side) * dvStripStep;
  values_.reserve(strip * static_cast<std::size_t>(kept));
  dvForwardTransform transform;
  transform.begin(side);
  transform.columns({kernel.data(), nullptr, side, side, side});
  for (int block = 0; block < plan_->blocks(); ++block) {
    const auto b = static_cast<std::size_t>(block);
    if (plan_->isKept(block)) {
      transform.rows(block, values_.data() + strip * static_cast<std::size_t>(places_[b]));
    } else {
      places_[b] = places_[static_cast<std::size_t>(plan_->mirroredBlocks()[b])];
    }
  }
}

dvStripFactors dvKernelSpectrum::factors(int block) const {
  const auto place = static_cast<std::size_t>(places_[static_cast<std::size_t>(block)]);
  const float* values =
      values_.data() + place * static_cast<std::size_t>(plan_->side()) * dvStripStep;
  return {values, plan_->isKept(block) ? nullptr : plan_->mirroredBlocks().data()};
}

dvSpectrumCache::dvSpectrumCache(const dvKernelTable& table)
    : table_(table),
      radii_(static_cast<std::size_t>(table.largestRadius() + 1)),
      entries_(std::make_unique<Entry[]>((dvLargestTransform / dvStripLanes + 1) * radii_)) {}

const dvKernelSpectrum& dvSpectrumCache::spectrum(int side, int radius) {
  const auto length = static_cast<std::size_t>(side / dvStripLanes);
  Entry& entry = entries_[length * radii_ + static_cast<std::size_t>(radius)];
  std::call_once(entry.once, [&] {
    entry.spectrum = std::make_unique<const dvKernelSpectrum>(table_, side, radius);
    bytes_ += entry.spectrum->bytes();
  });
  return *entry.spectrum;
}

}  // namespace drevin

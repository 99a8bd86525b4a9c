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
std::vector<float> centredKernel(const dvKernelTable& table, int side, const dvCutKernel& kernel) {
  const int radius = kernel.radius;
  const int lowest = -radius - std::min(kernel.cut, 0);
  const int highest = radius - std::max(kernel.cut, 0);
  const std::ptrdiff_t stride = side;
  const float scale = 1.0F / (static_cast<float>(side) * static_cast<float>(side));
  std::vector<float> plane(static_cast<std::size_t>(stride * stride), 0.0F);
  for (int y = lowest; y <= highest; ++y) {
    float* to = plane.data() + (y % side + side) % side * stride;
    addCentredRow(table.row(radius, radius - y), radius, scale, side, to);
  }
  return plane;
}

}  // namespace

dvKernelSpectrum::dvKernelSpectrum(const dvKernelTable& table, int side, const dvCutKernel& kernel)
    : plan_(&fourierPlan(side)) {
  int kept = 0;
  places_.resize(static_cast<std::size_t>(plan_->blocks()));
  for (int block = 0; block < plan_->blocks(); ++block) {
    if (plan_->isKept(block)) places_[static_cast<std::size_t>(block)] = kept++;
  }
  const std::vector<float> plane = centredKernel(table, side, kernel);
  const auto strip = static_cast<std::size_t>(side) * dvStripStep;
  values_.reserve(strip * static_cast<std::size_t>(kept));
  dvForwardTransform transform;
  transform.begin(side);
  transform.columns({plane.data(), nullptr, side, side, side});
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

dvSpectrumCache::dvSpectrumCache(const dvKernelTable& table) : table_(table) {}

dvSpectrumCache::Entry& dvSpectrumCache::entry(const Key& key) {
  const std::lock_guard<std::mutex> lock(mutex_);
  return entries_[key];
}

void dvSpectrumCache::clear() {
  entries_.clear();
  bytes_ = 0;
}

const dvKernelSpectrum& dvSpectrumCache::spectrum(int side, const dvCutKernel& kernel) {
  Entry& asked = entry({side, kernel.radius, kernel.cut});
  std::call_once(asked.once, [&] {
    asked.spectrum = std::make_unique<const dvKernelSpectrum>(table_, side, kernel);
    bytes_ += asked.spectrum->bytes();
  });
  return *asked.spectrum;
}

}  // namespace drevin

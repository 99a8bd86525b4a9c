#include "engine/TileImpulses.h"

#include <algorithm>

namespace drevin {

namespace {

/// Adds to a value; returns the difference of the squares after and before.
double squareAdded(float added, float& value) {
  const float before = value;
  value = before + added;
  return static_cast<double>(added) * static_cast<double>(2.0F * before + added);
}

}  // namespace

void dvTileImpulses::begin(int left, int bottom, const std::vector<dvTilePart>& parts,
                           const dvTileLights& lights, const dvTilePlan& plan,
                           const dvCutKernels& kernels) {
  for (auto& impulses : byKernel_)
    impulses.clear();
  byKernel_.resize(static_cast<std::size_t>(kernels.count()));
  forEachRun(parts, lights, [&](const dvTileRun& run) {
    const std::ptrdiff_t row = run.row->splats->centreY - bottom;
    const std::ptrdiff_t rowPlace = row * dvTileSide - left;
    const auto take = [&](int radius, float dvSplatRecord::*share) {
      const int kernel = run.first().*share > 0.0F ? kernels.place(radius, run.row->shift()) : -1;
      if (!plan.takes(kernel)) return;
      byKernel_[static_cast<std::size_t>(kernel)].push_back(
          {&run.splats(), run.begin, run.end, rowPlace, share});
    };
    take(run.first().radius, &dvSplatRecord::near);
    take(run.first().radius + 1, &dvSplatRecord::far);
  });
}

// First share and value: either alone may be far from one.
void dvTileImpulses::add(const Impulse& impulse, const std::vector<float>& perUnit) {
  const std::size_t channels = perUnit.size();
  const std::size_t stride = impulse.splats->stride();
  const float* values = impulse.splats->values.data() + impulse.begin * stride;
  double* squares = squares_.data();
  for (std::size_t r = impulse.begin; r < impulse.end; ++r, values += stride) {
    const dvSplatRecord& record = impulse.splats->records[r];
    const float share = record.*impulse.share;
    float* target = planes_.data() + (impulse.rowPlace + record.x);
    for (std::size_t c = 0; c < channels; ++c, target += dvTilePixels)
      squares[c] += squareAdded((share * values[c]) * perUnit[c], *target);
    squares[channels] += squareAdded(share, *target);
  }
}

const float* dvTileImpulses::fill(int place, const std::vector<float>& perUnit) {
  std::fill(squares_.begin(), squares_.end(), 0.0);
  for (const Impulse& impulse : byKernel_[static_cast<std::size_t>(place)])
    add(impulse, perUnit);
  return planes_.data();
}

void dvTileImpulses::clear(int place) {
  const std::vector<Impulse>& impulses = byKernel_[static_cast<std::size_t>(place)];
  std::size_t count = 0;
  for (const Impulse& impulse : impulses)
    count += impulse.end - impulse.begin;
  if (count > dvTilePixels / 8) {
    std::fill(planes_.begin(), planes_.end(), 0.0F);
    return;
  }
  for (std::size_t plane = 0; plane < squares_.size(); ++plane) {
    float* first = planes_.data() + plane * dvTilePixels;
    for (const Impulse& impulse : impulses) {
      for (std::size_t r = impulse.begin; r < impulse.end; ++r)
        first[impulse.rowPlace + impulse.splats->records[r].x] = 0.0F;
    }
  }
}

}  // namespace drevin

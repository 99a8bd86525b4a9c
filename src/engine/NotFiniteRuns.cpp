#include "engine/NotFiniteRuns.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace drevin {

namespace {

bool alike(float a, float b) {
  return a == b || (std::isnan(a) && std::isnan(b));
}

}  // namespace

bool continues(const dvNotFiniteRun& first, const dvNotFiniteRun& second) {
  return static_cast<std::int64_t>(first.x) + first.count == second.x &&
         first.slice == second.slice && std::equal(first.radius, first.radius + 2, second.radius) &&
         std::equal(first.values.begin(), first.values.end(), second.values.begin(),
                    second.values.end(), alike);
}

dvNotFiniteRow::dvNotFiniteRow(std::size_t channels, int left, int right)
    : left_(left), right_(right) {
  ends_.assign(channels * kindCount, Ends(static_cast<std::size_t>(right_ - left_) + 1, 0));
}

dvNotFiniteRow::Kind dvNotFiniteRow::kindOf(float value, dvSign sign) {
  if (std::isnan(value) || sign == dvSign::None) return Nan;
  return (value > 0.0F) == (sign == dvSign::Kept) ? Up : Down;
}

void dvNotFiniteRow::mark(std::size_t channel, Kind kind, std::int64_t begin, std::int64_t end) {
  begin = std::max(begin, left_);
  end = std::min(end, right_);
  if (begin >= end) return;
  Ends& ends = ends_[channel * kindCount + kind];
  ++ends[static_cast<std::size_t>(begin - left_)];
  --ends[static_cast<std::size_t>(end - left_)];
  empty_ = false;
}

void dvNotFiniteRow::addValue(std::size_t channel, float value, const dvNotFiniteRun& run,
                              int radius, const std::vector<dvSignStretch>& stretches) {
  const std::int64_t first = run.x;
  const std::int64_t last = first + run.count - 1;
  if (std::isnan(value)) {
    if (!stretches.empty()) mark(channel, Nan, first - radius, last + radius + 1);
    return;
  }
  for (const dvSignStretch& stretch : stretches)
    mark(channel, kindOf(value, stretch.sign), first + stretch.begin, last + stretch.end);
}

void dvNotFiniteRow::add(const dvNotFiniteRun& run, int dy, const dvKernelSigns& signs) {
  const std::size_t channels = std::min(ends_.size() / kindCount, run.values.size());
  for (const int radius : run.radius) {
    if (radius < 0) continue;
    const std::vector<dvSignStretch>& stretches = signs.row(radius, dy);
    for (std::size_t channel = 0; channel < channels; ++channel) {
      const float value = run.values[channel];
      if (!std::isfinite(value)) addValue(channel, value, run, radius, stretches);
    }
  }
}

void dvNotFiniteRow::addTo(std::vector<std::vector<double>>& sums) const {
  if (empty_) return;
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const auto width = static_cast<std::size_t>(right_ - left_);
  for (std::size_t channel = 0; channel < ends_.size() / kindCount; ++channel) {
    const Ends* ends = &ends_[channel * kindCount];
    std::int32_t covering[kindCount] = {0, 0, 0};
    for (std::size_t i = 0; i < width; ++i) {
      for (int kind = 0; kind < kindCount; ++kind)
        covering[kind] += ends[kind][i];
      double& sum = sums[channel][i];
      if (covering[Nan] != 0) sum = std::numeric_limits<double>::quiet_NaN();
      if (covering[Up] != 0) sum += infinity;
      if (covering[Down] != 0) sum -= infinity;
    }
  }
}

}  // namespace drevin

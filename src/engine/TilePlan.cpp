#include "engine/TilePlan.h"

#include <algorithm>
#include <cstdint>

#include "engine/CostModel.h"
#include "engine/FourierPlan.h"

namespace drevin {

namespace {

/// A kernel that splats of the tile take.
struct Candidate {
  int place;
  int radius;
  double directTime;
};

double gainOf(const std::vector<Candidate>& candidates, int side, int length, int planes) {
  const double add = fourierAddCost(side, length, planes);
  double gain = -fourierFinishCost(length, planes);
  for (const Candidate& candidate : candidates) {
    if (side + 2 * candidate.radius <= length) gain += std::max(0.0, candidate.directTime - add);
  }
  return gain;
}

/// The mean share of [c - radius, c + radius] that lies in [begin, end), for centres c of the
/// `side` places from `first` on.
double meanShare(int first, int side, int radius, int begin, int end) {
  constexpr int step = 8;
  std::int64_t covered = 0;
  int count = 0;
  for (int centre = first + step / 2; centre < first + side; centre += step, ++count)
    covered += std::max(0, std::min(end, centre + radius + 1) - std::max(begin, centre - radius));
  const double all = static_cast<double>(count) * (2.0 * radius + 1.0);
  return count == 0 ? 1.0 : static_cast<double>(covered) / all;
}

}  // namespace

double dvWantedPart::share(int radius) const {
  constexpr double leastColumns = 0.1;
  return meanShare(bottom_, side_, radius, box_.bottom, box_.top) *
         std::max(leastColumns, meanShare(left_, side_, radius, box_.left, box_.right));
}

dvTileCensus::dvTileCensus(const dvCutKernels& kernels)
    : uses_(static_cast<std::size_t>(kernels.count())),
      splats_(static_cast<std::size_t>(kernels.largestRadius()) + 1) {}

void dvTileCensus::add(const dvCutKernels& kernels, const dvSplatRecord& record, int shift,
                       int count) {
  splats_[static_cast<std::size_t>(record.radius)] += count;
  const int near = record.near > 0.0F ? kernels.place(record.radius, shift) : -1;
  const int far = record.far > 0.0F ? kernels.place(record.radius + 1, shift) : -1;
  const bool both = record.near > 0.0F && record.far > 0.0F;
  hasOthers_ = hasOthers_ || (record.near > 0.0F && near < 0) || (record.far > 0.0F && far < 0);
  if (near >= 0) {
    Uses& uses = uses_[static_cast<std::size_t>(near)];
    (both ? uses.near : uses.alone) += count;
  }
  if (far >= 0) {
    Uses& uses = uses_[static_cast<std::size_t>(far)];
    (both ? uses.far : uses.alone) += count;
  }
}

bool dvTileCensus::has(int place) const {
  const Uses& uses = uses_[static_cast<std::size_t>(place)];
  return uses.alone > 0 || uses.near > 0 || uses.far > 0;
}

bool dvTileCensus::isWholeBy(const dvTilePlan& plan) const {
  if (hasOthers_) return false;
  for (int place = 0; place < static_cast<int>(uses_.size()); ++place)
    if (has(place) && !plan.takes(place)) return false;
  return true;
}

double dvTileCensus::spacing(int radius, int side) const {
  const int splats = std::max(1, splats_[static_cast<std::size_t>(radius)]);
  return static_cast<double>(side) * side / splats;
}

double dvTileCensus::directTime(const dvCutKernels& kernels, int place, int side,
                                const dvRowCost& cost) const {
  const Uses& uses = uses_[static_cast<std::size_t>(place)];
  const int radius = kernels[place].radius;
  double time = 0.0;
  if (uses.alone > 0) time += uses.alone * cost.kernel(radius, spacing(radius, side));
  if (uses.near > 0) time += 0.5 * uses.near * cost.splat(radius, spacing(radius, side));
  if (uses.far > 0) time += 0.5 * uses.far * cost.splat(radius - 1, spacing(radius - 1, side));
  return time;
}

dvTilePlan planTile(const dvTileCensus& census, const dvCutKernels& kernels, int side, int planes,
                    const dvRowCost& cost, dvTileChoice choice, const dvWantedPart& wanted) {
  dvTilePlan plan;
  if (choice == dvTileChoice::Nothing) return plan;
  std::vector<Candidate> candidates;
  for (int place = 0; place < kernels.count(); ++place) {
    const int radius = kernels[place].radius;
    if (!census.has(place) || (radius == 0 && choice == dvTileChoice::ByCost)) continue;
    const double directTime = census.directTime(kernels, place, side, cost);
    candidates.push_back({place, radius, directTime * wanted.share(radius)});
  }
  const bool everything = choice == dvTileChoice::Everything;
  for (const Candidate& candidate : candidates) {
    const int length = transformSide(side + 2 * candidate.radius);
    if (length == 0) break;
    if (length == plan.length) continue;
    const double gain = gainOf(candidates, side, length, planes);
    if (everything || gain > plan.gain) {
      plan.length = length;
      plan.gain = gain;
    }
  }
  if (plan.length == 0) return plan;
  const double add = fourierAddCost(side, plan.length, planes);
  plan.transformed.assign(static_cast<std::size_t>(kernels.count()), 0);
  for (const Candidate& candidate : candidates) {
    const bool fits = side + 2 * candidate.radius <= plan.length;
    if (!everything && !(fits && candidate.directTime > add)) continue;
    plan.transformed[static_cast<std::size_t>(candidate.place)] = 1;
    plan.largest = std::max(plan.largest, candidate.radius);
    plan.time += add;
  }
  plan.length = transformSide(side + 2 * plan.largest);
  plan.time += fourierFinishCost(plan.length, planes);
  return plan;
}

}  // namespace drevin

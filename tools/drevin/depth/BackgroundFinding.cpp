#include "depth/BackgroundFinding.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "depth/DepthCodes.h"

namespace drevintool {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

// All NaN are one value, and come last.
bool below(float a, float b) {
  return std::isnan(b) ? !std::isnan(a) : a < b;
}

bool same(float a, float b) {
  return a == b || (std::isnan(a) && std::isnan(b));
}

// The most frequent of some values; of equally frequent ones the smallest.
BackgroundFinding mostFrequent(std::vector<float> values) {
  std::sort(values.begin(), values.end(), below);
  BackgroundFinding most;
  for (std::size_t begin = 0; begin < values.size();) {
    std::size_t end = begin;
    while (end < values.size() && same(values[end], values[begin]))
      ++end;
    if (end - begin > most.pixels) most = {values[begin], end - begin, {}};
    begin = end;
  }
  return most;
}

std::size_t countOf(const DepthPlane& depth, float value) {
  return static_cast<std::size_t>(std::count_if(depth.values->begin(), depth.values->end(),
                                                [value](float v) { return same(v, value); }));
}

std::optional<BackgroundFinding> whereTransparent(const DepthPlane& depth,
                                                  const DepthPlane& alpha) {
  std::vector<float> empty;
  float least = kInfinity;
  float most = -kInfinity;
  for (std::size_t i = 0; i < depth.values->size(); ++i) {
    const float value = (*depth.values)[i];
    if ((*alpha.values)[i] == 0.0F) {
      empty.push_back(value);
    } else if (std::isfinite(value)) {
      least = std::min(least, value);
      most = std::max(most, value);
    }
  }
  if (empty.empty() || empty.size() == depth.values->size()) return std::nullopt;
  const std::size_t transparent = empty.size();
  BackgroundFinding found = mostFrequent(std::move(empty));
  const bool beyond = !std::isfinite(found.value) || found.value < least || found.value > most;
  if (10 * found.pixels < 9 * transparent || !beyond) return std::nullopt;
  found.why = std::to_string(found.pixels) + " of " + std::to_string(transparent) +
              " pixels without alpha have it";
  found.pixels = countOf(depth, found.value);
  return found;
}

std::optional<BackgroundFinding> amongCodes(const DepthPlane& depth) {
  const DepthCodes codes{DepthStyle::Real, depth.half};
  std::vector<float> found;
  for (const float value : *depth.values) {
    if (codes.isBackground(value)) found.push_back(value);
  }
  if (found.empty()) return std::nullopt;
  BackgroundFinding most = mostFrequent(std::move(found));
  most.why = "no thing has such a depth";
  return most;
}

std::optional<BackgroundFinding> farPlane(const DepthPlane& depth) {
  float largest = -kInfinity;
  float next = -kInfinity;
  std::size_t pixels = 0;
  for (const float value : *depth.values) {
    if (value > largest) {
      next = largest;
      largest = value;
      pixels = 0;
    }
    if (value == largest) ++pixels;
    if (value < largest) next = std::max(next, value);
  }
  const bool frequent = 100 * pixels >= depth.values->size();
  const bool behindAll = std::isfinite(next) && largest > 0.0F && 10.0F * next <= largest;
  if (!frequent || !behindAll) return std::nullopt;
  return BackgroundFinding{largest, pixels, "all other depths are at most a tenth of it"};
}

}  // namespace

std::optional<BackgroundFinding> findBackground(const DepthPlane& depth, const DepthPlane* alpha) {
  std::optional<BackgroundFinding> found;
  if (alpha != nullptr) found = whereTransparent(depth, *alpha);
  if (!found) found = amongCodes(depth);
  return found ? found : farPlane(depth);
}

}  // namespace drevintool

#include "depth/BackgroundFinding.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "picture/ChannelNames.h"

namespace drevintool {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

struct Frequent {
  float value = 0.0F;
  std::size_t pixels = 0;
  std::string why;
};

// All NaN are one value, and come last.
bool below(float a, float b) {
  return std::isnan(b) ? !std::isnan(a) : a < b;
}

bool same(float a, float b) {
  return a == b || (std::isnan(a) && std::isnan(b));
}

// The most frequent of some values; of equally frequent ones the smallest.
Frequent mostFrequent(std::vector<float> values) {
  std::sort(values.begin(), values.end(), below);
  Frequent most;
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

std::optional<Frequent> whereTransparent(const DepthPlane& depth, const DepthPlane& alpha,
                                         const DepthCodes& codes) {
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
  Frequent found = mostFrequent(std::move(empty));
  const bool beyond = codes.isBackground(found.value) || found.value < least || found.value > most;
  if (10 * found.pixels < 9 * transparent || !beyond) return std::nullopt;
  found.why = std::to_string(found.pixels) + " of " + std::to_string(transparent) +
              " pixels without alpha have it";
  found.pixels = countOf(depth, found.value);
  return found;
}

std::vector<float> codesOf(const DepthPlane& depth, const DepthCodes& codes) {
  std::vector<float> found;
  std::copy_if(depth.values->begin(), depth.values->end(), std::back_inserter(found),
               [&](float value) { return codes.isBackground(value); });
  return found;
}

std::optional<Frequent> farPlane(const DepthPlane& depth, const DepthCodes& codes,
                                 std::size_t codePixels) {
  float farthest = -kInfinity;
  float next = -kInfinity;
  Frequent found;
  for (const float value : *depth.values) {
    if (codes.isBackground(value)) continue;
    const float distance = codes.distance(value);
    if (distance > farthest) {
      next = farthest;
      farthest = distance;
      found = {value, 0, "all other distances are less than a tenth of it"};
    }
    if (value == found.value) ++found.pixels;
    if (distance < farthest) next = std::max(next, distance);
  }
  const bool frequent = 100 * found.pixels >= depth.values->size() && found.pixels > codePixels;
  const bool behindAll = std::isfinite(next) && farthest > 0.0F && 10.0F * next < farthest;
  return frequent && behindAll ? std::optional(found) : std::nullopt;
}

}  // namespace

BackgroundFinding findBackground(const DepthPlane& depth, const DepthPlane* alpha,
                                 DepthStyle style) {
  const DepthCodes codes{style, depth.half};
  std::vector<float> coded = codesOf(depth, codes);
  const std::size_t codePixels = coded.size();
  std::optional<Frequent> found;
  if (alpha != nullptr) found = whereTransparent(depth, *alpha, codes);
  if (!found) found = farPlane(depth, codes, codePixels);
  if (!found && codePixels > 0) {
    found = mostFrequent(std::move(coded));
    found->why = "no thing has such a depth";
  }
  if (!found) return {codes, {}, 0, 0, {}};
  const std::size_t others =
      codes.isBackground(found->value) ? codePixels - found->pixels : codePixels;
  return {codes, found->value, found->pixels, others, found->why};
}

BackgroundFinding findBackground(const Picture& picture, const PictureChannel& channel,
                                 DepthStyle style) {
  const PixelBox& window = windowOf(picture, channel);
  const DepthPlane depth = depthPlane(picture, channel, window);
  const PictureChannel* alpha = findChannel(picture, "rgba.alpha");
  if (alpha == nullptr) return findBackground(depth, nullptr, style);
  const DepthPlane coverage = depthPlane(picture, *alpha, window);
  return findBackground(depth, &coverage, style);
}

}  // namespace drevintool

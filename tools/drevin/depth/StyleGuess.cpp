#include "depth/StyleGuess.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace drevintool {
namespace {

constexpr std::size_t kEnoughVotes = 500;
constexpr float kLeastSlopeOfHalves = 0.08F;
constexpr float kLeastSlopeOfFloats = 0.004F;

// How far the middle of three values is from half way between the others, in parts of the way.
float bend(float a, float b, float c) {
  return std::fabs((a - b) + (c - b)) / std::fabs(c - a);
}

class Voting {
 public:
  explicit Voting(const DepthPlane& plane)
      : codes_{DepthStyle::Real, plane.half},
        leastSlope_(plane.half ? kLeastSlopeOfHalves : kLeastSlopeOfFloats) {}

  void add(float a, float b, float c) {
    if (!counts(a) || !counts(b) || !counts(c)) return;
    const float way = c - a;
    const float middle = b - a;
    const bool even = middle / way >= 0.25F && middle / way <= 0.75F;
    if (!even || !(std::fabs(way) > leastSlope_ * b)) return;
    const float ofValues = bend(a, b, c);
    const float ofReciprocals = bend(1.0F / a, 1.0F / b, 1.0F / c);
    if (ofReciprocals < ofValues) ++votes_.distances;
    if (ofReciprocals > ofValues) ++votes_.reciprocals;
  }

  const SlopeVotes& votes() const { return votes_; }

 private:
  bool counts(float value) const { return value > 0.0F && !codes_.isBackground(value); }

  DepthCodes codes_;
  float leastSlope_;
  SlopeVotes votes_;
};

struct Range {
  bool belowZero = false;
  bool zero = false;
  bool aboveOne = false;
  bool upToOne = false;
};

Range rangeOf(const DepthPlane& plane) {
  const DepthCodes codes{DepthStyle::Real, plane.half};
  Range range;
  for (const float value : *plane.values) {
    range.zero = range.zero || value == 0.0F;
    if (codes.isBackground(value)) continue;
    range.belowZero = range.belowZero || value < 0.0F;
    range.aboveOne = range.aboveOne || value > 1.0F;
    range.upToOne = range.upToOne || value <= 1.0F;
  }
  return range;
}

std::string percent(std::size_t part, std::size_t whole) {
  return std::to_string(100 * part / whole) + " %";
}

std::optional<StyleGuess> guessBySlopes(const SlopeVotes& votes) {
  if (votes.all() < kEnoughVotes) return std::nullopt;
  if (3 * votes.distances >= 2 * votes.all()) {
    return StyleGuess{DepthStyle::Real, percent(votes.distances, votes.all()) +
                                            " of its slopes curve as distances do in perspective"};
  }
  if (3 * votes.reciprocals >= 2 * votes.all()) {
    return StyleGuess{DepthStyle::Reciprocal,
                      percent(votes.reciprocals, votes.all()) +
                          " of its slopes are straight, as 1/z is in perspective"};
  }
  return std::nullopt;
}

}  // namespace

SlopeVotes slopeVotes(const DepthPlane& plane) {
  const PixelBox& box = plane.box;
  const int k = std::max(2, static_cast<int>(box.width()) / 64);
  Voting voting(plane);
  for (int y = box.y; y < box.t; ++y) {
    for (int x = box.x; x < box.r; ++x) {
      const float value = plane.at(x, y);
      if (x - k >= box.x && x + k < box.r)
        voting.add(plane.at(x - k, y), value, plane.at(x + k, y));
      if (y - k >= box.y && y + k < box.t)
        voting.add(plane.at(x, y - k), value, plane.at(x, y + k));
    }
  }
  return voting.votes();
}

StyleGuess guessStyle(const DepthPlane& plane) {
  const Range range = rangeOf(plane);
  if (range.belowZero) return {DepthStyle::Real, "it has values below 0, which 1/z has not"};
  if (range.aboveOne && !range.upToOne) {
    return {DepthStyle::Real,
            "all its values are above 1, and all would be nearer than one unit if they were 1/z"};
  }
  if (const std::optional<StyleGuess> guess = guessBySlopes(slopeVotes(plane))) return *guess;
  if (range.aboveOne) {
    return {DepthStyle::Real, "it has values above 1, nearer than one unit if they were 1/z"};
  }
  if (range.zero) {
    return {DepthStyle::Reciprocal, "its values go from 0 (infinitely far in 1/z) to 1"};
  }
  return {DepthStyle::Real, "nothing speaks for 1/z"};
}

}  // namespace drevintool

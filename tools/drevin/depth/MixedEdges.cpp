#include "depth/MixedEdges.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace drevintool {
namespace {

constexpr int kLongestRun = 2;
constexpr float kLeastStep = 1.0F / 20.0F;  // of the smaller side
constexpr float kLevel = 1.0F / 8.0F;       // of the step
constexpr float kApart = 1.0F / 4.0F;       // of the step
constexpr float kSlopes = 4.0F;
constexpr float kRoundingOfHalves = 0x1p-9F;
constexpr float kRoundingOfFloats = 0x1p-20F;

struct Sides {
  float before = 0.0F;
  float behind = 0.0F;
  float step() const { return std::fabs(before - behind); }
};

// The pixels of a row or a column, by their place in it.
class Line {
 public:
  Line(const float* first, std::ptrdiff_t stride, int length, float rounding)
      : first_(first), stride_(stride), length_(length), rounding_(rounding) {}

  float at(int i) const { return first_[stride_ * std::clamp(i, 0, length_ - 1)]; }

  // The sides of the run [begin, end), if it is one of mixed pixels.
  std::optional<Sides> sidesOf(int begin, int end) const {
    if (begin < 1 || end >= length_) return std::nullopt;
    const Sides sides{at(begin - 1), at(end)};
    const bool finite = std::isfinite(sides.before) && std::isfinite(sides.behind);
    if (!finite || !risesOrFalls(begin, end, sides.behind > sides.before)) return std::nullopt;
    const float step = sides.step();
    const float least = std::min(std::fabs(sides.before), std::fabs(sides.behind)) * kLeastStep;
    if (!(step > least)) return std::nullopt;
    const bool apart = std::fabs(at(begin) - at(end - 1)) >= step * kApart;
    if (end - begin > 1 && !apart) return std::nullopt;
    const bool ends = endsSide(begin - 1, -1, step) && endsSide(end, 1, step);
    return ends ? std::optional<Sides>(sides) : std::nullopt;
  }

 private:
  bool risesOrFalls(int begin, int end, bool rising) const {
    for (int i = begin; i <= end; ++i) {
      if (rising ? !(at(i) > at(i - 1)) : !(at(i) < at(i - 1))) return false;
    }
    return true;
  }

  // Whether a side that goes on in a direction is level, and the pixel before it none of it.
  bool endsSide(int i, int direction, float step) const {
    const float slope = std::max(std::fabs(at(i + direction) - at(i)),
                                 std::fabs(at(i + 2 * direction) - at(i + direction)));
    const float jump = std::fabs(at(i - direction) - at(i));
    return slope <= step * kLevel && jump > slope * kSlopes + std::fabs(at(i)) * rounding_;
  }

  const float* first_;
  std::ptrdiff_t stride_;
  int length_;
  float rounding_;
};

// The sides of the run that pixel i of the line is in; the shortest run counts.
std::optional<Sides> sidesAt(const Line& line, int i) {
  for (int length = 1; length <= kLongestRun; ++length) {
    for (int begin = i - length + 1; begin <= i; ++begin) {
      if (const std::optional<Sides> sides = line.sidesOf(begin, begin + length)) return sides;
    }
  }
  return std::nullopt;
}

MixedPixel mixedPixel(std::size_t index, float depth, const Sides& sides) {
  const float low = std::min(sides.before, sides.behind);
  const float high = std::max(sides.before, sides.behind);
  const bool lowIsNearer = depth - low <= high - depth;
  return {index, lowIsNearer ? low : high, lowIsNearer ? high : low};
}

}  // namespace

std::vector<MixedPixel> findMixedPixels(const DepthPlane& plane) {
  std::vector<MixedPixel> mixed;
  const auto width = static_cast<int>(plane.box.width());
  const auto height = static_cast<int>(plane.box.height());
  const float* values = plane.values->data();
  const float rounding = plane.half ? kRoundingOfHalves : kRoundingOfFloats;
  for (int y = 0; y < height; ++y) {
    const Line row(values + static_cast<std::ptrdiff_t>(y) * width, 1, width, rounding);
    for (int x = 0; x < width; ++x) {
      const Line column(values + x, width, height, rounding);
      const std::optional<Sides> across = sidesAt(row, x);
      const std::optional<Sides> along = sidesAt(column, y);
      if (!across && !along) continue;
      const bool takeAcross = across && (!along || across->step() >= along->step());
      const std::size_t index = plane.indexOf(plane.box.x + x, plane.box.y + y);
      mixed.push_back(mixedPixel(index, row.at(x), takeAcross ? *across : *along));
    }
  }
  return mixed;
}

}  // namespace drevintool

#include "host/LiteralTidy.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <set>

namespace deep {

namespace {

LiteralPiece wholePiece(const LiteralSample& sample) {
  return {sample.front, sample.back, sample.alpha, sample.red, sample.green};
}

/// The part of a volume from `from` to `to`.
LiteralPiece cut(const LiteralSample& sample, long double from, long double to) {
  LiteralPiece piece = wholePiece(sample);
  const long double fraction = (to - from) / (piece.back - piece.front);
  piece.front = from;
  piece.back = to;
  if (sample.alpha == 1.0F) return piece;
  const long double alpha = 1.0L - std::pow(1.0L - piece.alpha, fraction);
  const long double scale = sample.alpha == 0.0F ? fraction : alpha / piece.alpha;
  piece.alpha = alpha;
  piece.red *= scale;
  piece.green *= scale;
  return piece;
}

LiteralPiece meanOfOpaque(const std::vector<LiteralPiece>& pieces) {
  LiteralPiece mean{pieces[0].front, pieces[0].back, 1.0L, 0.0L, 0.0L};
  long double count = 0.0L;
  for (const LiteralPiece& piece : pieces) {
    if (piece.alpha != 1.0L) continue;
    count += 1.0L;
    mean.red += piece.red;
    mean.green += piece.green;
  }
  mean.red /= count;
  mean.green /= count;
  return mean;
}

LiteralPiece mix(const std::vector<LiteralPiece>& pieces) {
  long double through = 1.0L;
  for (const LiteralPiece& piece : pieces)
    through *= 1.0L - piece.alpha;
  if (through == 0.0L) return meanOfOpaque(pieces);
  LiteralPiece mixed{pieces[0].front, pieces[0].back, 1.0L - through, 0.0L, 0.0L};
  long double depth = 0.0L;
  for (const LiteralPiece& piece : pieces) {
    const long double u = -std::log(1.0L - piece.alpha);
    const long double weight = piece.alpha == 0.0L ? 1.0L : u / piece.alpha;
    depth += u;
    mixed.red += piece.red * weight;
    mixed.green += piece.green * weight;
  }
  const long double scale = depth == 0.0L ? 1.0L : mixed.alpha / depth;
  mixed.red *= scale;
  mixed.green *= scale;
  return mixed;
}

void under(LiteralPiece& front, const LiteralPiece& behind) {
  const long double seen = 1.0L - front.alpha;
  front.alpha += seen * behind.alpha;
  front.red += seen * behind.red;
  front.green += seen * behind.green;
}

void appendPoints(const std::vector<LiteralSample>& samples, long double depth,
                  std::vector<LiteralPiece>& tidy) {
  LiteralPiece points{depth, depth, 0.0L, 0.0L, 0.0L};
  bool any = false;
  for (const LiteralSample& sample : samples) {
    if (sample.front != depth || sample.back != depth) continue;
    any = true;
    under(points, wholePiece(sample));
  }
  if (any) tidy.push_back(points);
}

void appendStretch(const std::vector<LiteralSample>& samples, long double from, long double to,
                   std::vector<LiteralPiece>& tidy) {
  std::vector<LiteralPiece> pieces;
  for (const LiteralSample& sample : samples) {
    if (sample.front <= from && sample.back >= to) pieces.push_back(cut(sample, from, to));
  }
  if (!pieces.empty()) tidy.push_back(mix(pieces));
}

float drawAlpha(std::mt19937& random) {
  constexpr std::array<float, 5> corners = {0.0F, 1.0F, 1e-6F, 1e-3F, 0x1.fffffep-1F};
  const std::size_t choice = std::uniform_int_distribution<std::size_t>(0, 9)(random);
  if (choice < corners.size()) return corners[choice];
  return std::uniform_real_distribution<float>(0.0F, 1.0F)(random);
}

float drawBack(std::mt19937& random, float front, bool onGrid) {
  const int choice = std::uniform_int_distribution<int>(0, 9)(random);
  if (choice < 3) return front;
  if (choice == 3) return std::nextafter(front + 1e-6F, 100.0F);
  const float length = std::uniform_real_distribution<float>(0.01F, 3.0F)(random);
  return front + (onGrid ? std::ceil(length) : length);
}

}  // namespace

std::vector<LiteralPiece> literalTidy(const std::vector<LiteralSample>& samples) {
  std::set<long double> depths;
  for (const LiteralSample& sample : samples) {
    depths.insert(sample.front);
    depths.insert(sample.back);
  }
  std::vector<LiteralPiece> tidy;
  for (auto depth = depths.begin(); depth != depths.end(); ++depth) {
    appendPoints(samples, *depth, tidy);
    const auto next = std::next(depth);
    if (next != depths.end()) appendStretch(samples, *depth, *next, tidy);
  }
  return tidy;
}

std::vector<LiteralSample> randomSamples(std::mt19937& random, int most) {
  std::vector<LiteralSample> samples(
      static_cast<std::size_t>(std::uniform_int_distribution<int>(0, most)(random)));
  std::uniform_real_distribution<float> depth(-2.0F, 5.0F);
  std::uniform_real_distribution<float> colour(-0.1F, 2.0F);
  for (LiteralSample& sample : samples) {
    const bool onGrid = std::bernoulli_distribution(0.5)(random);
    sample.front = onGrid ? std::round(depth(random)) : depth(random);
    sample.back = drawBack(random, sample.front, onGrid);
    sample.alpha = drawAlpha(random);
    sample.red = colour(random);
    sample.green = colour(random);
  }
  return samples;
}

}  // namespace deep

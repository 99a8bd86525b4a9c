#include "support/LiteralDeepMerge.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace drevin::test {

namespace {

constexpr float thin = 1e-6F;

void emitValues(const LiteralDeepSample& sample, float front, float back, const float* fraction,
                LiteralDeepPixel& out) {
  LiteralDeepSample piece = sample;
  piece.front = front;
  piece.back = back;
  for (auto& [channel, value] : piece.values) {
    if (channel == literalFront || channel == literalZ) {
      value = front;
    } else if (channel == literalBack) {
      value = back;
    } else if (fraction != nullptr) {
      value = value * *fraction;
    }
  }
  out.push_back(piece);
}

float placeOf(float depth) {
  return std::isnan(depth) ? std::numeric_limits<float>::infinity() : depth;
}

}  // namespace

float literalAddSample(const LiteralDeepPixel& pixel, std::size_t& index, LiteralDeepPixel& out) {
  const std::size_t k = index;
  const float f = pixel[k].front;
  const float b = pixel[k].back;
  const float t = b - f;
  if (t < thin || k == 0 || !(b > pixel[k - 1].front)) {
    emitValues(pixel[k], f, b, nullptr, out);
    return b;
  }
  const float p = pixel[k - 1].front;
  const float s1 = (p - f) / t;
  emitValues(pixel[k], f, p, &s1, out);
  index = k - 1;
  const float n = literalAddSample(pixel, index, out);
  if (!(b > n)) {
    return b;
  }
  const float s2 = (b - n) / t;
  emitValues(pixel[k], n, b, &s2, out);
  return b;
}

void literalCombineSamples(const LiteralDeepPixel& pixel, LiteralDeepPixel& out) {
  for (std::size_t i = pixel.size(); i-- > 0;) {
    const float f = pixel[i].front;
    const float b = pixel[i].back;
    const float t = b - f;
    if (t < thin || i == 0 || !(b > pixel[i - 1].front)) {
      emitValues(pixel[i], f, b, nullptr, out);
      continue;
    }
    const float s1 = (pixel[i - 1].front - f) / t;
    emitValues(pixel[i], f, pixel[i - 1].front, &s1, out);
    std::size_t j = i - 1;
    const float n = literalAddSample(pixel, j, out);
    if (b > n) {
      const float s2 = (b - n) / t;
      emitValues(pixel[i], n, b, &s2, out);
    }
  }
}

LiteralDeepPixel literalReadBack(LiteralDeepPixel pieces) {
  std::stable_sort(pieces.begin(), pieces.end(),
                   [](const LiteralDeepSample& a, const LiteralDeepSample& b) {
                     return std::make_pair(placeOf(a.front), placeOf(a.back)) <
                            std::make_pair(placeOf(b.front), placeOf(b.back));
                   });
  return pieces;
}

}  // namespace drevin::test

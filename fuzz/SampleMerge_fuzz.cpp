/// Any samples through the merge: its pieces keep to their number, their samples and their order.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "Expect.h"
#include "deep/SampleMerge.h"

namespace {

using drevin::dvDeepPiece;
using drevin::dvDeepSamples;
using drevinfuzz::expect;

/// Pieces grow by the square of the samples, so that more of them only cost time.
constexpr std::size_t kMostSamples = 64;

/// Depths of the fuzzer's bytes: any bits, or small numbers, which overlap and touch more often.
class Depths {
 public:
  Depths(const std::uint8_t* bytes, std::size_t count) : at_(bytes), end_(bytes + count) {
    small_ = at_ != end_ && *at_++ % 2 != 0;
  }

  bool done() const { return static_cast<std::size_t>(end_ - at_) < (small_ ? 1 : sizeof(float)); }

  float next() {
    if (done()) return 0.0F;
    if (small_) return static_cast<float>(*at_++) / 16.0F;
    float depth = 0.0F;
    std::memcpy(&depth, at_, sizeof depth);
    at_ += sizeof depth;
    return depth;
  }

 private:
  const std::uint8_t* at_;
  const std::uint8_t* end_;
  bool small_ = false;
};

dvDeepSamples samplesOf(const std::uint8_t* bytes, std::size_t count) {
  Depths depths(bytes, count);
  dvDeepSamples samples;
  while (!depths.done() && samples.count() < kMostSamples) {
    samples.fronts.push_back(depths.next());
    samples.backs.push_back(depths.next());
    samples.values.push_back(1.0F);
  }
  return samples;
}

std::uint32_t bitsOf(float depth) {
  std::uint32_t bits = 0;
  std::memcpy(&bits, &depth, sizeof bits);
  return bits;
}

bool sameBits(float a, float b) {
  return bitsOf(a) == bitsOf(b);
}

float placeOf(float depth) {
  return std::isnan(depth) ? INFINITY : depth;
}

bool inOrder(const dvDeepPiece& a, const dvDeepPiece& b) {
  if (placeOf(a.front) != placeOf(b.front)) return placeOf(a.front) < placeOf(b.front);
  return placeOf(a.back) <= placeOf(b.back);
}

void expectPiece(const dvDeepSamples& samples, const dvDeepPiece& piece) {
  expect(piece.sample < samples.count(), "a piece is one of a sample");
  if (!piece.whole) return;
  expect(sameBits(piece.front, samples.fronts[piece.sample]) &&
             sameBits(piece.back, samples.backs[piece.sample]) && piece.fraction == 1.0F,
         "a whole piece is its sample");
}

void expectChain(const dvDeepSamples& samples, std::size_t first) {
  std::vector<dvDeepPiece> pieces;
  std::size_t last = first;
  const float back = drevin::addSample(samples, last, pieces);
  expect(sameBits(back, samples.backs[first]), "a chain returns the back of its sample");
  expect(last <= first, "a chain reaches lower indices");
  expect(pieces.size() <= 2 * (first - last) + 1, "a chain makes two pieces of each but its last");
  for (const dvDeepPiece& piece : pieces) {
    expectPiece(samples, piece);
    expect(piece.sample >= last && piece.sample <= first, "a chain is of what it reached");
  }
  const auto whole = std::count_if(pieces.begin(), pieces.end(),
                                   [](const dvDeepPiece& piece) { return piece.whole; });
  expect(whole == 1, "a chain ends in one whole sample");
}

bool sameMultiset(std::vector<std::size_t> a, std::vector<std::size_t> b) {
  std::sort(a.begin(), a.end());
  std::sort(b.begin(), b.end());
  return a == b;
}

std::vector<std::size_t> samplesOf(const std::vector<dvDeepPiece>& pieces) {
  std::vector<std::size_t> numbers;
  numbers.reserve(pieces.size());
  for (const dvDeepPiece& piece : pieces)
    numbers.push_back(piece.sample);
  return numbers;
}

void expectMerge(const dvDeepSamples& samples) {
  std::vector<dvDeepPiece> pieces;
  drevin::combineSamples(samples, pieces);
  const std::size_t count = samples.count();
  expect(pieces.size() >= count, "every sample leaves a piece");
  expect(pieces.size() <= count * count, "pieces are the square of the samples at most");
  const std::vector<std::size_t> emitted = samplesOf(pieces);
  drevin::sortPieces(pieces);
  expect(sameMultiset(emitted, samplesOf(pieces)), "sorting loses no piece");
  for (std::size_t i = 1; i < pieces.size(); ++i)
    expect(inOrder(pieces[i - 1], pieces[i]), "pieces are sorted");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const dvDeepSamples samples = samplesOf(bytes, count);
  for (std::size_t first = 0; first < samples.count(); ++first)
    expectChain(samples, first);
  expectMerge(samples);
  return 0;
}

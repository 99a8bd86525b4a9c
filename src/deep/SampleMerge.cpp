#include "deep/SampleMerge.h"

#include <algorithm>

#include "defocus/FloatRules.h"

namespace drevin {

namespace {

dvDeepPiece wholePiece(const dvDeepSamples& samples, std::size_t k) {
  return {k, samples.fronts[k], samples.backs[k], 1.0F, true};
}

/// Whether sample k is cut by sample k - 1.
bool reachesNext(const dvDeepSamples& samples, std::size_t k) {
  if (k == 0) return false;
  const float front = samples.fronts[k];
  const float back = samples.backs[k];
  return !(back - front < dvThinSample) && back > samples.fronts[k - 1];
}

dvDeepPiece cutPiece(const dvDeepSamples& samples, std::size_t k, float front, float back) {
  const float thickness = samples.backs[k] - samples.fronts[k];
  return {k, front, back, (back - front) / thickness, false};
}

dvDeepPiece frontPiece(const dvDeepSamples& samples, std::size_t k) {
  return cutPiece(samples, k, samples.fronts[k], samples.fronts[k - 1]);
}

bool isNearer(const dvDeepPiece& a, const dvDeepPiece& b) {
  const float frontA = sortedDepth(a.front);
  const float frontB = sortedDepth(b.front);
  if (frontA != frontB) return frontA < frontB;
  return sortedDepth(a.back) < sortedDepth(b.back);
}

/// The rest of sample k behind sample k - 1, if there is one.
void addRemainder(const dvDeepSamples& samples, std::size_t k, std::vector<dvDeepPiece>& pieces) {
  const float next = samples.backs[k - 1];
  const float back = samples.backs[k];
  if (back > next) pieces.push_back(cutPiece(samples, k, next, back));
}

}  // namespace

float addSample(const dvDeepSamples& samples, std::size_t& index,
                std::vector<dvDeepPiece>& pieces) {
  // A chain may be as long as the pixel has samples, so it is walked down and up, not recursed.
  const std::size_t first = index;
  for (; reachesNext(samples, index); --index)
    pieces.push_back(frontPiece(samples, index));
  pieces.push_back(wholePiece(samples, index));
  for (std::size_t k = index + 1; k <= first; ++k)
    addRemainder(samples, k, pieces);
  return samples.backs[first];
}

void combineSamples(const dvDeepSamples& samples, std::vector<dvDeepPiece>& pieces) {
  for (std::size_t i = samples.count(); i-- > 0;) {
    // The chain's index is a copy: the loop goes on with i - 1 whatever the chain reached.
    std::size_t chain = i;
    addSample(samples, chain, pieces);
  }
}

void sortPieces(std::vector<dvDeepPiece>& pieces) {
  // What is in order already, as pieces of apart samples are, or short, needs no room to sort.
  constexpr std::size_t fewPieces = 24;
  const std::size_t count = pieces.size();
  std::size_t sorted = std::min(count, std::size_t{1});
  while (sorted < count && !isNearer(pieces[sorted], pieces[sorted - 1]))
    ++sorted;
  if (sorted == count) return;
  if (count > fewPieces) {
    std::stable_sort(pieces.begin(), pieces.end(), isNearer);
    return;
  }
  for (; sorted < count; ++sorted) {
    const dvDeepPiece piece = pieces[sorted];
    std::size_t place = sorted;
    for (; place > 0 && isNearer(piece, pieces[place - 1]); --place)
      pieces[place] = pieces[place - 1];
    pieces[place] = piece;
  }
}

void mergeSamples(const dvDeepSamples& samples, std::vector<dvDeepPiece>& pieces) {
  pieces.clear();
  combineSamples(samples, pieces);
  sortPieces(pieces);
}

float pieceValue(const dvDeepLayout& layout, const dvDeepSamples& samples, const dvDeepPiece& piece,
                 std::size_t place) {
  const int p = static_cast<int>(place);
  if (p == layout.front || p == layout.depth) return piece.front;
  if (p == layout.back) return piece.back;
  const float value = samples.values[piece.sample * layout.size() + place];
  return piece.whole ? value : value * piece.fraction;
}

}  // namespace drevin

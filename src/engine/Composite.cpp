#include "engine/Composite.h"

#include <algorithm>

namespace drevin {

namespace {

/// Columns whose shares are kept at once.
constexpr int blockColumns = 256;

void layUnder(const double* sums, const double* shares, int count, float* colours) {
  for (int i = 0; i < count; ++i)
    colours[i] += static_cast<float>(shares[i] * sums[i]);
}

void takeRoom(const double* weights, int count, double* coverage, double* shares) {
  for (int i = 0; i < count; ++i) {
    const double room = 1.0 - coverage[i];
    const bool fits = !(room < weights[i]);
    shares[i] = fits ? 1.0 : room / weights[i];
    coverage[i] += fits ? weights[i] : room;
  }
}

}  // namespace

void compositeSlice(const std::vector<std::vector<double>>& sums, const dvColumnSpan& columns,
                    const std::vector<float*>& colours, double* coverage) {
  double shares[blockColumns];
  for (int begin = columns.begin; begin < columns.end; begin += blockColumns) {
    const int count = std::min(blockColumns, columns.end - begin);
    takeRoom(sums.back().data() + begin, count, coverage + begin, shares);
    for (std::size_t c = 0; c < colours.size(); ++c)
      layUnder(sums[c].data() + begin, shares, count, colours[c] + begin);
  }
}

void divideByCoverage(const std::vector<float*>& colours, const double* coverage, int width) {
  for (float* values : colours) {
    for (int i = 0; i < width; ++i) {
      if (coverage[i] > 0.0)
        values[i] = static_cast<float>(static_cast<double>(values[i]) / coverage[i]);
    }
  }
}

}  // namespace drevin

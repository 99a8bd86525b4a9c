#include "engine/Composite.h"

#include <algorithm>

#include "engine/CompositeCode.h"

namespace drevin {

void compositeSlice(const std::vector<std::vector<double>>& sums, const dvColumnSpan& columns,
                    const std::vector<float*>& colours, double* coverage) {
  constexpr int columnsAtOnce = 256;
  const dvCompositeCode& code = compositeCode();
  double shares[columnsAtOnce];
  for (int begin = columns.begin; begin < columns.end; begin += columnsAtOnce) {
    const int count = std::min(columnsAtOnce, columns.end - begin);
    code.takeRoom(sums.back().data() + begin, coverage + begin, shares, count);
    for (std::size_t c = 0; c < colours.size(); ++c)
      code.layUnder(sums[c].data() + begin, shares, colours[c] + begin, count);
  }
}

void divideByCoverage(const std::vector<float*>& colours, const double* coverage, int width) {
  for (float* values : colours)
    compositeCode().divide(values, coverage, width);
}

void divideCoverageByItself(const double* coverage, int width, float* colour) {
  for (int i = 0; i < width; ++i)
    colour[i] = static_cast<float>(coverage[i] > 0.0 ? coverage[i] / coverage[i] : coverage[i]);
}

}  // namespace drevin

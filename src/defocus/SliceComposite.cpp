#include "defocus/SliceComposite.h"

#include <algorithm>
#include <vector>

namespace drevin {

namespace {

struct Composite {
  std::vector<double> colour;
  std::vector<double> coverage;

  void addSlice(const double* colourSum, const double* weightSum) {
    for (std::size_t i = 0; i < colour.size(); ++i) {
      const double room = 1.0 - coverage[i];
      double weight = weightSum[i];
      double share = 1.0;
      if (room < weight) {
        share = room / weight;
        weight = room;
      }
      colour[i] += share * colourSum[i];
      coverage[i] += weight;
    }
  }
};

}  // namespace

void compositeSlices(const dvSliceAccumulators& accumulators, std::size_t channelPlace,
                     float* out) {
  const auto width =
      static_cast<std::size_t>(std::max(0, accumulators.right() - accumulators.left()));
  Composite sum{std::vector<double>(width, 0.0), std::vector<double>(width, 0.0)};
  for (int slice = 0; slice < accumulators.slices(); ++slice) {
    const double* colour = accumulators.colourSum(slice, channelPlace);
    if (colour == nullptr) continue;
    sum.addSlice(colour, accumulators.weightSum(slice, channelPlace));
  }
  float* first = out + accumulators.left();
  for (std::size_t i = 0; i < width; ++i) {
    const double covered = sum.coverage[i];
    first[i] = static_cast<float>(covered > 0.0 ? sum.colour[i] / covered : sum.colour[i]);
  }
}

}  // namespace drevin

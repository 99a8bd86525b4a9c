#include "engine/Repair.h"

#include <algorithm>

#include "engine/Composite.h"
#include "engine/CompositeCode.h"
#include "engine/DirectSums.h"

namespace drevin {

bool isInDoubt(const std::vector<float*>& colours, const double* coverage, int count,
               const dvTransformRounding& rounding, int x, int y) {
  const dvCompositeCode& code = compositeCode();
  if (code.anyBelow(coverage, dvRepairCoverage, count)) return true;
  const double weightError = rounding.error(static_cast<int>(colours.size()), x, y);
  for (std::size_t c = 0; c < colours.size(); ++c) {
    const double error = rounding.error(static_cast<int>(c), x, y);
    const dvDoubtLimits limits{error, weightError, dvRepairAbsolute, dvRepairRelative};
    if (code.anyInDoubt(colours[c], coverage, limits, count)) return true;
  }
  return false;
}

void repairSpan(const dvGroupRows& rows, const dvKernelTable& kernels, const dvKernelSigns* signs,
                std::size_t slices, int y, int left, int right, const std::vector<float*>& colours,
                double* coverage) {
  const int channels = static_cast<int>(colours.size());
  const int width = right - left;
  dvRowSums sums(channels, left, right);
  std::vector<std::vector<double>> row(colours.size() + 1,
                                       std::vector<double>(static_cast<std::size_t>(width)));
  for (float* colour : colours)
    std::fill_n(colour, width, 0.0F);
  std::fill_n(coverage, width, 0.0);
  for (std::size_t slice = 0; slice < slices; ++slice) {
    if (rows.isEmpty(slice)) continue;
    sumSplats(rows, kernels, slice, y, sums);
    for (int plane = 0; plane <= channels; ++plane)
      sums.store(plane, row[static_cast<std::size_t>(plane)].data());
    addSpecials(rows, kernels, slice, y, left, right, row);
    if (signs != nullptr) addNotFinite(rows, kernels, *signs, slice, y, left, right, row);
    compositeSlice(row, {0, width}, colours, coverage);
  }
}

}  // namespace drevin

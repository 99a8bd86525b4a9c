#include "engine/Repair.h"

#include <algorithm>

#include "engine/Composite.h"
#include "engine/CompositeCode.h"
#include "engine/DirectSums.h"

namespace drevin {

namespace {

bool anyThin(const double* coverage, const std::uint8_t* covered, int count) {
  if (!compositeCode().anyBelow(coverage, dvRepairCoverage, count)) return false;
  if (covered == nullptr) return true;
  for (int i = 0; i < count; ++i)
    if (covered[i] != 0 && coverage[i] < dvRepairCoverage) return true;
  return false;
}

}  // namespace

bool mayBeNothing(const std::vector<float*>& colours, const double* coverage, int count,
                  const dvTransformRounding& rounding, int x, int y) {
  if (anyThin(coverage, nullptr, count)) return true;
  for (std::size_t c = 0; c < colours.size(); ++c) {
    const double noise = dvRepairNoise * rounding.error(static_cast<int>(c), x, y);
    if (compositeCode().anyNearZero(colours[c], static_cast<float>(noise), count)) return true;
  }
  return false;
}

std::vector<std::uint8_t> clearUnreached(const dvNonZeroReach& reach, int y, int left, int right,
                                         const std::vector<float*>& colours, double* coverage) {
  const auto width = static_cast<std::size_t>(right - left);
  std::vector<std::uint8_t> covered = reach.row(colours.size(), y, left, right);
  for (std::size_t c = 0; c < colours.size(); ++c) {
    const std::vector<std::uint8_t> reached = reach.row(c, y, left, right);
    for (std::size_t i = 0; i < width; ++i)
      if (reached[i] == 0) colours[c][i] = 0.0F;
  }
  for (std::size_t i = 0; i < width; ++i)
    if (covered[i] == 0) coverage[i] = 0.0;
  return covered;
}

bool isInDoubt(const std::vector<float*>& colours, const double* coverage,
               const std::uint8_t* covered, int count, const dvTransformRounding& rounding, int x,
               int y) {
  const dvCompositeCode& code = compositeCode();
  if (anyThin(coverage, covered, count)) return true;
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

#include "engine/Repair.h"

#include <algorithm>

#include "engine/Composite.h"
#include "engine/CompositeCode.h"
#include "engine/DirectSums.h"

namespace drevin {

namespace {

/// Whether test(first, count) holds for any stretch of columns that a plane reaches, counted from
/// the first column.
template <typename Test>
bool anyReached(const dvDoubtfulColumns& columns, std::size_t plane, const Test& test) {
  if (columns.reached == nullptr) return test(0, columns.count);
  const std::uint8_t* reached = (*columns.reached)[plane].data() + columns.place;
  const std::uint8_t* last = reached + columns.count;
  for (const std::uint8_t* begin = std::find(reached, last, 1); begin != last;) {
    const std::uint8_t* end = std::find(begin, last, 0);
    if (test(static_cast<int>(begin - reached), static_cast<int>(end - begin))) return true;
    begin = std::find(end, last, 1);
  }
  return false;
}

}  // namespace

bool mayBeNothing(const std::vector<float*>& colours, const double* coverage, int count,
                  const dvTransformRounding& rounding, int x, int y) {
  if (compositeCode().anyBelow(coverage, dvRepairCoverage, count)) return true;
  for (std::size_t c = 0; c < colours.size(); ++c) {
    const double noise = dvRepairNoise * rounding.error(static_cast<int>(c), x, y);
    if (compositeCode().anyNearZero(colours[c], static_cast<float>(noise), count)) return true;
  }
  return false;
}

dvReachedColumns clearUnreached(const dvNonZeroReach& reach, int y, int left, int right,
                                const std::vector<float*>& colours, double* coverage) {
  const auto width = static_cast<std::size_t>(right - left);
  dvReachedColumns columns;
  for (std::size_t plane = 0; plane <= colours.size(); ++plane)
    columns.push_back(reach.row(plane, y, left, right));
  for (std::size_t c = 0; c < colours.size(); ++c) {
    for (std::size_t i = 0; i < width; ++i)
      if (columns[c][i] == 0) colours[c][i] = 0.0F;
  }
  for (std::size_t i = 0; i < width; ++i)
    if (columns.back()[i] == 0) coverage[i] = 0.0;
  return columns;
}

bool isInDoubt(const std::vector<float*>& colours, const double* coverage,
               const dvDoubtfulColumns& columns, const dvTransformRounding& rounding) {
  const dvCompositeCode& code = compositeCode();
  const auto isThin = [&](int first, int count) {
    return code.anyBelow(coverage + first, dvRepairCoverage, count);
  };
  if (anyReached(columns, colours.size(), isThin)) return true;
  const auto error = [&](std::size_t plane) {
    return rounding.error(static_cast<int>(plane), columns.x, columns.y);
  };
  for (std::size_t c = 0; c < colours.size(); ++c) {
    const dvDoubtLimits limits{error(c), error(colours.size()), dvRepairAbsolute, dvRepairRelative};
    const auto isOff = [&](int first, int count) {
      return code.anyInDoubt(colours[c] + first, coverage + first, limits, count);
    };
    if (anyReached(columns, c, isOff)) return true;
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

#include "engine/DirectSums.h"

#include <cstdint>

#include "engine/NotFiniteRuns.h"
#include "engine/SpecialSplats.h"

namespace drevin {

namespace {

/// Those of a slice that are centred in the columns [left, right).
dvRecordRange recordsWithin(const dvSplatRow& splats, std::size_t slice, std::int64_t left,
                            std::int64_t right) {
  const dvRecordRange all{splats.begin(slice), splats.end(slice)};
  // Mostly all are: then there is nothing to search.
  const bool inside = all.begin == all.end || (splats.records[all.begin].x >= left &&
                                               splats.records[all.end - 1].x < right);
  return inside ? all : splats.within(slice, left, right);
}

}  // namespace

void sumSplats(const dvGroupRows& rows, const dvKernelTable& kernels, std::size_t slice, int y,
               dvRowSums& sums) {
  const std::int64_t reach = kernels.largestRadius();
  sums.clear();
  forEachReaching(rows, kernels, y, [&](std::size_t row, int dy) {
    const dvSplatRow& splats = rows[row].splats->row;
    const dvRecordRange range =
        recordsWithin(splats, slice, sums.left() - reach, sums.right() + reach);
    sums.add(splats, range.begin, range.end, dy, kernels, &rows.reach(row));
    sums.endSourceRow();
  });
  sums.finish();
}

void addSpecials(const dvGroupRows& rows, const dvKernelTable& kernels, std::size_t slice, int y,
                 int left, int right, std::vector<std::vector<double>>& sums) {
  if (!rows.hasSpecials()) return;
  forEachReaching(rows, kernels, y, [&](std::size_t row, int dy) {
    addSpecialSplats(rows[row].splats->specials, static_cast<std::uint32_t>(slice), dy, kernels,
                     left, right, sums);
  });
}

void addNotFinite(const dvGroupRows& rows, const dvKernelTable& kernels, const dvKernelSigns& signs,
                  std::size_t slice, int y, int left, int right,
                  std::vector<std::vector<double>>& sums) {
  dvNotFiniteRow reached(sums.size() - 1, left, right);
  forEachReaching(rows, kernels, y, [&](std::size_t row, int dy) {
    for (const dvNotFiniteRun& run : rows[row].splats->notFinite)
      if (run.slice == slice) reached.add(run, dy, signs);
  });
  reached.addTo(sums);
}

}  // namespace drevin

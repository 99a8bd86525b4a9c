#include "engine/GroupRows.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>

namespace drevin {

dvGroupRows::dvGroupRows(const dvSplatLines& lines, std::size_t group, int bottom, int padding,
                         dvParallel& parallel)
    : bottom_(bottom), padding_(padding) {
  firstOfSource_.reserve(lines.size() + 1);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    firstOfSource_.push_back(rows_.size());
    if (lines[i] == nullptr) continue;
    for (const dvCentredSplats& splats : lines[i]->groups[group])
      add({&splats, bottom + static_cast<int>(i)});
  }
  firstOfSource_.push_back(rows_.size());
  byCentre_.resize(rows_.size());
  std::iota(byCentre_.begin(), byCentre_.end(), std::size_t{0});
  std::stable_sort(byCentre_.begin(), byCentre_.end(), [&](std::size_t a, std::size_t b) {
    return rows_[a].splats->centreY < rows_[b].splats->centreY;
  });
  reaches_.resize(rows_.size());
  parallel.forEach(static_cast<int>(rows_.size()), [&](int /*worker*/, int item) {
    const auto row = static_cast<std::size_t>(item);
    reaches_[row] = dvRowReach(rows_[row].splats->row);
  });
}

void dvGroupRows::add(const Row& row) {
  const dvSplatRow& splats = row.splats->row;
  rows_.push_back(row);
  greatestShift_ = std::max(greatestShift_, std::abs(row.shift()));
  lastIsOne_ = lastIsOne_ && row.splats->lastIsOne;
  hasSpecials_ = hasSpecials_ || !row.splats->specials.empty();
  hasNotFinite_ = hasNotFinite_ || !row.splats->notFinite.empty();
  if (filled_.size() + 1 < splats.sliceBegin.size()) filled_.resize(splats.sliceBegin.size() - 1);
  for (std::size_t slice = 0; slice + 1 < splats.sliceBegin.size(); ++slice)
    filled_[slice] = filled_[slice] || splats.begin(slice) < splats.end(slice);
}

dvRecordRange dvGroupRows::reaching(int y) const {
  const int sources = static_cast<int>(firstOfSource_.size()) - 1;
  const int begin = std::clamp(y - padding_ - bottom_, 0, sources);
  const int end = std::clamp(y + padding_ + 1 - bottom_, 0, sources);
  return {firstOfSource_[static_cast<std::size_t>(begin)],
          firstOfSource_[static_cast<std::size_t>(end)]};
}

dvGroupRows::Span dvGroupRows::centred(int bottom, int top) const {
  const auto place = [&](int centreY) {
    const auto found =
        std::partition_point(byCentre_.begin(), byCentre_.end(),
                             [&](std::size_t row) { return rows_[row].splats->centreY < centreY; });
    return byCentre_.data() + (found - byCentre_.begin());
  };
  return {place(bottom), place(top)};
}

int dvGroupRows::largestRadius(std::size_t slice) const {
  int largest = -1;
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    const dvSplatRow& splats = rows_[row].splats->row;
    largest = std::max(largest, reaches_[row].largest(splats.begin(slice), splats.end(slice)));
  }
  return largest;
}

}  // namespace drevin

#include "engine/SplatRecords.h"

#include <algorithm>
#include <numeric>

namespace drevin {

void dvSplatRow::sortByColumn() {
  std::vector<std::size_t> order(records.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto isBefore = [&](std::size_t a, std::size_t b) { return records[a].x < records[b].x; };
  bool sorted = true;
  for (std::size_t slice = 0; slice + 1 < sliceBegin.size(); ++slice) {
    const auto first = order.begin() + static_cast<std::ptrdiff_t>(begin(slice));
    const auto last = order.begin() + static_cast<std::ptrdiff_t>(end(slice));
    if (std::is_sorted(first, last, isBefore)) continue;
    std::stable_sort(first, last, isBefore);
    sorted = false;
  }
  if (sorted) return;
  const dvSplatRow before = *this;
  const std::size_t channels = stride();
  for (std::size_t i = 0; i < order.size(); ++i) {
    records[i] = before.records[order[i]];
    const auto from = before.values.begin() + static_cast<std::ptrdiff_t>(order[i] * channels);
    std::copy_n(from, channels, values.begin() + static_cast<std::ptrdiff_t>(i * channels));
  }
}

dvRecordRange dvSplatRow::within(std::size_t slice, std::int64_t left, std::int64_t right) const {
  const auto first = records.begin() + static_cast<std::ptrdiff_t>(begin(slice));
  const auto last = records.begin() + static_cast<std::ptrdiff_t>(end(slice));
  const auto place = [&](std::int64_t column) {
    const auto found =
        std::lower_bound(first, last, column,
                         [](const dvSplatRecord& record, std::int64_t x) { return record.x < x; });
    return static_cast<std::size_t>(found - records.begin());
  };
  return {place(left), place(right)};
}

}  // namespace drevin

#include "engine/SplatRecords.h"

#include <algorithm>

namespace drevin {

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

#include "engine/RowReach.h"

#include <algorithm>

namespace drevin {

dvRowReach::dvRowReach(const dvSplatRow& row) {
  const std::size_t count = row.records.size();
  kinds_.resize(count);
  std::transform(row.records.begin(), row.records.end(), kinds_.begin(), splatKind);
  blocks_.reserve(count / blockSize + 1);
  for (std::size_t begin = 0; begin < count; begin += blockSize) {
    const dvSplatKind* kinds = kinds_.data() + begin;
    const auto [least, most] =
        std::minmax_element(kinds, kinds + std::min(blockSize, count - begin));
    blocks_.push_back({*least, *most});
  }
}

std::size_t dvRowReach::next(std::size_t begin, std::size_t end, int distance) const {
  while (begin < end && block(begin).most < leastKind(distance))
    begin = blockEnd(begin);
  return std::min(begin, end);
}

int dvRowReach::largest(std::size_t begin, std::size_t end) const {
  int reach = -1;
  for (; begin < end; begin = blockEnd(begin))
    reach = std::max(reach, kindReach(block(begin).most));
  return reach;
}

}  // namespace drevin

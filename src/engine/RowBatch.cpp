#include "engine/RowBatch.h"

#include <algorithm>

namespace drevin {

namespace {

// Without an end before the last: the compiler then compares many at a time.
bool sameKinds(const dvSplatKind* kinds, int count) {
  int differences = 0;
  for (int i = 1; i < count; ++i)
    differences |= kinds[i] ^ kinds[0];
  return differences == 0;
}

}  // namespace

std::size_t dvRowBatch::collect(const dvSplatRow& row, std::size_t begin, std::size_t end,
                                int distance, const dvRowReach* reach) {
  count_ = 0;
  const int least = leastKind(distance);
  while (begin < end && count_ < capacity) {
    if (reach != nullptr) begin = reach->next(begin, end, distance);
    const std::size_t room = begin + static_cast<std::size_t>(capacity - count_);
    const std::size_t stop = std::min({end, room, dvRowReach::blockEnd(begin)});
    if (reach == nullptr) {
      dvSplatKind kinds[dvRowReach::blockSize];
      std::transform(row.records.data() + begin, row.records.data() + stop, kinds, splatKind);
      take(row, begin, stop, kinds, least);
    } else if (begin < stop && reach->block(begin).least >= least) {
      takeAll(row, begin, stop, reach->kinds() + begin);
    } else {
      take(row, begin, stop, reach->kinds() + begin, least);
    }
    begin = stop;
  }
  return begin;
}

inline dvRowRecord dvRowBatch::ready(const dvSplatRow& row, std::size_t stride,
                                     std::size_t record) const {
  return readyRecord(row.records[record], row.values.data() + record * stride, left_);
}

void dvRowBatch::takeAll(const dvSplatRow& row, std::size_t begin, std::size_t end,
                         const dvSplatKind* kinds) {
  std::copy(kinds, kinds + (end - begin), kinds_ + count_);
  const std::size_t stride = row.stride();
  for (; begin < end; ++begin)
    records_[count_++] = ready(row, stride, begin);
}

// First which, without a branch that depends on the record: that is not predictable.
void dvRowBatch::take(const dvSplatRow& row, std::size_t begin, std::size_t end,
                      const dvSplatKind* kinds, int least) {
  std::size_t taken[dvRowReach::blockSize];
  int count = 0;
  for (std::size_t i = 0; i < end - begin; ++i) {
    taken[count] = i;
    count += static_cast<int>(kinds[i] >= least);
  }
  const std::size_t stride = row.stride();
  for (int i = 0; i < count; ++i) {
    kinds_[count_] = kinds[taken[i]];
    records_[count_++] = ready(row, stride, begin + taken[i]);
  }
}

void dvRowBatch::cut(int dy, const dvKernelTable& kernels, const dvRowChoice& choice) {
  runs_.begin(dy, kernels, choice);
  if (count_ == 0) return;
  if (sameKinds(kinds_, count_)) {
    runs_.append(kinds_[0], records_, count_);
    return;
  }
  const auto [least, most] = std::minmax_element(kinds_, kinds_ + count_);
  if (*most - *least >= count_) {
    appendRuns(kinds_, records_);
    return;
  }
  std::uint16_t places[capacity] = {};
  orderByKind(kinds_, count_, places);
  for (int i = 0; i < count_; ++i) {
    orderedKinds_[i] = kinds_[places[i]];
    ordered_[i] = records_[places[i]];
  }
  appendRuns(orderedKinds_, ordered_);
}

void dvRowBatch::appendRuns(const dvSplatKind* kinds, const dvRowRecord* records) {
  for (int begin = 0; begin < count_;) {
    int end = begin + 1;
    while (end < count_ && kinds[end] == kinds[begin])
      ++end;
    runs_.append(kinds[begin], records + begin, end - begin);
    begin = end;
  }
}

}  // namespace drevin

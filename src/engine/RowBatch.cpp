#include "engine/RowBatch.h"

#include <algorithm>
#include <cstdint>

namespace drevin {

namespace {

/// The column from `left`, of a place so far off that nothing reaches in from there where the
/// difference would not fit.
int columnFrom(int left, std::int32_t x) {
  constexpr std::int64_t farOff = std::int64_t{1} << 28;
  return static_cast<int>(std::clamp(static_cast<std::int64_t>(x) - left, -farOff, farOff));
}

// Without an end before the last: the compiler then compares many at a time.
bool sameKinds(const dvSplatKind* kinds, int count) {
  int differences = 0;
  for (int i = 1; i < count; ++i)
    differences |= kinds[i] ^ kinds[0];
  return differences == 0;
}

}  // namespace

dvRowBatch::dvRowBatch(int left) : left_(left) {
  scattered_.reserve(capacity);
  gathered_.reserve(capacity);
}

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
  const dvSplatRecord& from = row.records[record];
  return {row.values.data() + record * stride, from.near, from.far, columnFrom(left_, from.x)};
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
  scattered_.clear();
  gathered_.clear();
  if (count_ == 0) return;
  const RunMaker maker{kernels.rowsAt(dy), kernels, choice};
  if (sameKinds(kinds_, count_)) {
    appendRun(maker, kinds_[0], records_, count_);
    return;
  }
  const auto [least, most] = std::minmax_element(kinds_, kinds_ + count_);
  if (*most - *least < count_) {
    cutByKind(maker, *least, *most);
  } else {
    cutAsTheyAre(maker);
  }
}

void dvRowBatch::cutAsTheyAre(const RunMaker& maker) {
  for (int begin = 0; begin < count_;) {
    int end = begin + 1;
    while (end < count_ && kinds_[end] == kinds_[begin])
      ++end;
    appendRun(maker, kinds_[begin], records_ + begin, end - begin);
    begin = end;
  }
}

// By counting: stable, so that runs are by ascending column.
void dvRowBatch::cutByKind(const RunMaker& maker, int least, int most) {
  int ends[capacity] = {};
  for (int i = 0; i < count_; ++i)
    ++ends[kinds_[i] - least];
  int begin = 0;
  for (int kind = 0; kind <= most - least; ++kind) {
    const int count = ends[kind];
    ends[kind] = begin;
    begin += count;
  }
  for (int i = 0; i < count_; ++i)
    ordered_[ends[kinds_[i] - least]++] = records_[i];
  begin = 0;
  for (int kind = 0; kind <= most - least; ++kind) {
    if (begin < ends[kind]) appendRun(maker, least + kind, ordered_ + begin, ends[kind] - begin);
    begin = ends[kind];
  }
}

void dvRowBatch::appendRun(const RunMaker& maker, int kind, const dvRowRecord* records, int count) {
  const dvKernelTable& kernels = maker.kernels;
  const dvKernelRow* rows = maker.rows + kindRadius(kind);
  const dvKernelRow& near = kindHasNear(kind) ? rows[0] : kernels.zeroRow();
  const dvKernelRow& far = kindHasFar(kind) ? rows[1] : kernels.zeroRow();
  const int begin = std::min(near.begin, far.begin);
  const int end = std::max(near.end, far.end);
  if (begin >= end) return;
  int innerBegin = std::max(near.constantBegin, far.constantBegin);
  int innerEnd = std::min(near.constantEnd, far.constantEnd);
  if (innerEnd - innerBegin < maker.choice.leastInner) innerBegin = innerEnd = end;
  const dvRowRun run{records,
                     count,
                     begin,
                     end,
                     innerBegin,
                     innerEnd,
                     kernels.values() + near.centre,
                     kernels.values() + far.centre,
                     near.constantValue,
                     far.constantValue};
  const dvRowOrder order = maker.choice.order;
  const bool gather = order == dvRowOrder::Gather ||
                      (order == dvRowOrder::Quickest && gatherIsQuicker(run, maker.choice.times));
  (gather ? gathered_ : scattered_).push_back(run);
}

}  // namespace drevin

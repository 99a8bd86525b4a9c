#include "engine/ReadyRow.h"

#include <utility>

namespace drevin {

dvReadyRow::dvReadyRow(dvSplatRow row, int left) : hasGreat_(row.hasGreat) {
  const std::size_t count = row.records.size();
  if (count == 0) return;
  values_ = std::move(row.values);
  values_.shrink_to_fit();
  records_.reserve(count);
  for (std::size_t begin = 0; begin < count; begin += chunkSize)
    addChunk(row, begin, std::min(begin + chunkSize, count), left);
  runs_.shrink_to_fit();
}

void dvReadyRow::addChunk(const dvSplatRow& row, std::size_t begin, std::size_t end, int left) {
  const std::size_t stride = values_.size() / row.records.size();
  dvSplatKind kinds[chunkSize] = {};
  std::transform(row.records.data() + begin, row.records.data() + end, kinds, splatKind);
  std::uint16_t places[chunkSize] = {};
  orderByKind(kinds, static_cast<int>(end - begin), places);
  for (std::size_t i = 0; i < end - begin; ++i) {
    const std::size_t record = begin + places[i];
    const auto place = static_cast<std::uint32_t>(records_.size());
    const dvSplatKind kind = kinds[places[i]];
    if (i == 0 || runs_.back().kind != kind) runs_.push_back({kind, place, place});
    runs_.back().end = place + 1;
    records_.push_back(readyRecord(row.records[record], values_.data() + record * stride, left));
  }
  chunkEnds_.push_back(runs_.size());
}

}  // namespace drevin

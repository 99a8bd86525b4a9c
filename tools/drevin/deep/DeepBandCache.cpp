#include "deep/DeepBandCache.h"

#include <algorithm>
#include <utility>

namespace drevintool {

std::shared_ptr<const DeepBand> DeepBandCache::find(std::size_t number) {
  Entry& entry = entries_[number];
  if (entry.band) entry.lastUse = ++uses_;
  return entry.band;
}

void DeepBandCache::add(std::size_t number, std::shared_ptr<const DeepBand> band) {
  constexpr int kOften = 3;
  Entry& entry = entries_[number];
  const bool replaces = entry.band != nullptr;
  release(entry);
  entry.bytes = band->bytes();
  if (!replaces && ++entry.additions >= kOften) {
    limit_ = std::max(limit_, std::min(ceiling_, bytesUsedSince(entry.lastUse) + entry.bytes));
  }
  entry.band = std::move(band);
  entry.lastUse = ++uses_;
  bytes_ += entry.bytes;
  ++held_;
  shrink();
}

std::uint64_t DeepBandCache::bytesUsedSince(std::uint64_t use) const {
  std::uint64_t sum = 0;
  for (const Entry& entry : entries_) {
    if (entry.lastUse > use) sum += entry.bytes;
  }
  return sum;
}

void DeepBandCache::release(Entry& entry) {
  if (!entry.band) return;
  entry.band.reset();
  bytes_ -= entry.bytes;
  --held_;
}

void DeepBandCache::shrink() {
  constexpr std::size_t kFewest = 2;
  while (bytes_ > limit_ && held_ > kFewest) {
    Entry* oldest = nullptr;
    for (Entry& entry : entries_) {
      if (entry.band && (oldest == nullptr || entry.lastUse < oldest->lastUse)) oldest = &entry;
    }
    release(*oldest);
  }
}

}  // namespace drevintool

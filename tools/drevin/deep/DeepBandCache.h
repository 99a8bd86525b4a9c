#pragma once

/// The bands of a deep part that stay in memory.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "deep/DeepBand.h"

namespace drevintool {

/// Keeps the bands that were used last, up to a number of bytes, and two of them in any case.
///
/// A reader that goes over the same rows again and again, as a blur does, with more of them than
/// fit, would find none of them: each would be gone when its turn comes. So a band that is added
/// for a third time raises the limit to what was used since its last use, up to a ceiling. Going
/// over the whole part twice, as a scan and a render do, does not raise it.
class DeepBandCache {
 public:
  DeepBandCache(std::size_t bands, std::uint64_t limit, std::uint64_t ceiling)
      : entries_(bands), limit_(limit), ceiling_(ceiling) {}

  /// The band, which counts as used now; null if it is not there.
  std::shared_ptr<const DeepBand> find(std::size_t number);
  /// Adds a band, or replaces it, and lets go of those that were not used for longest.
  void add(std::size_t number, std::shared_ptr<const DeepBand> band);
  std::uint64_t bytes() const { return bytes_; }

 private:
  struct Entry {
    std::shared_ptr<const DeepBand> band;
    std::uint64_t bytes = 0;    // stays known when the band is gone
    std::uint64_t lastUse = 0;  // 0: never
    int additions = 0;
  };

  std::uint64_t bytesUsedSince(std::uint64_t use) const;
  void release(Entry& entry);
  void shrink();

  std::vector<Entry> entries_;
  std::uint64_t limit_;
  std::uint64_t ceiling_;
  std::uint64_t uses_ = 0;
  std::uint64_t bytes_ = 0;
  std::size_t held_ = 0;
};

}  // namespace drevintool

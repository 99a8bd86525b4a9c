#include "deep/DeepBandCache.h"

#include <gtest/gtest.h>

namespace drevintool {
namespace {

constexpr std::size_t kBandBytes = 4000;

std::shared_ptr<const DeepBand> band() {
  auto made = std::make_shared<DeepBand>();
  made->values.resize(kBandBytes / sizeof(float));
  return made;
}

// Uses bands [first, end) in order; how many of them had to be added.
int use(DeepBandCache& cache, std::size_t first, std::size_t end) {
  int added = 0;
  for (std::size_t number = first; number < end; ++number) {
    if (cache.find(number)) continue;
    cache.add(number, band());
    ++added;
  }
  return added;
}

TEST(DeepBandCache, bandThatWasAdded_isFound) {
  DeepBandCache cache(3, 10 * kBandBytes, 10 * kBandBytes);
  EXPECT_EQ(cache.find(1), nullptr);
  const std::shared_ptr<const DeepBand> added = band();
  cache.add(1, added);
  EXPECT_EQ(cache.find(1), added);
  EXPECT_EQ(cache.find(0), nullptr);
  EXPECT_EQ(cache.bytes(), kBandBytes);
}

TEST(DeepBandCache, beyondTheLimit_theLongestUnusedGoes) {
  DeepBandCache cache(5, 3 * kBandBytes, 3 * kBandBytes);
  use(cache, 0, 3);
  cache.find(0);
  cache.add(3, band());
  EXPECT_EQ(cache.bytes(), 3 * kBandBytes);
  EXPECT_EQ(cache.find(1), nullptr);
  EXPECT_NE(cache.find(0), nullptr);
  EXPECT_NE(cache.find(2), nullptr);
}

TEST(DeepBandCache, twoBands_stayWhateverTheirSize) {
  DeepBandCache cache(4, 1, 1);
  use(cache, 0, 4);
  EXPECT_EQ(cache.bytes(), 2 * kBandBytes);
  EXPECT_NE(cache.find(2), nullptr);
  EXPECT_NE(cache.find(3), nullptr);
}

TEST(DeepBandCache, bandThatIsReplaced_countsOnce) {
  DeepBandCache cache(2, 10 * kBandBytes, 10 * kBandBytes);
  for (int i = 0; i < 5; ++i)
    cache.add(0, band());
  EXPECT_EQ(cache.bytes(), kBandBytes);
}

TEST(DeepBandCache, twoPassesOverAll_keepTheLimit) {
  DeepBandCache cache(100, 5 * kBandBytes, 1000 * kBandBytes);
  EXPECT_EQ(use(cache, 0, 100), 100);
  EXPECT_EQ(use(cache, 0, 100), 100);
  EXPECT_EQ(cache.bytes(), 5 * kBandBytes);
}

// A window of bands that moves up by one band after many passes over it, as a blur reads.
TEST(DeepBandCache, windowThatIsReadAgainAndAgain_comesToFit) {
  constexpr std::size_t kWindow = 12;
  DeepBandCache cache(200, 5 * kBandBytes, 1000 * kBandBytes);
  int added = 0;
  for (std::size_t first = 0; first + kWindow <= 200; ++first) {
    for (int pass = 0; pass < 30; ++pass)
      added += use(cache, first, first + kWindow);
  }
  EXPECT_LT(added, 300) << "each band once, and a few while the limit rose";
  EXPECT_LE(cache.bytes(), (kWindow + 1) * kBandBytes) << "follows the window, not the part";
}

TEST(DeepBandCache, ceiling_holds) {
  DeepBandCache cache(100, 5 * kBandBytes, 20 * kBandBytes);
  for (int pass = 0; pass < 6; ++pass)
    use(cache, 0, 100);
  EXPECT_EQ(cache.bytes(), 20 * kBandBytes);
}

}  // namespace
}  // namespace drevintool

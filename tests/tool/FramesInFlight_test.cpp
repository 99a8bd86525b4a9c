#include "sequence/FramesInFlight.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace drevintool {
namespace {

TEST(FramesInFlight, bigFrames_areAlone) {
  EXPECT_EQ(usefulFramesInFlight(1920 * 1080, 16, 100), 1U);
  EXPECT_EQ(usefulFramesInFlight(600000, 16, 100), 1U);
}

TEST(FramesInFlight, smallFrames_areSeveral) {
  EXPECT_EQ(usefulFramesInFlight(500000, 16, 100), 2U);
  EXPECT_EQ(usefulFramesInFlight(1, 16, 100), 8U);
}

TEST(FramesInFlight, threadsAndFrames_areTheMost) {
  EXPECT_EQ(usefulFramesInFlight(1000, 2, 100), 2U);
  EXPECT_EQ(usefulFramesInFlight(1000, 16, 3), 3U);
  EXPECT_EQ(usefulFramesInFlight(1000, 0, 0), 1U);
}

TEST(FramesInFlight, framesThatBeginTogether_haveAllThreads) {
  for (unsigned threads = 1; threads <= 64; ++threads) {
    for (unsigned inFlight = 1; inFlight <= 12; ++inFlight) {
      for (std::size_t first = 0; first < 3 * inFlight; first += inFlight) {
        unsigned together = 0;
        unsigned most = 0;
        unsigned least = threads;
        for (unsigned i = 0; i < inFlight; ++i) {
          const unsigned each = threadsOfFrame(threads, inFlight, first + i);
          together += each;
          most = std::max(most, each);
          least = std::min(least, each);
        }
        EXPECT_EQ(together, std::max(threads, inFlight)) << threads << " in " << inFlight;
        EXPECT_LE(most - least, 1U) << threads << " in " << inFlight;
      }
    }
  }
}

TEST(FramesInFlight, unknownSize_isTakenForBig) {
  EXPECT_EQ(usefulFramesInFlight(0, 16, 100), 1U);
  EXPECT_EQ(usefulFramesInFlight(-5, 16, 100), 1U);
}

}  // namespace
}  // namespace drevintool

#include "sequence/FramesInFlight.h"

#include <gtest/gtest.h>

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

TEST(FramesInFlight, unknownSize_isTakenForBig) {
  EXPECT_EQ(usefulFramesInFlight(0, 16, 100), 1U);
  EXPECT_EQ(usefulFramesInFlight(-5, 16, 100), 1U);
}

}  // namespace
}  // namespace drevintool

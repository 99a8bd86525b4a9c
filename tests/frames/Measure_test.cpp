#include "frames/Measure.h"

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <thread>

namespace drevin::bench {
namespace {

TEST(ThreadSeconds, ofSleep_areNone) {
  const auto sleep = [] { std::this_thread::sleep_for(std::chrono::milliseconds(30)); };
  EXPECT_LT(threadSecondsOf(sleep), 0.02);
  EXPECT_GE(secondsOf(sleep), 0.03);
}

TEST(ThreadSeconds, ofWork_areCounted) {
  volatile double sum = 0.0;
  EXPECT_GT(threadSecondsOf([&] {
              for (int i = 0; i < 1000000; ++i)
                sum = sum + 1.0;
            }),
            1e-5);
}

TEST(Median, oddNumberOfValues_isTheMiddleOne) {
  EXPECT_DOUBLE_EQ(median({9.0, 1.0, 5.0}), 5.0);
}

TEST(Median, evenNumberOfValues_isTheMeanOfTheTwoInTheMiddle) {
  EXPECT_DOUBLE_EQ(median({9.0, 1.0, 5.0, 2.0}), 3.5);
}

TEST(Median, oneValue_isThatValue) {
  EXPECT_DOUBLE_EQ(median({7.0}), 7.0);
}

TEST(Median, noValues_throws) {
  EXPECT_THROW(median({}), std::invalid_argument);
}

TEST(SpreadRows, fewRows_areInTheMiddlesOfEqualParts) {
  EXPECT_EQ(spreadRows(100, 2), (std::vector<int>{25, 75}));
}

TEST(SpreadRows, moreThanTheHeight_areAllRows) {
  EXPECT_EQ(spreadRows(3, 12), (std::vector<int>{0, 1, 2}));
}

TEST(WholeFrameSeconds, sampledRows_areScaledToTheHeightAndSharedByTheThreads) {
  EXPECT_DOUBLE_EQ(wholeFrameSeconds(3.0, 12, 1080, 2), 135.0);
}

TEST(SecondsOf, work_isDoneOnceAndTakesTime) {
  int done = 0;
  EXPECT_GE(secondsOf([&] { ++done; }), 0.0);
  EXPECT_EQ(done, 1);
}

}  // namespace
}  // namespace drevin::bench

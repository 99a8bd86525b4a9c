#include "terminal/SequenceProgress.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace drevintool {
namespace {

void waitForTheNextLine() {
  std::this_thread::sleep_for(std::chrono::milliseconds(1050));
}

TEST(SequenceProgress, lines_areOfTheWholeSequenceAndNeverFall) {
  ::testing::internal::CaptureStderr();
  SequenceProgress progress(false, 4);
  waitForTheNextLine();
  progress.show(0, {"Defocus", 0, 0, 0.5});
  waitForTheNextLine();
  progress.show(0, {"Rows", 0, 10, 0.0});
  progress.frameDone(0);
  waitForTheNextLine();
  progress.show(2, {"Rows", 5, 10, 0.0});
  progress.finish();
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "Progress: 12%\nProgress: 12%\nProgress: 37%\nProgress: 100%\n");
}

TEST(SequenceProgress, hundred_isSaidAtTheEndOnly) {
  ::testing::internal::CaptureStderr();
  SequenceProgress progress(false, 1);
  waitForTheNextLine();
  progress.frameDone(0);
  progress.finish();
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Progress: 99%\nProgress: 100%\n");
}

TEST(SequenceProgress, quiet_saysNothing) {
  ::testing::internal::CaptureStderr();
  SequenceProgress progress(true, 1);
  progress.frameDone(0);
  progress.finish();
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace drevintool

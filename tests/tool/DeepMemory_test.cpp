#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "DeepExrFixture.h"
#include "ScratchFolder.h"
#include "deep/DeepExrSource.h"

namespace drevintool::testing {
namespace {

constexpr int kWidth = 256;
constexpr int kSamples = 32;
constexpr long kKibibytesPerRow = kWidth * kSamples * 6L * 4L / 1024L;

// Peak memory of a process of its own that reads all rows from the bottom up.
long peakKibibytes(const std::string& path) {
  const pid_t process = fork();
  if (process == 0) {
    DeepExrSource source(path, "", "");
    embedded::DeepRow row;
    for (int y = 0; y < source.box().t(); ++y)
      source.readRow(y, 0, kWidth, source.channels(), row);
    _exit(row.values.size() == kWidth * kSamples * 6U ? 0 : 1);
  }
  int status = 0;
  rusage usage{};
  EXPECT_EQ(wait4(process, &status, 0, &usage), process);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  return usage.ru_maxrss;
}

TEST(DeepMemory, followsTheBandsAndNotTheFile) {
  if (DREVIN_SANITIZED) GTEST_SKIP() << "sanitizers hold back memory that was freed";
  const ScratchFolder folder;
  constexpr int kRows = 400;
  writeUniformDeepFile(folder.file("low.exr"), kWidth, kRows, kSamples);
  writeUniformDeepFile(folder.file("high.exr"), kWidth, 3 * kRows, kSamples);
  ASSERT_GT(kKibibytesPerRow * kRows, 70L << 10) << "more than what stays in memory";
  const long low = peakKibibytes(folder.file("low.exr"));
  const long high = peakKibibytes(folder.file("high.exr"));
  EXPECT_LT(high - low, 16L << 10) << low << " KiB and " << high << " KiB";
  EXPECT_LT(high, kKibibytesPerRow * 3 * kRows / 2);
}

}  // namespace
}  // namespace drevintool::testing

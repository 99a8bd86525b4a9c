#include <gtest/gtest.h>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

TEST(Threads, anyNumberOfThreads_givesTheSameBits) {
  const ScratchFolder folder;
  PartFixture part = rgbazPart(90, 60, 0.0);
  part.channels.back().value = [](int x, int y) { return 60.0 + x + 0.5 * y; };
  writeExrFixture(folder.file("in.exr"), part);
  for (const char* threads : {"1", "2", "5"}) {
    const RunResult result = runCommand(
        renderArguments(folder.file("in.exr"), folder.file(std::string(threads) + ".exr"),
                        {"--threads", threads, "--set", "bloom=0.4", "--set", "multiplier=20",
                         "--set", "focusRegionSize=30"}));
    ASSERT_EQ(result.exitCode, 0) << result.error;
  }
  const ReadFile one = readBack(folder.file("1.exr"));
  for (const char* threads : {"2", "5"}) {
    const ReadFile other = readBack(folder.file(std::string(threads) + ".exr"));
    for (const auto& [name, channel] : one.channels) {
      EXPECT_EQ(channel.bits, other.channels.at(name).bits) << name << " with " << threads;
    }
  }
}

}  // namespace
}  // namespace drevintool::testing

#include <gtest/gtest.h>

#include <future>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

// Rounds, because what one of the processes does while the other one writes is up to chance.
TEST(ConcurrentRuns, twoOnOneOutput_leaveOneWholePicture) {
  constexpr int kRounds = 8;
  const ScratchFolder folder;
  writeExrFixture(folder.file("in.exr"), rgbazPart(300, 200, 100.0));
  const auto render = [&](const std::string& region) {
    return runCommand(
        renderArguments(folder.file("in.exr"), folder.file("out.exr"), {"--region", region}));
  };
  for (int round = 0; round < kRounds; ++round) {
    std::future<RunResult> other = std::async(std::launch::async, render, "0,0,300,100");
    const RunResult mine = render("0,0,150,200");
    EXPECT_EQ(mine.exitCode, 0) << mine.error;
    EXPECT_EQ(other.get().exitCode, 0);
    const ReadFile result = readBack(folder.file("out.exr"));
    const Imath::V2i size = result.data.size() + Imath::V2i(1, 1);
    EXPECT_TRUE(size == Imath::V2i(300, 100) || size == Imath::V2i(150, 200)) << size.x;
    EXPECT_EQ(folder.entries(), (std::vector<std::string>{"in.exr", "out.exr"}));
  }
}

}  // namespace
}  // namespace drevintool::testing

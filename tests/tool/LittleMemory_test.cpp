#include <gtest/gtest.h>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

constexpr std::size_t kMebibyte = std::size_t{1} << 20;

class LittleMemory : public ::testing::Test {
 protected:
  LittleMemory() { writeExrFixture(input_, rgbazPart(900, 600, 140.0)); }

  RunResult render(std::size_t mebibytes) const {
    RunOptions options;
    options.addressSpace = mebibytes * kMebibyte;
    return runCommand(
        renderArguments(input_, output_, {"--threads", "2", "--set", "multiplier=60"}), options);
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string output_ = folder_.file("out.exr");
};

// Wherever memory ends: while the picture is read, defocused or written.
TEST_F(LittleMemory, anyLimit_isOneLineOrTheWholeResult) {
  if (DREVIN_SANITIZED) GTEST_SKIP() << "sanitizers take far more address space";
  int failures = 0;
  for (std::size_t mebibytes = 50; mebibytes <= 350; mebibytes += 20) {
    writeBytes(output_, "old");
    const RunResult result = render(mebibytes);
    EXPECT_EQ(folder_.entries(), (std::vector<std::string>{"in.exr", "out.exr"}));
    if (result.exitCode == 0) continue;
    ++failures;
    EXPECT_EQ(result.exitCode, 1) << mebibytes << ": " << result.error;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_NE(result.error.find("memory"), std::string::npos) << result.error;
    EXPECT_EQ(bytesOfFile(output_), "old");
  }
  EXPECT_GT(failures, 2);
  EXPECT_EQ(render(2000).exitCode, 0);
  EXPECT_EQ(readBack(output_).channels.size(), 5U);
}

// Small frames of a sequence, four at a time, of which each needs a good part of the memory.
class LittleMemoryInFlight : public ::testing::Test {
 protected:
  LittleMemoryInFlight() { writeExrFixture(folder_.file("in.exr"), rgbazPart(900, 600, 140.0)); }

  RunResult render(std::size_t mebibytes) const {
    RunOptions options;
    options.addressSpace = mebibytes * kMebibyte;
    std::vector<std::string> arguments = renderArguments(
        folder_.file("in.exr"), folder_.file("out.#.exr"),
        {"--threads", "4", "--frames", "1-6", "--frames-in-flight", "4", "--set", "multiplier=20"});
    arguments.erase(arguments.begin() + 1);  // --quiet
    return runCommand(arguments, options);
  }

  ScratchFolder folder_;
};

TEST_F(LittleMemoryInFlight, framesThatLackItTogether_areDoneOnceMoreAlone) {
  if (DREVIN_SANITIZED) GTEST_SKIP() << "sanitizers take far more address space";
  int wholeAfterAll = 0;
  for (std::size_t mebibytes = 300; mebibytes >= 160 && wholeAfterAll == 0; mebibytes -= 20) {
    const RunResult result = render(mebibytes);
    const std::vector<std::string> again = linesStarting(result.error, "drevin: frame ");
    ASSERT_TRUE(result.exitCode == 0 || result.exitCode == 1) << mebibytes << " " << result.error;
    if (result.exitCode != 0 || again.empty()) continue;
    ++wholeAfterAll;
    EXPECT_NE(again.front().find("once more alone"), std::string::npos) << again.front();
    EXPECT_EQ(folder_.entries().size(), 7U) << mebibytes;
  }
  EXPECT_EQ(wholeAfterAll, 1);
}

}  // namespace
}  // namespace drevintool::testing

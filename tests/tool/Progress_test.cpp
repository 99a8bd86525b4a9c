#include <gtest/gtest.h>

#include <chrono>
#include <sstream>
#include <thread>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"
#include "terminal/NumberText.h"
#include "terminal/Progress.h"

namespace drevintool::testing {
namespace {

// Every pixel is blurred over 60 pixels: some seconds of work without optimisation.
class Progress : public ::testing::Test {
 protected:
  Progress() { writeExrFixture(input_, rgbazPart(240, 180, 160.0)); }

  RunResult render(const std::vector<std::string>& more) const {
    std::vector<std::string> arguments = {"render", "--plugin", builtPlugin(),          "--input",
                                          input_,   "--set",    "multiplier=60",        "--threads",
                                          "1",      "--output", folder_.file("out.exr")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runCommand(arguments);
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
};

// The number of a line "Progress: 42%", or -1 for any other line.
int percentOf(const std::string& line) {
  const std::string start = "Progress: ";
  if (line.size() < start.size() + 2 || line.rfind(start, 0) != 0 || line.back() != '%') return -1;
  return parseInteger(line.substr(start.size(), line.size() - start.size() - 1)).value_or(-1);
}

TEST_F(Progress, awayFromATerminal_isWholeLinesAtMostOneASecond) {
  const RunResult result = render({});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  std::istringstream stream(result.error);
  int last = 0;
  int count = 0;
  for (std::string line; std::getline(stream, line); ++count) {
    const int percent = percentOf(line);
    EXPECT_GE(percent, last) << line;
    last = percent;
  }
  EXPECT_EQ(last, 100);
  EXPECT_LE(count, result.seconds + 1.0);
}

TEST(ProgressDisplay, stagesThatTellHowFarTheyAre_areShownAndTheNumberNeverFalls) {
  ::testing::internal::CaptureStderr();
  const auto wait = [] { std::this_thread::sleep_for(std::chrono::milliseconds(1100)); };
  ProgressDisplay display(false);
  display.show({"Kernels", 0, 0, 0.0});
  wait();
  display.show({"Defocus", 0, 0, 0.125});
  wait();
  display.show({"Defocus", 0, 0, 0.25});
  wait();
  display.show({"Rows", 3, 100, 0.0});
  display.finish();
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "Progress: 12%\nProgress: 25%\nProgress: 25%\nProgress: 100%\n");
}

TEST_F(Progress, quiet_saysNothing) {
  EXPECT_EQ(render({"--quiet"}).error, "");
}

TEST_F(Progress, failedRender_doesNotSay100) {
  const RunResult result = render({"--set", "kernelType=Input"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_TRUE(linesStarting(result.error, "Progress: ").empty()) << result.error;
}

}  // namespace
}  // namespace drevintool::testing

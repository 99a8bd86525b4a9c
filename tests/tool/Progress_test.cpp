#include <gtest/gtest.h>

#include <chrono>
#include <sstream>
#include <thread>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"
#include "TerminalRun.h"
#include "terminal/NumberText.h"
#include "terminal/Progress.h"

namespace drevintool::testing {
namespace {

// Every pixel is blurred over 60 pixels: some seconds of work without optimisation.
class Progress : public ::testing::Test {
 protected:
  Progress() { writeExrFixture(input_, rgbazPart(240, 180, 160.0)); }

  std::vector<std::string> arguments(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> all = {"render", "--plugin", builtPlugin(),          "--input",
                                    input_,   "--set",    "multiplier=60",        "--threads",
                                    "1",      "--output", folder_.file("out.exr")};
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }
  RunResult render(const std::vector<std::string>& more) const {
    return runCommand(arguments(more));
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

TEST_F(Progress, onATerminal_isABarThatIsClearedAtTheEnd) {
  const std::string text = onTerminal(arguments(), {{"TERM", "xterm"}});
  if (text.empty()) GTEST_SKIP() << "no terminal to be had here";
  EXPECT_NE(text.find("\r\033[K"), std::string::npos);
  EXPECT_EQ(text.find("Progress: "), std::string::npos) << text;
}

TEST_F(Progress, terminalThatCannotBeDrawnOn_getsLines) {
  for (const char* term : {"dumb", ""}) {
    const std::string text = onTerminal(arguments(), {{"TERM", term}});
    if (text.empty()) GTEST_SKIP() << "no terminal to be had here";
    EXPECT_EQ(text.find('\033'), std::string::npos) << text;
    EXPECT_NE(text.find("Progress: 100%\r\n"), std::string::npos) << text;
  }
}

TEST_F(Progress, sequenceOnATerminalThatCannotBeDrawnOn_getsLines) {
  const std::string input = folder_.file("small.exr");
  writeExrFixture(input, rgbazPart(12, 10, 5.0));
  const std::vector<std::string> sequence = {"render",
                                             "--plugin",
                                             builtPlugin(),
                                             "--input",
                                             input,
                                             "--frames",
                                             "1-3",
                                             "--output",
                                             folder_.file("o.#.exr"),
                                             "--set",
                                             "kernelType=Input",
                                             "--skip-bad-frames"};
  const std::string text = onTerminal(sequence, {{"TERM", "dumb"}});
  if (text.empty()) GTEST_SKIP() << "no terminal to be had here";
  EXPECT_EQ(text.find('\033'), std::string::npos) << text;
  EXPECT_NE(text.find("drevin: error: frame 1: "), std::string::npos) << text;
}

TEST_F(Progress, failedRender_doesNotSay100) {
  const RunResult result = render({"--set", "kernelType=Input"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_TRUE(linesStarting(result.error, "Progress: ").empty()) << result.error;
}

}  // namespace
}  // namespace drevintool::testing

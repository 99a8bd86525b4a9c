#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

// Enough work for some seconds: every pixel is blurred over 60 pixels or so.
class Progress : public ::testing::Test {
 protected:
  Progress() { writeExrFixture(input_, rgbazPart(400, 300, 160.0)); }

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

TEST_F(Progress, awayFromATerminal_isWholeLinesAtMostOneASecond) {
  const RunResult result = render({});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  const std::regex form("Progress: ([0-9]{1,3})%");
  std::istringstream stream(result.error);
  int last = -1;
  int count = 0;
  for (std::string line; std::getline(stream, line); ++count) {
    std::smatch match;
    ASSERT_TRUE(std::regex_match(line, match, form)) << line;
    EXPECT_GT(std::stoi(match[1]), last);
    last = std::stoi(match[1]);
  }
  EXPECT_EQ(last, 100);
  EXPECT_LE(count, result.seconds + 1.0);
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

#include "terminal/Colours.h"

#include <gtest/gtest.h>

#include <string>

#include "CommandRun.h"
#include "TerminalRun.h"

namespace drevintool::testing {
namespace {

TEST(Colours, areWantedOnATerminalThatHasThem) {
  EXPECT_TRUE(coloursWanted(true, nullptr, "xterm"));
  EXPECT_FALSE(coloursWanted(false, nullptr, "xterm"));
}

TEST(Colours, dumbTerminals_haveNone) {
  EXPECT_FALSE(coloursWanted(true, nullptr, "dumb"));
  EXPECT_FALSE(coloursWanted(true, nullptr, ""));
  EXPECT_FALSE(coloursWanted(true, nullptr, nullptr));
}

TEST(Colours, noColor_countsIfItIsNotEmpty) {
  EXPECT_FALSE(coloursWanted(true, "1", "xterm"));
  EXPECT_TRUE(coloursWanted(true, "", "xterm"));
}

// What the command writes to a terminal when it is called without a subcommand.
std::string errorOnTerminal(const char* noColor) {
  return onTerminal({}, {{"TERM", "xterm"}, {"NO_COLOR", noColor}});
}

TEST(Colours, errorOnATerminal_isRedUnlessThatIsRefused) {
  const std::string plain = errorOnTerminal("1");
  if (plain.empty()) GTEST_SKIP() << "no terminal to be had here";
  EXPECT_NE(plain.find("drevin: error: "), std::string::npos) << plain;
  EXPECT_EQ(plain.find("\033[1;31m"), std::string::npos) << plain;
  EXPECT_NE(errorOnTerminal("").find("\033[1;31mdrevin: error:\033[0m "), std::string::npos);
}

TEST(Colours, files_haveNone) {
  RunOptions options;
  options.environment = {{"TERM", "xterm"}, {"NO_COLOR", ""}};
  const RunResult result = runCommand({}, options);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
}

}  // namespace
}  // namespace drevintool::testing

#include "terminal/Colours.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "CommandRun.h"

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
std::string onTerminal(const char* noColor) {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
  if (terminal < 0 || grantpt(terminal) != 0 || unlockpt(terminal) != 0) return {};
  const int end = open(ptsname(terminal), O_RDWR | O_NOCTTY);
  const pid_t process = fork();
  if (process == 0) {
    dup2(end, STDERR_FILENO);
    setenv("TERM", "xterm", 1);
    setenv("NO_COLOR", noColor, 1);
    execl(DREVIN_COMMAND, DREVIN_COMMAND, static_cast<char*>(nullptr));
    _exit(127);
  }
  int status = 0;
  waitpid(process, &status, 0);
  std::string text(4096, '\0');
  const ssize_t count = read(terminal, text.data(), text.size());
  text.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
  close(end);
  close(terminal);
  return text;
}

TEST(Colours, errorOnATerminal_isRedUnlessThatIsRefused) {
  const std::string plain = onTerminal("1");
  if (plain.empty()) GTEST_SKIP() << "no terminal to be had here";
  EXPECT_NE(plain.find("drevin: error: "), std::string::npos) << plain;
  EXPECT_EQ(plain.find("\033[1;31m"), std::string::npos) << plain;
  EXPECT_NE(onTerminal("").find("\033[1;31mdrevin: error:\033[0m "), std::string::npos);
}

TEST(Colours, files_haveNone) {
  RunOptions options;
  options.environment = {{"TERM", "xterm"}, {"NO_COLOR", ""}};
  const RunResult result = runCommand({}, options);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
}

}  // namespace
}  // namespace drevintool::testing

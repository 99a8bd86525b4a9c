#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

struct ShellResult {
  int exitCode = -1;
  std::string error;
};

/// Runs "COMMAND what" in a shell.
ShellResult shell(const std::string& what) {
  const ScratchFolder folder;
  const std::string line =
      "{ '" DREVIN_COMMAND "' " + what + "; } 2> '" + folder.file("error") + "'";
  const int status = std::system(line.c_str());
  ShellResult result;
  if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  result.error = bytesOfFile(folder.file("error"));
  return result;
}

TEST(StandardOutput, fullDisk_isOneLineAndExitCode4) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  for (const char* command : {"controls", "controls --json", "doctor", "script", "--help"}) {
    const ShellResult result = shell(std::string(command) + " > /dev/full");
    EXPECT_EQ(result.exitCode, 4) << command;
    EXPECT_EQ(result.error.rfind("drevin: error: standard output: ", 0), 0U) << result.error;
  }
}

TEST(StandardOutput, closedOutput_isAFailureIfSomethingIsPrinted) {
  EXPECT_EQ(shell("controls >&-").exitCode, 4);
}

TEST(StandardOutput, readerThatHasEnough_isNoFailure) {
  const ShellResult result = shell("controls | head -n 1 > /dev/null");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.error, "");
}

}  // namespace
}  // namespace drevintool::testing

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

void errorToFullDisk() {
  dup2(open("/dev/full", O_WRONLY), STDERR_FILENO);
}

void errorToReaderThatLeft() {
  int ends[2];
  if (pipe(ends) != 0) _exit(126);
  close(ends[0]);
  dup2(ends[1], STDERR_FILENO);
}

void errorClosed() {
  close(STDERR_FILENO);
}

void allClosed() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    close(descriptor);
}

const std::vector<std::pair<const char*, std::function<void()>>>& lostErrors() {
  static const std::vector<std::pair<const char*, std::function<void()>>> ways = {
      {"full disk", errorToFullDisk},
      {"reader that left", errorToReaderThatLeft},
      {"closed", errorClosed},
      {"all closed", allClosed}};
  return ways;
}

// Long enough, with a blur at every pixel, for progress to be told while frames are rendered.
class LostStandardError : public ::testing::Test {
 protected:
  LostStandardError() { writeExrFixture(input_, rgbazPart(480, 360, 160.0)); }

  RunResult render(const std::function<void()>& inChild, std::vector<std::string> more) const {
    std::vector<std::string> arguments = {
        "render",        "--plugin", builtPlugin(),   "--input",   input_, "--set",
        "multiplier=90", "--set",    "focalPlane=12", "--threads", "1"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    RunOptions options;
    options.inChild = inChild;
    return runCommand(arguments, options);
  }

  void expectWhole(const std::string& name) const {
    ASSERT_TRUE(std::filesystem::exists(folder_.file(name))) << name;
    EXPECT_EQ(readBack(folder_.file(name)).channels.size(), 5U) << name;
    std::filesystem::remove(folder_.file(name));
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
};

TEST_F(LostStandardError, onePicture_isRenderedAndTheCodeIs0) {
  for (const auto& [way, inChild] : lostErrors()) {
    SCOPED_TRACE(way);
    EXPECT_EQ(render(inChild, {"--output", folder_.file("o.exr")}).exitCode, 0);
    expectWhole("o.exr");
  }
}

TEST_F(LostStandardError, sequence_isRenderedWholeHoweverManyFramesAreInFlight) {
  for (const auto& [way, inChild] : lostErrors()) {
    for (const char* inFlight : {"1", "2"}) {
      SCOPED_TRACE(std::string(way) + ", in flight " + inFlight);
      const RunResult result = render(inChild, {"--frames", "1-4", "--frames-in-flight", inFlight,
                                                "--output", folder_.file("o.#.exr")});
      EXPECT_EQ(result.exitCode, 0);
      for (const char* name : {"o.1.exr", "o.2.exr", "o.3.exr", "o.4.exr"})
        expectWhole(name);
      EXPECT_EQ(folder_.entries(), std::vector<std::string>{"in.exr"});
    }
  }
}

TEST_F(LostStandardError, warningsNotesAndFigures_areNoFailureEither) {
  for (const auto& [way, inChild] : lostErrors()) {
    SCOPED_TRACE(way);
    const RunResult result =
        render(inChild, {"--stats", "--mattes", input_, "--output", folder_.file("o.exr")});
    EXPECT_EQ(result.exitCode, 0);
    expectWhole("o.exr");
  }
}

TEST_F(LostStandardError, failures_keepTheirCodes) {
  for (const auto& [way, inChild] : lostErrors()) {
    SCOPED_TRACE(way);
    EXPECT_EQ(render(inChild, {"--output", folder_.file("no/o.exr")}).exitCode, 4);
    EXPECT_EQ(render(inChild, {"--nonsense"}).exitCode, 2);
  }
}

TEST_F(LostStandardError, sheet_isDrawn) {
  for (const auto& [way, inChild] : lostErrors()) {
    RunOptions options;
    options.inChild = inChild;
    const RunResult result =
        runCommand({"sheet", "--plugin", builtPlugin(), "--input", input_, "--vary",
                    "multiplier=10,90", "--output", folder_.file("s.png")},
                   options);
    EXPECT_EQ(result.exitCode, 0) << way;
    EXPECT_TRUE(std::filesystem::remove(folder_.file("s.png"))) << way;
  }
}

TEST(ClosedStandardOutput, resultThatGoesThere_isLostWhateverElseIsClosed) {
  const ScratchFolder folder;
  writeExrFixture(folder.file("in.exr"), rgbazPart(8, 6, 5.0));
  const std::vector<std::vector<std::string>> commands = {
      {"controls", "--plugin", builtPlugin()},
      {"script", "--plugin", builtPlugin()},
      {"inspect", "--plugin", builtPlugin(), folder.file("in.exr")},
      {"--help"}};
  for (const std::vector<std::string>& command : commands) {
    RunOptions options;
    options.inChild = [] { close(STDOUT_FILENO); };
    const RunResult result = runCommand(command, options);
    EXPECT_EQ(result.exitCode, 4) << command.front();
    EXPECT_EQ(result.error.rfind("drevin: error: standard output: ", 0), 0U) << result.error;
    options.inChild = allClosed;
    EXPECT_EQ(runCommand(command, options).exitCode, 4) << command.front();
  }
}

TEST(ClosedStandardOutput, rendersThatPrintNothingThere_areWhole) {
  const ScratchFolder folder;
  writeExrFixture(folder.file("in.exr"), rgbazPart(8, 6, 5.0));
  RunOptions options;
  options.inChild = [] { close(STDOUT_FILENO); };
  const RunResult result =
      runCommand(renderArguments(folder.file("in.exr"), folder.file("o.exr")), options);
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(readBack(folder.file("o.exr")).channels.size(), 5U);
}

TEST(ClosedStandardInput, scriptFromThere_isUnreadable) {
  RunOptions options;
  options.inChild = [] { close(STDIN_FILENO); };
  const RunResult result =
      runCommand({"script", "--plugin", builtPlugin(), "--script", "-"}, options);
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
}

}  // namespace
}  // namespace drevintool::testing

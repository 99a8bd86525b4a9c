#include <gtest/gtest.h>

#include <csignal>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "Refusal.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

using Texts = std::vector<std::string>;

/// The rows of the table of exit codes in docs/farms.md, as a farm's task meets them.
class FarmExitCodes : public ::testing::Test {
 protected:
  FarmExitCodes() {
    for (const char* frame : {"1", "2", "4"})
      writeExrFixture(folder_.file(std::string("a.") + frame + ".exr"), rgbazPart(16, 12, 100.0));
    writeBytes(folder_.file("a.3.exr"), "no picture");
  }

  Texts task(const std::string& frames, const Texts& more = {}) const {
    Texts arguments = {"render",   "--quiet",
                       "--plugin", builtPlugin(),
                       "--input",  folder_.file("a.#.exr"),
                       "--frames", frames,
                       "--output", folder_.file("b.#.exr")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }

  int codeOf(const Texts& arguments, const RunOptions& options = {}) const {
    const RunResult result = runCommand(arguments, options);
    EXPECT_EQ(linesStarting(result.error, "drevin: error: ").empty(), result.exitCode == 0)
        << result.error;
    return result.exitCode;
  }

  ScratchFolder folder_;
};

TEST_F(FarmExitCodes, done_isZero) {
  EXPECT_EQ(codeOf(task("1-2")), 0);
}

TEST_F(FarmExitCodes, errorOfTheNode_isOne) {
  EXPECT_EQ(codeOf(task("1-2", {"--set", "kernelType=Input"})), 1);
}

TEST_F(FarmExitCodes, memoryThatRunsOutInTheRender_isOne) {
  if (DREVIN_SANITIZED) GTEST_SKIP() << "sanitizers take far more address space";
  writeExrFixture(folder_.file("large.exr"), rgbazPart(900, 600, 140.0));
  RunOptions little;
  little.addressSpace = std::size_t{70} << 20;
  EXPECT_EQ(codeOf(renderArguments(folder_.file("large.exr"), folder_.file("out.exr"),
                                   {"--threads", "2", "--set", "multiplier=60"}),
                   little),
            1);
}

TEST_F(FarmExitCodes, framesThatWereLeftOut_areOne) {
  EXPECT_EQ(codeOf(task("1-4", {"--skip-bad-frames"})), 1);
}

TEST_F(FarmExitCodes, lineThatIsWrong_isTwo) {
  EXPECT_EQ(codeOf(task("1-2", {"--nonsense"})), 2);
  EXPECT_EQ(codeOf(task("2-1x0")), 2);
}

TEST_F(FarmExitCodes, framesOfAnInputThatAreMissing_areTwo) {
  EXPECT_EQ(codeOf(task("4-5")), 2);
  EXPECT_EQ(codeOf(task("7-8")), 2);
}

TEST_F(FarmExitCodes, inputThatIsMissing_isThree) {
  const std::string missing = folder_.file("none.exr");
  EXPECT_EQ(codeOf(renderArguments(missing, folder_.file("out.exr"))), 3);
  EXPECT_EQ(codeOf(task("1-2", {"--mattes", missing})), 3);
}

TEST_F(FarmExitCodes, inputThatIsDamaged_isThree) {
  EXPECT_EQ(codeOf(task("3")), 3);
}

TEST_F(FarmExitCodes, inputBeyondTheMemory_isThree) {
  EXPECT_EQ(codeOf(task("1", {"--max-memory", "1M"})), 3);
  EXPECT_EQ(codeOf({"sheet", "--quiet", "--plugin", builtPlugin(), "--input",
                    folder_.file("a.1.exr"), "--vary", "focalPlane=1,2", "--max-memory", "1M",
                    "--output", folder_.file("sheet.png")}),
            3);
}

TEST_F(FarmExitCodes, outputThatCannotBeWritten_isFour) {
  Texts arguments = task("1-2");
  arguments.back() = folder_.file("none/b.#.exr");
  EXPECT_EQ(codeOf(arguments), 4);
}

TEST_F(FarmExitCodes, pluginThatIsNotThere_isFive) {
  Texts arguments = task("1-2");
  arguments[3] = folder_.file("none.so");
  EXPECT_EQ(codeOf(arguments), 5);
}

TEST_F(FarmExitCodes, taskThatIsStopped_hasTheSignalsCode) {
  PartFixture part = rgbazPart(2400, 1800, 0.0);
  part.channels.back().value = [](int x, int y) { return 1.0 + (x * 7919 + y * 104729) % 65521; };
  writeExrFixture(folder_.file("a.1.exr"), part);
  const Texts large = task("1", {"--set", "multiplier=250", "--set", "focalPlane=30000"});
  for (const int signal : {SIGINT, SIGTERM}) {
    RunOptions options;
    options.signal = signal;
    options.signalAfterSeconds = 1.5;
    EXPECT_EQ(codeOf(large, options), 128 + signal);
  }
}

// As the shell tells it, which has the code from the system.
TEST_F(FarmExitCodes, taskThatIsKilled_is137) {
  RunOptions shell;
  shell.command = "/bin/sh";
  const RunResult result = runCommand(
      {"-c", "\"$@\" & kill -9 $!; wait $!", "sh", DREVIN_COMMAND, "render", "--input", "-"},
      shell);
  EXPECT_EQ(result.exitCode, 137) << result.error;
}

}  // namespace
}  // namespace drevintool::testing

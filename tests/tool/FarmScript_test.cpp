#include <gtest/gtest.h>

#include "CommandRun.h"

namespace drevintool::testing {
namespace {

using Texts = std::vector<std::string>;

// The script with a command that prints its arguments in the place of `drevin`, as task 2.
RunResult runTask(const Texts& more, const std::string& processors = "") {
  RunOptions options;
  options.command = "/bin/bash";
  options.environment = {{"SLURM_ARRAY_TASK_ID", "2"},
                         {"SLURM_CPUS_PER_TASK", processors},
                         {"DREVIN_COMMAND", "echo"}};
  Texts arguments = {DREVIN_FARM_FOLDER "/drevin.sbatch", "3"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return runCommand(arguments, options);
}

std::string commandOf(const RunResult& result) {
  const Texts lines = linesStarting(result.out, "render ");
  EXPECT_EQ(lines.size(), 1U) << result.out << result.error;
  return lines.empty() ? "" : lines.front();
}

TEST(FarmScript, processorsOfTheTask_areItsThreads) {
  EXPECT_EQ(commandOf(runTask({"--frames", "1-9"}, "16")),
            "render --frames 1-9 --chunk 2/3 --skip-existing --threads 16");
  EXPECT_EQ(commandOf(runTask({"--frames", "1-9"})),
            "render --frames 1-9 --chunk 2/3 --skip-existing");
}

TEST(FarmScript, threadsThatAreGiven_winOverTheTask) {
  EXPECT_EQ(commandOf(runTask({"--threads", "4"}, "16")),
            "render --threads 4 --chunk 2/3 --skip-existing");
  EXPECT_EQ(commandOf(runTask({"--threads=4"}, "16")),
            "render --threads=4 --chunk 2/3 --skip-existing");
}

TEST(FarmScript, skippingThatIsGiven_isNotGivenAgain) {
  EXPECT_EQ(commandOf(runTask({"--skip-existing"})), "render --skip-existing --chunk 2/3");
}

TEST(FarmScript, chunkThatIsGiven_isRefused) {
  for (const Texts& chunk : {Texts{"--chunk", "1/3"}, Texts{"--chunk=1/3"}}) {
    const RunResult result = runTask(chunk);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_NE(result.error.find("--chunk"), std::string::npos) << result.error;
    EXPECT_EQ(result.out, "");
  }
}

}  // namespace
}  // namespace drevintool::testing

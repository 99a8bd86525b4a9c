#include <gtest/gtest.h>

#include "CommandRun.h"
#include "RealPictures.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

constexpr double kProcessorSeconds = DREVIN_SANITIZED ? 20.0 : 1.0;
constexpr long kKibibytes = DREVIN_SANITIZED ? 2 << 20 : 200 << 10;

using CommandLine = std::vector<std::string> (*)(const std::string&, const std::string&,
                                                 const std::vector<std::string>&);

// A result, or one line and exit code 3; soon, and in little memory.
void expectResultOrOneLine(CommandLine commandLine, const std::string& file,
                           const std::vector<std::string>& more) {
  const ScratchFolder folder;
  RunOptions options;
  options.addressSpace = kGibibyteOfAddresses;
  options.timeoutSeconds = 60.0;
  const RunResult result = runCommand(commandLine(file, folder.file("out.exr"), more), options);
  EXPECT_LT(result.processorSeconds, kProcessorSeconds) << file;
  EXPECT_LT(result.peakKibibytes, kKibibytes) << file;
  if (result.exitCode == 0) {
    EXPECT_EQ(folder.entries(), std::vector<std::string>{"out.exr"}) << file;
    return;
  }
  EXPECT_EQ(result.exitCode, 3) << file << ": " << result.error;
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find(file), std::string::npos) << result.error;
  EXPECT_TRUE(folder.entries().empty()) << file;
}

TEST(DamagedFiles, eachAsInput_isAResultOrOneLine) {
  SKIP_WITHOUT_PICTURES();
  ASSERT_GE(filesIn("damaged").size(), 13U);
  for (const std::string& file : filesIn("damaged")) {
    expectResultOrOneLine(renderArguments, file, {"--set", "max_kernelsize=5"});
    expectResultOrOneLine(renderArguments, file,
                          {"--set", "max_kernelsize=5", "--set", "depthChannel=none"});
  }
}

TEST(DamagedFiles, eachAsDeepInput_isAResultOrOneLine) {
  SKIP_WITHOUT_PICTURES();
  for (const std::string& file : filesIn("damaged"))
    expectResultOrOneLine(deepArguments, file, {"--set", "max_kernelsize=5"});
}

TEST(DamagedFiles, unfinishedDeepTiles_areNumbered) {
  SKIP_WITHOUT_PICTURES();
  const ScratchFolder folder;
  const std::string file = pictureFolder() + "/damaged/tiledDeepIncomplete.exr";
  const RunResult result = runCommand(deepArguments(file, folder.file("out.exr")));
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_EQ(result.error,
            "drevin: error: " + file + ": block 2 of 4 is missing: the file is unfinished\n");
}

TEST(DamagedFiles, eachAsKernel_isAResultOrOneLine) {
  SKIP_WITHOUT_PICTURES();
  const std::string input = pictureFolder() + "/layers/rgbaz.exr";
  for (const std::string& file : filesIn("damaged")) {
    const ScratchFolder folder;
    const RunResult result =
        runCommand(renderArguments(input, folder.file("out.exr"), {"--kernel", file}));
    EXPECT_TRUE(result.exitCode == 0 || result.exitCode == 3) << file << ": " << result.error;
  }
}

TEST(DamagedFiles, deepFilesGivenAsFlat_areOneLine) {
  SKIP_WITHOUT_PICTURES();
  for (const std::string& file : filesIn("deep")) {
    const ScratchFolder folder;
    const RunResult result = runCommand(renderArguments(file, folder.file("out.exr")));
    EXPECT_EQ(result.exitCode, 3) << file;
    EXPECT_NE(result.error.find("deep"), std::string::npos) << result.error;
  }
}

}  // namespace
}  // namespace drevintool::testing

#include <gtest/gtest.h>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

class ExitCodes : public ::testing::Test {
 protected:
  ExitCodes() { writeExrFixture(input_, rgbazPart(16, 12, 100.0)); }

  RunResult render(const std::vector<std::string>& more) const {
    return runCommand(renderArguments(input_, output_, more));
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string output_ = folder_.file("out.exr");
};

TEST_F(ExitCodes, aRender_isZeroAndSaysNothing) {
  const RunResult result = render({});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(folder_.entries(), (std::vector<std::string>{"in.exr", "out.exr"}));
}

TEST_F(ExitCodes, anErrorOfTheNode_isOneWithItsText) {
  const RunResult result = render({"--set", "kernelType=Input"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.error, "drevin: error: No input kernel connected!\n");
  EXPECT_EQ(folder_.entries(), std::vector<std::string>{"in.exr"});
}

TEST_F(ExitCodes, usage_isTwo) {
  const std::vector<std::vector<std::string>> commands = {
      {}, {"rendre"}, {"render"}, {"render", "--nonsense"}, {"demo"}, {"controls", "--set", "x"}};
  for (const std::vector<std::string>& arguments : commands) {
    const RunResult result = runCommand(arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_EQ(result.out, "");
  }
}

TEST_F(ExitCodes, anInputThatIsMissing_isThreeAndNamed) {
  const RunResult result = runCommand(renderArguments(folder_.file("none.exr"), output_));
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find("none.exr"), std::string::npos);
}

TEST_F(ExitCodes, aKernelOrMattesFileThatIsMissing_isThree) {
  for (const char* option : {"--kernel", "--mattes"}) {
    const RunResult result = render({option, folder_.file("none.exr")});
    EXPECT_EQ(result.exitCode, 3) << option;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  }
}

TEST_F(ExitCodes, anOutputFolderThatIsMissing_isFour) {
  const RunResult result = runCommand(renderArguments(input_, folder_.file("no/out.exr")));
  EXPECT_EQ(result.exitCode, 4);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
}

TEST_F(ExitCodes, aPluginThatIsMissingOrNone_isFive) {
  for (const std::string& file : {folder_.file("none.so"), input_}) {
    const RunResult result =
        runCommand({"render", "--plugin", file, "--input", input_, "--output", output_});
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_NE(result.error.find(file), std::string::npos) << result.error;
  }
}

TEST_F(ExitCodes, helpAndVersion_areZeroOnStandardOutput) {
  const RunResult version = runCommand({"--version"});
  EXPECT_EQ(version.exitCode, 0);
  EXPECT_EQ(version.out, "drevin 1.4.6\n");
  const RunResult help = runCommand({"render", "--help"});
  EXPECT_EQ(help.exitCode, 0);
  EXPECT_NE(help.out.find("--set"), std::string::npos);
}

}  // namespace
}  // namespace drevintool::testing

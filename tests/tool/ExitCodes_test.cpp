#include <gtest/gtest.h>

#include <filesystem>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "Refusal.h"
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
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_EQ(result.error.rfind("drevin: error: No input kernel connected! ", 0), 0U)
      << result.error;
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
  EXPECT_NE(result.error.find("make it first"), std::string::npos) << result.error;
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

TEST_F(ExitCodes, aPluginThatIsCutOff_isFive) {
  const std::string whole = bytesOfFile(builtPlugin());
  const std::string file = folder_.file("cut.so");
  // Far less than its code; behind that there may be much that is never loaded.
  for (const std::size_t length : {0U, 100U, 5000U, 100000U}) {
    ASSERT_LT(length, whole.size() / 4);
    writeBytes(file, whole.substr(0, length));
    expectRefused({"render", "--plugin", file, "--input", input_, "--output", output_}, 5, {file});
  }
}

TEST_F(ExitCodes, aPluginOfAnotherProcessor_isFive) {
  std::string other = bytesOfFile(builtPlugin());
  other[18] = 40;  // the machine in the file's head: another one than this
  const std::string file = folder_.file("other.so");
  writeBytes(file, other);
  expectRefused({"render", "--plugin", file, "--input", input_, "--output", output_}, 5,
                {file, "not a plug-in for this program"});
}

TEST_F(ExitCodes, aPluginForAnotherVersionOfHosts_isFiveWithBothVersions) {
  const std::string built = " for 12.0";
  const std::string file = folder_.file("other.so");
  for (const auto& [other, found] : std::vector<std::pair<std::string, std::string>>{
           {" for 13.0", "13.0"}, {" for 12.2", "12.2"}, {" fur 12.0", "no version"}}) {
    std::string bytes = bytesOfFile(builtPlugin());
    ASSERT_NE(bytes.find(built), std::string::npos);
    for (std::size_t at = bytes.find(built); at != std::string::npos;
         at = bytes.find(built, at + 1))
      bytes.replace(at, built.size(), other);
    writeBytes(file, bytes);
    expectRefused({"render", "--plugin", file, "--input", input_, "--output", output_}, 5,
                  {file, found, "this host has version 12.0"});
    const RunResult doctor = runCommand({"doctor", "--plugin", file});
    EXPECT_EQ(doctor.exitCode, 5);
    EXPECT_NE(doctor.error.find(found), std::string::npos) << doctor.error;
  }
}

TEST_F(ExitCodes, aLibraryThatIsNoPlugin_isFive) {
  const std::string file = folder_.file("library.so");
  std::filesystem::copy(DREVIN_OTHER_LIBRARY, file);
  expectRefused({"render", "--plugin", file, "--input", input_, "--output", output_}, 5,
                {file, "has no class Drevin"});
}

TEST_F(ExitCodes, aValueThatAControlDoesNotTake_isTwo) {
  for (const char* setting : {"nonsense=1", "focalPlane=nan", "focalPlane=1e999", "focalPlane=",
                              "kNumSides=99", "worldScale=parsec", "realWorldLens=perhaps"}) {
    expectRefused(renderArguments(input_, output_, {"--set", setting}), 2, {setting});
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

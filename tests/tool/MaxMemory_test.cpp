#include <gtest/gtest.h>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "Refusal.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

class MaxMemory : public ::testing::Test {
 protected:
  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string output_ = folder_.file("out.exr");
};

// 1500 x 1000 pixels of four halves and a float, and float copies of the halves, are 40 MiB.
TEST_F(MaxMemory, pictureBeyondIt_isRefusedWithBothFiguresAndTheOption) {
  writeExrFixture(input_, rgbazPart(1500, 1000, 100.0));
  expectRefused(
      renderArguments(input_, output_, {"--max-memory", "32M"}), 3,
      {input_, "needs 40.1 MiB", "of memory, more than --max-memory 32M leaves beside the ",
       " in use; give it more"});
  const RunResult result =
      runCommand(renderArguments(input_, output_, {"--max-memory", "2G", "--channels", "Z"}));
  EXPECT_EQ(result.exitCode, 0) << result.error;
}

TEST_F(MaxMemory, limitBelowTheProgram_saysWhatWasGiven) {
  writeExrFixture(input_, rgbazPart(16, 12, 100.0));
  expectRefused(renderArguments(input_, output_, {"--max-memory", "1M"}), 3,
                {input_, "needs 5.2 KiB of memory", "more than --max-memory 1M leaves beside the ",
                 "; give it more"});
  expectRefused(renderArguments(input_, output_, {"--max-memory", "1.5m"}), 3,
                {"more than --max-memory 1.5m leaves"});
}

TEST_F(MaxMemory, withoutIt_theMessageSaysWhereTheLimitIsFrom) {
  if (DREVIN_SANITIZED) GTEST_SKIP() << "sanitizers take far more address space";
  writeExrFixture(input_, rgbazPart(3000, 2000, 100.0));
  RunOptions options;
  options.addressSpace = std::size_t{80} << 20;
  const RunResult result =
      runCommand(renderArguments(input_, output_, {"--threads", "1"}), options);
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  for (const char* piece : {"needs 160.2 MiB of memory, more than the 64.0 MiB that pictures may "
                            "take, the least that is assumed",
                            "--max-memory SIZE changes that"})
    EXPECT_NE(result.error.find(piece), std::string::npos) << result.error;
  options.addressSpace = std::size_t{200} << 20;
  const RunResult more = runCommand(renderArguments(input_, output_, {"--threads", "1"}), options);
  EXPECT_EQ(more.exitCode, 3);
  EXPECT_NE(more.error.find("three quarters of what its address space limit leaves"),
            std::string::npos)
      << more.error;
}

TEST_F(MaxMemory, sheet_hasTheCodeOfARender) {
  writeExrFixture(input_, rgbazPart(1500, 1000, 100.0));
  const std::vector<std::string> sheet = {
      "sheet",   "--quiet",  "--plugin",    builtPlugin(), "--input",
      input_,    "--output", output_,       "--vary",      "focalPlane=1,2,3,4,5,6,7,8",
      "--width", "1500",     "--max-memory"};
  const auto with = [&](const std::string& size) {
    std::vector<std::string> arguments = sheet;
    arguments.push_back(size);
    return arguments;
  };
  expectRefused(with("32M"), 3, {input_, "more than --max-memory 32M"});
  // The checks of a sanitized build are in use from the start.
  const std::string picturesFit = DREVIN_SANITIZED ? "215M" : "120M";
  expectRefused(with(picturesFit), 3,
                {"the sheet of ", "more than --max-memory " + picturesFit, "--width"});
}

TEST_F(MaxMemory, inspect_takesItToo) {
  writeExrFixture(input_, rgbazPart(1500, 1000, 100.0));
  const RunResult beyond = runCommand({"inspect", "--max-memory", "32M", input_});
  EXPECT_EQ(beyond.exitCode, 3);
  EXPECT_TRUE(isOneErrorLine(beyond.error)) << beyond.error;
  EXPECT_NE(beyond.error.find("more than --max-memory 32M leaves beside the "), std::string::npos);
  EXPECT_EQ(runCommand({"inspect", "--max-memory", "1G", input_}).exitCode, 0);
  const RunResult none = runCommand({"inspect", "--max-memory", "lots", input_});
  EXPECT_EQ(none.exitCode, 2);
  EXPECT_NE(none.error.find("--max-memory lots"), std::string::npos) << none.error;
}

TEST_F(MaxMemory, moreThanIsFree_canBeAllowed) {
  writeExrFixture(input_, rgbazPart(16, 12, 100.0));
  const RunResult result = runCommand(renderArguments(input_, output_, {"--max-memory", "900T"}));
  EXPECT_EQ(result.exitCode, 0) << result.error;
}

TEST_F(MaxMemory, deepRowsBeyondIt_areRefused) {
  writeUniformDeepFile(input_, 400, 2, 2000);
  expectRefused(deepArguments(input_, output_, {"--max-memory", "20M"}), 3,
                {input_, "800000 samples", "MiB", "--max-memory"});
}

TEST_F(MaxMemory, whatIsNoSize_isTwo) {
  for (const char* text : {"", "8", "lots", "-1G", "nan", "0M"}) {
    expectRefused(renderArguments(input_, output_, {"--max-memory", text}), 2,
                  {"--max-memory", "512M"});
  }
}

}  // namespace
}  // namespace drevintool::testing

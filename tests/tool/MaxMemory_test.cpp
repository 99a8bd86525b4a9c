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
  expectRefused(renderArguments(input_, output_, {"--max-memory", "32M"}), 3,
                {input_, "needs 40.1 MiB", "more than the ", "--max-memory"});
  const RunResult result =
      runCommand(renderArguments(input_, output_, {"--max-memory", "2G", "--channels", "Z"}));
  EXPECT_EQ(result.exitCode, 0) << result.error;
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

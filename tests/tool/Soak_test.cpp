#include <gtest/gtest.h>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

/// Many frames in one process take no more of it than a few.
class Soak : public ::testing::Test {
 protected:
  using CommandLine = std::vector<std::string> (*)(const std::string&, const std::string&,
                                                   const std::vector<std::string>&);

  // So few descriptors that a frame which kept one of its own would end the run.
  RunResult render(CommandLine commandLine, const std::string& frames) const {
    RunOptions options;
    options.openFiles = 48;
    return runCommand(commandLine(input_, folder_.file("out.####.exr"),
                                  {"--frames", frames, "--report", folder_.file("####.json"),
                                   "--set", "multiplier=20", "--threads", "2"}),
                      options);
  }

  // Measured with small real pictures: 0.3 MiB more for flat ones, 1.3 MiB for deep ones. One plane
  // that stayed of every frame would be 6 MiB and more.
  void expectFlat(CommandLine commandLine) const {
    constexpr long kMargin = 6 << 10;
    const RunResult some = render(commandLine, "1-40");
    ASSERT_EQ(some.exitCode, 0) << some.error;
    const RunResult many = render(commandLine, "1-200");
    ASSERT_EQ(many.exitCode, 0) << many.error;
    EXPECT_LT(many.peakKibibytes, some.peakKibibytes + kMargin);
    EXPECT_EQ(folder_.entries().size(), 401U);
    EXPECT_EQ(bytesOfFile(folder_.file("out.0200.exr")), bytesOfFile(folder_.file("out.0001.exr")));
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
};

TEST_F(Soak, twoHundredFlatFrames_takeNoMoreThanForty) {
  if (DREVIN_SANITIZED) GTEST_SKIP() << "sanitizers take minutes, and memory of their own";
  writeExrFixture(input_, rgbazPart(240, 160, 140.0));
  expectFlat(renderArguments);
}

TEST_F(Soak, twoHundredDeepFrames_takeNoMoreThanForty) {
  if (DREVIN_SANITIZED) GTEST_SKIP() << "sanitizers take minutes, and memory of their own";
  writeDeepFixture(input_, {opaqueDeepPart(120, 80, 140.0)});
  expectFlat(deepArguments);
}

}  // namespace
}  // namespace drevintool::testing

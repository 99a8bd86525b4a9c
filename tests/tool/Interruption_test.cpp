#include <gtest/gtest.h>

#include <csignal>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

// Every pixel at a depth of its own: a render that takes far longer than the test waits.
class Interruption : public ::testing::Test {
 protected:
  Interruption() {
    PartFixture part = rgbazPart(2400, 1800, 0.0);
    part.channels.back().value = [](int x, int y) { return 1.0 + (x * 7919 + y * 104729) % 65521; };
    writeExrFixture(input_, part);
    writeBytes(output_, "the picture from before");
  }

  RunResult renderAndSend(int signal) const {
    RunOptions options;
    options.signal = signal;
    options.signalAfterSeconds = 1.5;
    return runCommand(renderArguments(input_, output_,
                                      {"--set", "multiplier=250", "--set", "depthStyle=Real",
                                       "--set", "focalPlane=30000", "--threads", "2"}),
                      options);
  }

  /// Measured: 0.2 s. Sanitizers take their time at the end.
  static constexpr double soon = DREVIN_SANITIZED != 0 ? 10.0 : 5.0;

  void expectNothingLeft() const {
    EXPECT_EQ(folder_.entries(), (std::vector<std::string>{"in.exr", "out.exr"}));
    EXPECT_TRUE(bytesOfFile(output_) == "the picture from before");
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string output_ = folder_.file("out.exr");
};

TEST_F(Interruption, interrupt_ends130SoonAndLeavesNothing) {
  const RunResult result = renderAndSend(SIGINT);
  EXPECT_EQ(result.exitCode, 130);
  EXPECT_LT(result.secondsAfterSignal, soon);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  expectNothingLeft();
}

TEST_F(Interruption, terminate_ends143SoonAndLeavesNothing) {
  const RunResult result = renderAndSend(SIGTERM);
  EXPECT_EQ(result.exitCode, 143);
  EXPECT_LT(result.secondsAfterSignal, soon);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  expectNothingLeft();
}

}  // namespace
}  // namespace drevintool::testing

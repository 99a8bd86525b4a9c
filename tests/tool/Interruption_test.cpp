#include <gtest/gtest.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <csignal>
#include <filesystem>

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

  // All in focus, so that most of the time is the writing's.
  RunResult killWhileWriting() const {
    RunOptions options;
    options.signal = SIGKILL;
    const std::vector<std::string> before = folder_.entries();
    options.signalWhen = [this, before] {
      const std::vector<std::string> now = folder_.entries();
      return !std::includes(before.begin(), before.end(), now.begin(), now.end());
    };
    return runCommand(
        renderArguments(input_, output_, {"--set", "bokehChannels=none", "--threads", "1"}),
        options);
  }

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

TEST_F(Interruption, killWhileWriting_leavesTheOldOneAndTheNextRunTidiesUp) {
  EXPECT_EQ(killWhileWriting().exitCode, -1);
  EXPECT_TRUE(bytesOfFile(output_) == "the picture from before");
  EXPECT_EQ(folder_.entries().size(), 3U) << "the killed one cannot tidy up";
  std::filesystem::remove(output_);
  EXPECT_EQ(killWhileWriting().exitCode, -1);
  EXPECT_FALSE(std::filesystem::exists(output_));
  const RunResult result =
      runCommand(renderArguments(input_, output_, {"--set", "bokehChannels=none"}));
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(folder_.entries(), (std::vector<std::string>{"in.exr", "out.exr"}));
  EXPECT_EQ(readBack(output_).channels.size(), 5U);
}

const std::vector<double>& moments() {
  static const std::vector<double> seconds = {0.0, 0.02, 0.05, 0.1, 0.2, 0.4, 0.8};
  return seconds;
}

// Whatever the command is at, at each of the moments.
void expectEnds(const std::vector<std::string>& arguments) {
  for (const auto& [signal, code] : {std::pair{SIGINT, 130}, std::pair{SIGTERM, 143}}) {
    for (const double moment : moments()) {
      RunOptions options;
      options.signal = signal;
      options.signalAfterSeconds = moment;
      const RunResult result = runCommand(arguments, options);
      EXPECT_EQ(result.exitCode, code) << moment << " " << result.error;
      EXPECT_TRUE(isOneErrorLine(result.error)) << moment << " " << result.error;
      EXPECT_LT(result.secondsAfterSignal, DREVIN_SANITIZED != 0 ? 20.0 : 10.0) << moment;
    }
  }
}

TEST_F(Interruption, inspectionWithAPrediction_endsAtAnyMoment) {
  std::vector<std::string> arguments = {"inspect", "--plugin", builtPlugin(), "--set",
                                        "multiplier=20"};
  arguments.insert(arguments.end(), 8, input_);
  expectEnds(arguments);
}

TEST_F(Interruption, inspection_endsAtAnyMoment) {
  std::vector<std::string> arguments = {"inspect", "--json", "--plugin", builtPlugin()};
  arguments.insert(arguments.end(), 40, input_);
  expectEnds(arguments);
}

TEST_F(Interruption, sheet_endsAtAnyMomentAndLeavesNothing) {
  expectEnds({"sheet", "--quiet", "--plugin", builtPlugin(), "--input", input_, "--vary",
              "multiplier=150,200,250", "--set", "depthStyle=Real", "--set", "focalPlane=30000",
              "--output", output_});
  expectNothingLeft();
}

TEST_F(Interruption, demo_endsAtAnyMomentAndLeavesNothing) {
  expectEnds({"demo", folder_.file("scene/of/mine")});
  expectNothingLeft();
}

TEST_F(Interruption, scriptThatIsWaitedFor_endsAtAnyMoment) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  for (const char* command : {"script", "controls"}) {
    for (const double moment : {0.0, 0.3}) {
      RunOptions options;
      options.signal = SIGTERM;
      options.signalAfterSeconds = moment;
      options.inChild = [&] { dup2(ends[0], STDIN_FILENO); };
      const RunResult result =
          runCommand({command, "--plugin", builtPlugin(), "--script", "-"}, options);
      EXPECT_EQ(result.exitCode, 143) << command << " " << result.error;
    }
  }
  close(ends[0]);
  close(ends[1]);
}

/// A picture whose work is transforms: large parts at few depths, slopes between them.
class InterruptedTransforms : public ::testing::Test {
 protected:
  static constexpr int width = DREVIN_SANITIZED != 0 ? 1280 : 3840;
  static constexpr int height = width * 9 / 16;
  static constexpr double threads = 2.0;
  /// 0.3 s on all threads, were the machine's processors all theirs: what others do at the same
  /// time does not count. Sanitizers make all work slower.
  static constexpr double mostWork = threads * 0.3 * (DREVIN_SANITIZED != 0 ? 15.0 : 1.0);

  InterruptedTransforms() {
    PartFixture part = rgbazPart(width, height, 0.0);
    part.compression = Imf::NO_COMPRESSION;
    part.channels.back().value = [](int x, int y) {
      if (3 * y < height) return 150.0;
      if (5 * x > 2 * width && 5 * x < 3 * width) return 100.0;
      return 90.0 - 20.0 * y / height;
    };
    writeExrFixture(input_, part);
  }

  RunResult render(const RunOptions& options, std::vector<std::string> more = {}) const {
    more.insert(more.end(), {"--set", "multiplier=256", "--set", "max_kernelsize=256", "--set",
                             "focusRegionSize=40", "--threads", "2", "--compression", "none"});
    return runCommand(renderArguments(input_, output_, more), options);
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string output_ = folder_.file("out.exr");
};

TEST_F(InterruptedTransforms, interrupt_leavesLittleWorkToBeDone) {
  const std::string report = folder_.file("report.json");
  const RunResult whole = render({}, {"--report", report});
  ASSERT_EQ(whole.exitCode, 0) << whole.error;
  const nlohmann::json times = nlohmann::json::parse(bytesOfFile(report))["seconds"];
  // Halfway through all work the picture is being made, whatever comes before and after.
  EXPECT_GT(times["defocus"].get<double>(), 0.5 * whole.seconds) << times;
  std::filesystem::remove(report);
  std::filesystem::remove(output_);
  for (const double moment : {0.4, 0.5, 0.6}) {
    RunOptions options;
    options.signal = SIGINT;
    options.signalAfterProcessorSeconds = moment * whole.processorSeconds;
    const RunResult result = render(options);
    EXPECT_EQ(result.exitCode, 130) << moment;
    EXPECT_LT(result.processorSecondsAfterSignal, mostWork) << moment;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_EQ(folder_.entries(), (std::vector<std::string>{"in.exr"}));
  }
}

}  // namespace
}  // namespace drevintool::testing

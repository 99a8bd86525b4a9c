#include <gtest/gtest.h>

#include <cmath>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "Refusal.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

/// Pictures of an aperture that no lens has.
class KernelFaults : public ::testing::Test {
 protected:
  KernelFaults() { writeExrFixture(input_, rgbazPart(24, 18, 140.0)); }

  void writeKernel(int width, int height, double value) const {
    PartFixture part = rgbazPart(width, height, 0.0);
    for (ChannelFixture& channel : part.channels)
      channel.value = [value](int, int) { return value; };
    writeExrFixture(kernel_, part);
  }

  // What the command says of it.
  std::string run(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = renderArguments(
        input_, output_,
        {"--set", "kernelType=Input", "--kernel", kernel_, "--set", "multiplier=9"});
    arguments.insert(arguments.end(), more.begin(), more.end());
    const RunResult result = runCommand(arguments);
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return result.error;
  }

  ReadFile render() const {
    run();
    return readBack(output_);
  }

  // A value in some pixels of a channel of an image that is white elsewhere.
  void writeSpoiledKernel(std::size_t channel, double value) const {
    PartFixture part = rgbazPart(16, 16, 0.0);
    for (ChannelFixture& of : part.channels)
      of.value = [](int, int) { return 1.0; };
    part.channels[channel].value = [value](int x, int y) { return x == 5 && y < 3 ? value : 1.0; };
    writeExrFixture(kernel_, part);
  }

  // Colours that are 0 or above, and finite; a picture has some of them.
  static void expectSane(const ReadFile& result) {
    for (int y = 0; y < 18; ++y) {
      for (int x = 0; x < 24; ++x) {
        for (const char* name : {"R", "G", "B", "A"})
          ASSERT_TRUE(std::isfinite(result.value(name, x, y))) << name << " " << x << " " << y;
      }
    }
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string kernel_ = folder_.file("kernel.exr");
  std::string output_ = folder_.file("out.exr");
};

TEST_F(KernelFaults, noImage_isOne) {
  expectRefused(renderArguments(input_, output_, {"--set", "kernelType=Input"}), 1,
                {"drevin: error: No input kernel connected! ", "--kernel FILE", "kernelType"});
}

TEST_F(KernelFaults, onePixel_isAKernel) {
  writeKernel(1, 1, 1.0);
  expectSane(render());
}

TEST_F(KernelFaults, blackImage_givesFiniteColours) {
  writeKernel(16, 16, 0.0);
  expectSane(render());
}

TEST_F(KernelFaults, negativeImage_givesFiniteColours) {
  writeKernel(16, 16, -1.0);
  expectSane(render());
}

TEST_F(KernelFaults, oneRowOrOneColumn_isAKernel) {
  writeKernel(16, 1, 1.0);
  expectSane(render());
  writeKernel(1, 16, 1.0);
  expectSane(render());
}

TEST_F(KernelFaults, imageThatIsNotFinite_isWarnedOfOnceWithItsPixels) {
  for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
    writeSpoiledKernel(1, value);
    EXPECT_EQ(run(), "drevin: warning: 3 pixels of " + kernel_ +
                         " are not finite (NaN or infinite), and so is all that it blurs; give an "
                         "aperture of finite values with --kernel\n");
  }
}

TEST_F(KernelFaults, standInThatIsNotFinite_isWarnedOf) {
  writeSpoiledKernel(4, std::nan(""));
  EXPECT_EQ(run(), "") << "no channel is blurred by Z";
  PartFixture part = rgbazPart(16, 16, 0.0);
  part.channels = {{"Z", Imf::FLOAT, [](int x, int) { return x == 3 ? std::nan("") : 1.0; }}};
  writeExrFixture(kernel_, part);
  const std::string error = run({"--set", "missingKernelChannel=depth.Z"});
  EXPECT_EQ(error.find("drevin: warning: 16 pixels of " + kernel_), 0U) << error;
}

TEST_F(KernelFaults, imageThatIsNotUsed_isNotLookedAt) {
  writeSpoiledKernel(0, std::nan(""));
  const RunResult result = runCommand(renderArguments(input_, output_, {"--kernel", kernel_}));
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.error.find("not finite"), std::string::npos) << result.error;
}

TEST_F(KernelFaults, hugeImage_warnsOnceOfTheResult) {
  PartFixture part = rgbazPart(5, 5, 0.0);
  for (ChannelFixture& channel : part.channels) {
    channel.type = Imf::FLOAT;
    channel.value = [](int, int) { return 1e38; };
  }
  writeExrFixture(kernel_, part);
  const std::string report = folder_.file("report.json");
  const std::string error = run({"--report", report});
  EXPECT_EQ(error,
            "drevin: warning: 1728 values of the result are not finite (NaN or infinite), "
            "though those of its pictures are: colours, or the picture of the aperture, are "
            "too large to be summed; scale them down\n");
  EXPECT_NE(bytesOfFile(report).find("1728 values of the result"), std::string::npos);
}

}  // namespace
}  // namespace drevintool::testing

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

  ReadFile render() const {
    const RunResult result = runCommand(renderArguments(
        input_, output_,
        {"--set", "kernelType=Input", "--kernel", kernel_, "--set", "multiplier=9"}));
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return readBack(output_);
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
                {"No input kernel connected!"});
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

}  // namespace
}  // namespace drevintool::testing

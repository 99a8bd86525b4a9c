#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

// A picture far out of focus with layers that no blur may touch.
class PassThrough : public ::testing::Test {
 protected:
  PassThrough() {
    PartFixture part = rgbazPart(24, 18, 140.0);
    part.channels.push_back({"crypto.red", Imf::FLOAT, [](int x, int y) { return x * 31.7 + y; }});
    part.channels.push_back({"crypto.half", Imf::HALF, [](int x, int) {
                               return x == 3 ? std::numeric_limits<double>::quiet_NaN() : x / 7.0;
                             }});
    part.channels.push_back({"id", Imf::UINT, [](int x, int y) { return 4e9 + x * 100 + y; }});
    writeExrFixture(input_, part);
  }

  ReadFile render(const std::vector<std::string>& more = {}) {
    const RunResult result = runCommand(renderArguments(input_, output_, more));
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return readBack(output_);
  }

  void expectSame(const ReadFile& result, const char* name) const {
    const ReadFile input = readBack(input_);
    ASSERT_EQ(result.channels.at(name).type, input.channels.at(name).type) << name;
    for (int y = result.data.min.y; y <= result.data.max.y; ++y) {
      for (int x = result.data.min.x; x <= result.data.max.x; ++x) {
        ASSERT_EQ(result.bits(name, x, y), input.bits(name, x, y)) << name << " " << x << " " << y;
      }
    }
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string output_ = folder_.file("out.exr");
};

TEST_F(PassThrough, otherChannels_keepTypeAndBits) {
  const ReadFile result = render();
  for (const char* name : {"crypto.red", "crypto.half", "id", "Z"})
    expectSame(result, name);
}

TEST_F(PassThrough, blurredChannels_keepTheirTypeAndAreChanged) {
  const ReadFile result = render({"--set", "multiplier=9"});
  const ReadFile input = readBack(input_);
  EXPECT_EQ(result.channels.at("R").type, Imf::HALF);
  double difference = 0.0;
  for (int x = 0; x < 24; ++x)
    difference += std::abs(result.value("R", x, 9) - input.value("R", x, 9));
  EXPECT_GT(difference, 1.0);
}

TEST_F(PassThrough, region_cutsThemToo) {
  const ReadFile result = render({"--region", "3,2,9,7"});
  EXPECT_EQ(result.data, Imath::Box2i({3, 11}, {8, 15}));
  for (const char* name : {"crypto.red", "crypto.half", "id"})
    expectSame(result, name);
}

TEST_F(PassThrough, colourLeftOutOfTheBokehChannels_keepsItsType) {
  const ReadFile result = render({"--set", "bokehChannels=R,B", "--type", "float"});
  EXPECT_EQ(result.channels.at("R").type, Imf::FLOAT);
  expectSame(result, "G");
  expectSame(result, "A");
}

TEST_F(PassThrough, noBokehChannels_leaveThePictureAsItIs) {
  const ReadFile result = render({"--set", "bokehChannels=none"});
  for (const char* name : {"R", "G", "B", "A", "Z", "crypto.half", "id"})
    expectSame(result, name);
}

TEST_F(PassThrough, allBokehChannels_blurEverythingButObjectNumbers) {
  const ReadFile result = render({"--set", "bokehChannels=all", "--type", "float"});
  EXPECT_EQ(result.channels.at("crypto.half").type, Imf::FLOAT);
  EXPECT_EQ(result.channels.at("Z").type, Imf::FLOAT);
  expectSame(result, "id");
}

TEST_F(PassThrough, viewOfDepth_changesOnlyTheColours) {
  const ReadFile result = render({"--set", "outputType=Focus Matte", "--type", "float"});
  EXPECT_EQ(result.channels.at("R").type, Imf::FLOAT);
  for (const char* name : {"A", "Z", "crypto.red", "crypto.half", "id"})
    expectSame(result, name);
}

TEST_F(PassThrough, beyondTheDataWindow_edgesRepeatAndObjectNumbersAreZero) {
  const ReadFile result =
      render({"--set", "max_kernelsize=8", "--set", "expandBBoxToMaxKernelSize=true"});
  const ReadFile input = readBack(input_);
  EXPECT_EQ(result.bits("crypto.red", -4, 5), input.bits("crypto.red", 0, 5));
  EXPECT_EQ(result.bits("crypto.half", 26, -3), input.bits("crypto.half", 23, 0));
  EXPECT_EQ(result.bits("id", -4, 5), 0U);
}

TEST_F(PassThrough, objectNumbers_mayServeAsDepth) {
  const RunResult result =
      runCommand(renderArguments(input_, output_, {"--set", "depthChannel=id"}));
  EXPECT_EQ(result.exitCode, 0) << result.error;
}

}  // namespace
}  // namespace drevintool::testing

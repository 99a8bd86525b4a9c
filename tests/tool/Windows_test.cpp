#include <gtest/gtest.h>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

// Everything lies on the focal plane (100), so a result holds the input's colours.
class Windows : public ::testing::Test {
 protected:
  ReadFile render(const Imath::Box2i& display, const Imath::Box2i& data,
                  const std::vector<std::string>& more = {}) {
    PartFixture part = rgbazPart(1, 1, 100.0);
    part.display = display;
    part.data = data;
    writeExrFixture(input_, part);
    const RunResult result = runCommand(renderArguments(input_, output_, more));
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return readBack(output_);
  }

  void expectColours(const ReadFile& result) const {
    const ReadFile input = readBack(input_);
    for (int y = result.data.min.y; y <= result.data.max.y; ++y) {
      for (int x = result.data.min.x; x <= result.data.max.x; ++x) {
        for (const char* name : {"R", "G", "B", "A"}) {
          ASSERT_NEAR(result.value(name, x, y), input.value(name, x, y), 1e-5) << name << x << y;
        }
      }
    }
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string output_ = folder_.file("out.exr");
};

TEST_F(Windows, dataInsideDisplay_keepsBothWindows) {
  const ReadFile result = render({{0, 0}, {39, 29}}, {{5, 3}, {20, 12}});
  EXPECT_EQ(result.display, Imath::Box2i({0, 0}, {39, 29}));
  EXPECT_EQ(result.data, Imath::Box2i({5, 3}, {20, 12}));
  expectColours(result);
}

TEST_F(Windows, displayAwayFromTheOrigin_isKept) {
  const ReadFile result = render({{-5, -7}, {20, 13}}, {{-9, -11}, {24, 17}});
  EXPECT_EQ(result.display, Imath::Box2i({-5, -7}, {20, 13}));
  EXPECT_EQ(result.data, Imath::Box2i({-9, -11}, {24, 17}));
  expectColours(result);
}

TEST_F(Windows, windowsWithoutOverlap_stillRender) {
  const ReadFile result = render({{-30, 0}, {-1, 19}}, {{0, 0}, {19, 19}});
  EXPECT_EQ(result.data, Imath::Box2i({0, 0}, {19, 19}));
}

TEST_F(Windows, onePixel_renders) {
  const ReadFile result = render({{3, 4}, {3, 4}}, {{3, 4}, {3, 4}});
  EXPECT_EQ(result.data, Imath::Box2i({3, 4}, {3, 4}));
  expectColours(result);
}

TEST_F(Windows, oneRowOrOneColumn_renders) {
  EXPECT_EQ(render({{0, 0}, {0, 29}}, {{0, 0}, {0, 29}}).data, Imath::Box2i({0, 0}, {0, 29}));
  EXPECT_EQ(render({{0, 0}, {39, 0}}, {{0, 0}, {39, 0}}).data, Imath::Box2i({0, 0}, {39, 0}));
}

TEST_F(Windows, kernelsWiderThanThePicture_render) {
  const std::vector<std::string> large = {"--set",          "focalPlane=1", "--set",
                                          "multiplier=200", "--set",        "max_kernelsize=256"};
  for (const int side : {1, 2, 9}) {
    const Imath::Box2i window({0, 0}, {side - 1, side - 1});
    const ReadFile result = render(window, window, large);
    EXPECT_EQ(result.data, window);
    EXPECT_GE(result.value("A", 0, 0), 0.0) << "no NaN";
  }
}

TEST_F(Windows, region_cutsTheDataWindowFromTheBottom) {
  const ReadFile result = render({{0, 0}, {39, 29}}, {{0, 0}, {39, 29}}, {"--region", "2,0,10,5"});
  EXPECT_EQ(result.display, Imath::Box2i({0, 0}, {39, 29}));
  EXPECT_EQ(result.data, Imath::Box2i({2, 25}, {9, 29}));
  expectColours(result);
}

TEST_F(Windows, regionPartlyOutside_isClipped) {
  const ReadFile result =
      render({{0, 0}, {39, 29}}, {{0, 0}, {39, 29}}, {"--region", "-100,28,4,100"});
  EXPECT_EQ(result.data, Imath::Box2i({0, 0}, {3, 1}));
}

TEST_F(Windows, regionOutside_isAUsageError) {
  writeExrFixture(input_, rgbazPart(16, 12, 100.0));
  const RunResult result =
      runCommand(renderArguments(input_, output_, {"--region", "100,100,110,110"}));
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find("0,0,16,12"), std::string::npos) << result.error;
}

TEST_F(Windows, expandedBoundingBox_growsTheDataWindow) {
  const ReadFile result =
      render({{0, 0}, {19, 19}}, {{0, 0}, {19, 19}},
             {"--set", "max_kernelsize=8", "--set", "expandBBoxToMaxKernelSize=1"});
  // The box grows by 4 to the left and down, by 3 to the right and up; rows run down in the file.
  EXPECT_EQ(result.data, Imath::Box2i({-4, -3}, {22, 23}));
}

TEST_F(Windows, partsWithDifferentWindows_giveTheirUnion) {
  PartFixture colour = rgbazPart(20, 20, 100.0);
  PartFixture depth = colour;
  depth.channels = {colour.channels.back()};
  colour.channels.pop_back();
  colour.data = Imath::Box2i({2, 2}, {9, 9});
  depth.data = Imath::Box2i({5, 5}, {15, 15});
  colour.name = "colour";
  depth.name = "depth";
  writeMultiPartFixture(input_, {colour, depth});
  const RunResult run = runCommand(renderArguments(input_, output_));
  ASSERT_EQ(run.exitCode, 0) << run.error;
  const ReadFile result = readBack(output_);
  EXPECT_EQ(result.data, Imath::Box2i({2, 2}, {15, 15}));
  EXPECT_EQ(result.names(), (std::vector<std::string>{"A", "B", "G", "R", "Z"}));
  EXPECT_EQ(result.value("Z", 2, 2), 0.0);
  EXPECT_EQ(result.value("Z", 15, 15), 100.0);
}

}  // namespace
}  // namespace drevintool::testing

#include <gtest/gtest.h>

#include <cmath>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "OddNumbers.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

/// Depths and colours that are no ordinary numbers, in every way of turning depth into blur.
class OddValues : public ::testing::Test {
 protected:
  using Arguments = std::vector<std::string>;

  ReadFile render(const PartFixture& part, const Arguments& more) {
    writeExrFixture(input_, part);
    error_.clear();
    const RunResult result = runCommand(renderArguments(input_, output_, more));
    EXPECT_EQ(result.exitCode, 0) << result.error;
    error_ = result.error;
    return readBack(output_);
  }

  static std::vector<Arguments> styles() {
    return {{"--set", "multiplier=9"},
            {"--set", "depthStyle=Real", "--set", "multiplier=9"},
            {"--set", "realWorldLens=1", "--set", "worldScale=m"},
            {"--set", "correctiveSlices=5", "--set", "multiplier=9"},
            {"--set", "outputType=Focal Distance Visualization"},
            {"--set", "outputType=Focus Matte"}};
  }

  static bool isFinite(const ReadFile& file, int x, int y) {
    for (const char* name : {"R", "G", "B", "A"}) {
      if (!std::isfinite(file.value(name, x, y))) return false;
    }
    return true;
  }

  // Every style must give a picture without NaN and infinity.
  void expectFinite(const PixelFunction& depth) {
    PartFixture part = rgbazPart(21, 15, 0.0);
    part.channels.back().value = depth;
    for (const Arguments& style : styles()) {
      const ReadFile result = render(part, style);
      int finite = 0;
      for (int y = 0; y < 15; ++y) {
        for (int x = 0; x < 21; ++x)
          finite += isFinite(result, x, y) ? 1 : 0;
      }
      EXPECT_EQ(finite, 21 * 15) << style.at(1);
    }
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string output_ = folder_.file("out.exr");
  std::string error_;
};

using OddDepths = OddValues;
using OddColours = OddValues;

TEST_F(OddDepths, allTheSame_giveFiniteColours) {
  for (const double depth : {0.0, -0.0, kNan, kInfinity, -kInfinity, -5.0, 1e-40, 3e38, -3e38}) {
    SCOPED_TRACE(depth);
    expectFinite([depth](int, int) { return depth; });
  }
}

TEST_F(OddDepths, allKindsInOnePicture_giveFiniteColours) {
  const std::vector<double> depths = {0.0,   kNan, kInfinity, -kInfinity, -5.0,
                                      1e-40, 3e38, 100.0,     99.0,       140.0};
  expectFinite([&depths](int x, int y) {
    return depths[static_cast<std::size_t>(x * 7 + y * 3) % depths.size()];
  });
}

// In focus but for one pixel, whose kernel is the only one that the NaN may reach.
TEST_F(OddColours, nan_staysWithinItsKernel) {
  for (const double value : {kNan, kInfinity, -kInfinity}) {
    PartFixture part = rgbazPart(41, 31, 100.0);
    part.channels.front().value = [value](int x, int y) {
      return x == 20 && y == 15 ? value : 0.5;
    };
    part.channels.back().value = [](int x, int y) { return x == 20 && y == 15 ? 300.0 : 100.0; };
    const ReadFile result = render(part, {"--set", "multiplier=9"});
    bool reached = false;
    for (int y = 0; y < 31; ++y) {
      for (int x = 0; x < 41; ++x) {
        const bool near = std::abs(x - 20) <= 6 && std::abs(y - 15) <= 6;
        const bool finite = std::isfinite(result.value("R", x, y));
        reached = reached || !finite;
        EXPECT_TRUE(near || finite) << x << " " << y;
        EXPECT_TRUE(std::isfinite(result.value("G", x, y))) << x << " " << y;
      }
    }
    EXPECT_TRUE(reached) << value;
  }
}

TEST_F(OddColours, pixelsThatAreNotFinite_areWarnedOfOnceWithTheirNumber) {
  for (const Imf::PixelType type : {Imf::HALF, Imf::FLOAT}) {
    PartFixture part = rgbazPart(21, 15, 100.0);
    for (ChannelFixture& channel : part.channels)
      channel.type = type;
    part.channels[0].value = [](int x, int y) { return x == 3 && y < 2 ? kNan : 0.5; };
    part.channels[1].value = [](int x, int y) { return x == 3 && y < 5 ? kInfinity : 0.5; };
    render(part, {});
    EXPECT_EQ(error_, "drevin: warning: 5 pixels of " + input_ +
                          " are not finite (NaN or infinite), and so is what their kernels "
                          "reach\n");
  }
}

using OddMattes = OddValues;

TEST_F(OddMattes, pixelsThatAreNotFinite_areWarnedOfWhereTheMatteIsPicked) {
  const std::string mattes = folder_.file("mattes.exr");
  PartFixture part = rgbazPart(21, 15, 100.0);
  part.channels[0].value = [](int x, int y) { return x == 3 && y < 2 ? kNan : 0.5; };
  writeExrFixture(mattes, part);
  for (const char* control : {"defocusMatteChannel", "bloomMatteChannel"}) {
    render(rgbazPart(21, 15, 100.0),
           {"--mattes", mattes, "--set", std::string(control) + "=rgba.red"});
    EXPECT_EQ(error_, "drevin: warning: 2 pixels of " + mattes +
                          " are not finite (NaN or infinite), and so may be what this matte weighs "
                          "there\n");
  }
  render(rgbazPart(21, 15, 100.0), {"--mattes", mattes, "--set", "bloomMatteChannel=rgba.green"});
  EXPECT_EQ(error_, "");
}

TEST_F(OddColours, channelsThatAreNotBlurred_areNotWarnedOf) {
  PartFixture part = rgbazPart(21, 15, 100.0);
  part.channels.push_back({"mask.a", Imf::FLOAT, [](int, int) { return kNan; }});
  part.channels.push_back({"id", Imf::UINT, [](int, int) { return 4294967295.0; }});
  render(part, {});
  EXPECT_EQ(error_, "");
}

}  // namespace
}  // namespace drevintool::testing

#include <gtest/gtest.h>

#include <cmath>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "OddNumbers.h"
#include "Refusal.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

/// Deep pictures whose files are sound, but whose samples are not what one expects.
class DeepOddities : public ::testing::Test {
 protected:
  // A, Z and ZBack only.
  static DeepPartFixture alphaPart(DeepPixelFixture pixel) {
    DeepPartFixture part = opaqueDeepPart(12, 9, 0.0);
    part.channels = {{"A", Imf::HALF}, {"Z", Imf::FLOAT}, {"ZBack", Imf::FLOAT}};
    part.samples = [pixel = std::move(pixel)](int, int) { return pixel; };
    return part;
  }

  ReadFile render(const DeepPartFixture& part, const std::vector<std::string>& more = {}) const {
    writeDeepFixture(deep_, {part});
    const RunResult result = runCommand(deepArguments(deep_, output_, more));
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return readBack(output_);
  }

  static void expectFinite(const ReadFile& result) {
    for (int y = result.data.min.y; y <= result.data.max.y; ++y) {
      for (int x = result.data.min.x; x <= result.data.max.x; ++x) {
        for (const char* name : {"R", "G", "B", "A"})
          ASSERT_TRUE(std::isfinite(result.value(name, x, y))) << name << " " << x << " " << y;
      }
    }
  }

  void expectFiniteInBothOrders(const DeepPixelFixture& pixel) const {
    expectFinite(render(alphaPart(pixel)));
    expectFinite(render(alphaPart(pixel), {"--deep-order", "far-first"}));
  }

  ScratchFolder folder_;
  std::string deep_ = folder_.file("deep.exr");
  std::string output_ = folder_.file("out.exr");
};

TEST_F(DeepOddities, noSamples_giveBlack) {
  const ReadFile result = render(alphaPart({}));
  expectFinite(result);
  EXPECT_EQ(result.value("A", 6, 4), 0.0);
}

TEST_F(DeepOddities, oneSampleInAll_isWhereItWas) {
  DeepPartFixture part = opaqueDeepPart(12, 9, 100.0);
  part.samples = [](int x, int y) {
    return x == 6 && y == 4 ? DeepPixelFixture{{1.0, 0.25, 0.5, 0.75, 100.0}} : DeepPixelFixture{};
  };
  const ReadFile result = render(part);
  expectFinite(result);
  EXPECT_NEAR(result.value("A", 6, 4), 1.0, 1e-5);
  EXPECT_EQ(result.value("A", 0, 0), 0.0);
}

TEST_F(DeepOddities, samplesInAnyOrder_areTheSortedOnes) {
  const DeepPixelFixture sorted = {{0.5, 90.0, 90.0}, {0.25, 100.0, 100.0}, {0.5, 140.0, 140.0}};
  const ReadFile expected = render(alphaPart(sorted));
  const ReadFile result = render(alphaPart({sorted[2], sorted[0], sorted[1]}));
  for (int x = 0; x < 12; ++x)
    EXPECT_EQ(result.bits("A", x, 4), expected.bits("A", x, 4)) << x;
}

TEST_F(DeepOddities, backsBeforeFronts_giveFiniteColours) {
  expectFiniteInBothOrders({{0.5, 120.0, 80.0}, {0.5, 110.0, 90.0}});
}

TEST_F(DeepOddities, alphaOutsideZeroToOne_givesFiniteColours) {
  expectFiniteInBothOrders({{1.5, 90.0, 110.0}, {3.0, 100.0, 120.0}, {-0.5, 130.0, 130.0}});
}

// The cutting of overlaps divides by their extents, so that such samples can spoil their pixels.
TEST_F(DeepOddities, depthsThatAreNotFinite_areAResult) {
  for (const double depth : {kNan, kInfinity, -kInfinity}) {
    render(alphaPart({{0.5, 90.0, 110.0}, {0.5, depth, depth}}));
    render(alphaPart({{0.5, 90.0, 110.0}, {0.5, 100.0, depth}}), {"--deep-order", "far-first"});
  }
}

TEST_F(DeepOddities, samplesThatAreNotFinite_areWarnedOfOnceWithTheirNumber) {
  DeepPartFixture part = alphaPart({{0.5, 90.0, 90.0}});
  part.samples = [](int x, int) {
    return DeepPixelFixture{{0.5, 90.0, 90.0}, {x == 3 ? kNan : 0.5, 100.0, 100.0}};
  };
  writeDeepFixture(deep_, {part});
  const RunResult result = runCommand(deepArguments(deep_, output_));
  EXPECT_EQ(result.error, "drevin: warning: 9 of 216 samples of " + deep_ +
                              " are not finite (NaN or infinite), and so may be what their kernels "
                              "reach\n");
  EXPECT_EQ(result.exitCode, 0);
}

TEST_F(DeepOddities, depthsFarFromFocus_giveFiniteColours) {
  for (const double depth : {-20.0, 0.0, 1e-40, 1e-3, 1e10, 3e38}) {
    expectFiniteInBothOrders({{0.5, depth, depth}});
    expectFiniteInBothOrders({{0.5, 90.0, 110.0}, {0.5, depth, depth}});
    expectFiniteInBothOrders({{0.5, 90.0, 110.0}, {0.5, depth, 100.0}});
  }
}

TEST_F(DeepOddities, fiveMillionSamplesInAPixel_areRefusedInLittleMemory) {
  writeUniformDeepFile(deep_, 1, 1, 5000000);
  expectRefused(deepArguments(deep_, output_), 3, {deep_, "pixel 0,0", "5000000 samples", "65536"});
  const RunResult result = runCommand(deepArguments(deep_, output_));
  EXPECT_LT(result.peakKibibytes, DREVIN_SANITIZED ? 2 << 20 : 100 << 10);
}

}  // namespace
}  // namespace drevintool::testing

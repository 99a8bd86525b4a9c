#include <gtest/gtest.h>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

constexpr int width = 220;
constexpr int height = 150;
/// More columns than any blur of the picture reaches to both sides.
constexpr int farAway = 100;

/// A near half with lights and a far one that recedes, of 48 px of blur and less; one pixel has
/// `extra` more red.
PartFixture picture(double extra) {
  PartFixture part = rgbazPart(width, height, 0.0);
  for (ChannelFixture& channel : part.channels) {
    if (channel.name == "Z") {
      channel.value = [](int x, int y) { return x < 150 ? 70.0 : 108.0 + 0.05 * y; };
    } else if (channel.name != "A") {
      channel.value = [=](int x, int y) {
        const double light = (x * 7 + y * 31) % 977 == 0 ? 30.0 : 0.0;
        return 0.25 + (x * 13 + y * 5) % 17 / 17.0 + light + (x == 10 && y == 12 ? extra : 0.0);
      };
    }
  }
  return part;
}

class Threads : public ::testing::Test {
 protected:
  ReadFile render(const PartFixture& part, const std::string& threads) const {
    writeExrFixture(folder_.file("in.exr"), part);
    const RunResult result =
        runCommand(renderArguments(folder_.file("in.exr"), folder_.file("out.exr"),
                                   {"--threads", threads, "--set", "bloom=0.4", "--set",
                                    "multiplier=48", "--set", "focusRegionSize=30"}));
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return readBack(folder_.file("out.exr"));
  }

 private:
  ScratchFolder folder_;
};

TEST_F(Threads, anyNumberOfThreads_givesTheSameBits) {
  const ReadFile one = render(picture(0.0), "1");
  for (const char* threads : {"2", "3", "7"}) {
    const ReadFile other = render(picture(0.0), threads);
    for (const auto& [name, channel] : one.channels) {
      EXPECT_EQ(channel.bits, other.channels.at(name).bits) << name << " with " << threads;
    }
  }
}

/// A transform rounds by all that its tile holds: only through one does a pixel show where no splat
/// of it reaches. So what the threads above share is transforms too.
TEST_F(Threads, pictureOfThem_goesThroughTransforms) {
  const ReadFile plain = render(picture(0.0), "2");
  const ReadFile changed = render(picture(0.5), "2");
  int differing = 0;
  for (int y = 0; y < height; ++y) {
    for (int x = farAway; x < width; ++x)
      differing += plain.bits("R", x, y) != changed.bits("R", x, y) ? 1 : 0;
  }
  EXPECT_GT(differing, 0);
}

}  // namespace
}  // namespace drevintool::testing

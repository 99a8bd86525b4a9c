#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "OddNumbers.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

using Arguments = std::vector<std::string>;

constexpr int kWidth = 200;
constexpr int kHeight = 150;

/// What a value of a picture may be off by.
double allowedDifference(double value) {
  return 1e-5 + 1e-4 * std::fabs(value);
}

bool agree(double a, double b) {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
  return a == b || std::fabs(a - b) <= allowedDifference(b);
}

RunOptions atLevel(const std::string& level) {
  RunOptions options;
  if (!level.empty()) options.environment["DREVIN_SIMD"] = level;
  return options;
}

/// Colours in single precision, so that nothing is rounded away; lights among them.
PartFixture picture() {
  PartFixture part = rgbazPart(kWidth, kHeight, 0.0);
  for (ChannelFixture& channel : part.channels) {
    channel.type = Imf::FLOAT;
    if (channel.name == "Z") {
      channel.value = [](int x, int y) { return x < 130 ? 70.0 : 100.0 + 0.1 * y; };
    } else if (channel.name != "A") {
      channel.value = [](int x, int y) {
        const double light = (x * 7 + y * 31) % 977 == 0 ? 30.0 : 0.0;
        return 0.25 + (x * 13 + y * 5) % 17 / 17.0 + light;
      };
    }
  }
  return part;
}

DeepPartFixture deepPicture() {
  DeepPartFixture part = opaqueDeepPart(64, 48, 0.0);
  for (DeepChannelFixture& channel : part.channels)
    channel.type = Imf::FLOAT;
  part.channels.push_back({"ZBack", Imf::FLOAT});
  part.samples = [](int x, int y) {
    DeepPixelFixture pixel;
    for (int i = 0; i < 1 + (x + y) % 4; ++i) {
      const double front = 60.0 + 9.0 * i + 0.5 * x;
      pixel.push_back({0.5, 0.125 * i, 0.25, (x * 3 + y) % 8 / 16.0, front, front + i % 2 * 6.0});
    }
    return pixel;
  };
  return part;
}

/// The command at one of the plug-in's instruction sets, held to its own choice.
class InstructionSets : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    const RunResult result =
        runCommand({"doctor", "--json", "--plugin", builtPlugin()}, atLevel(GetParam()));
    const auto doctor = nlohmann::json::parse(result.out);
    if (doctor["plugin"]["simd"] != GetParam())
      GTEST_SKIP() << "this processor has no " << GetParam();
  }

  Arguments flat(const PartFixture& part) const {
    writeExrFixture(input_, part);
    return renderArguments(input_, output_);
  }
  Arguments deep(const DeepPartFixture& part) const {
    writeDeepFixture(input_, {part});
    return deepArguments(input_, output_);
  }

  void expectAgreement(Arguments render, const Arguments& controls) const {
    for (const std::string& control : controls)
      render.insert(render.end(), {"--set", control});
    const ReadFile wanted = rendered(render, "");
    const ReadFile made = rendered(render, GetParam());
    ASSERT_EQ(made.data, wanted.data);
    double colour = 0.0;
    for (const std::string& name : wanted.names())
      colour += compare(name, made, wanted);
    EXPECT_GT(colour, 1.0) << "a black picture agrees with any";
  }

  const ScratchFolder folder_;
  const std::string input_ = folder_.file("in.exr");
  const std::string mattes_ = folder_.file("mattes.exr");

 private:
  ReadFile rendered(const Arguments& render, const std::string& level) const {
    const RunResult result = runCommand(render, atLevel(level));
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return readBack(output_);
  }

  /// The sum of the channel's finite values.
  static double compare(const std::string& name, const ReadFile& made, const ReadFile& wanted) {
    double sum = 0.0;
    int differing = 0;
    for (int y = wanted.data.min.y; y <= wanted.data.max.y; ++y) {
      for (int x = wanted.data.min.x; x <= wanted.data.max.x; ++x) {
        const double value = wanted.value(name, x, y);
        differing += agree(made.value(name, x, y), value) ? 0 : 1;
        if (std::isfinite(value)) sum += value;
      }
    }
    EXPECT_EQ(differing, 0) << name;
    return sum;
  }

  const std::string output_ = folder_.file("out.exr");
};

const Arguments kLargeBlur = {"multiplier=40", "focalPlane=100", "focusRegionSize=30"};

TEST_P(InstructionSets, pictureWithLightsAndBloom_agrees) {
  Arguments controls = kLargeBlur;
  controls.emplace_back("bloom=0.4");
  expectAgreement(flat(picture()), controls);
}

TEST_P(InstructionSets, shiftedChannelsUnderMattes_agree) {
  writeExrFixture(mattes_, picture());
  Arguments render = flat(picture());
  render.insert(render.end(), {"--mattes", mattes_});
  Arguments controls = kLargeBlur;
  controls.insert(controls.end(), {"kChrAbb=4", "defocusMatteChannel=rgba.red"});
  expectAgreement(render, controls);
}

TEST_P(InstructionSets, valuesThatAreNotFinite_reachTheSamePixels) {
  PartFixture part = picture();
  for (ChannelFixture& channel : part.channels) {
    if (channel.name != "R" && channel.name != "G") continue;
    const PixelFunction plain = channel.value;
    const double odd = channel.name == "R" ? kNan : -kInfinity;
    channel.value = [=](int x, int y) { return x == 90 && y == 60 ? odd : plain(x, y); };
  }
  expectAgreement(flat(part), kLargeBlur);
}

TEST_P(InstructionSets, deepPicture_agrees) {
  expectAgreement(deep(deepPicture()), {"multiplier=20", "focalPlane=90", "focusRegionSize=20"});
}

INSTANTIATE_TEST_SUITE_P(All, InstructionSets, ::testing::Values("baseline", "avx2", "avx512"),
                         [](const auto& level) { return std::string(level.param); });

}  // namespace
}  // namespace drevintool::testing

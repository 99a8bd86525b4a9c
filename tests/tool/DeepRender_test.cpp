#include <OpenEXR/ImfPartType.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

using Arguments = std::vector<std::string>;
using Names = std::vector<std::string>;

// Colours and weights of samples pass through a few single precision operations.
constexpr double kTolerance = 1e-5;

class DeepRender : public ::testing::Test {
 protected:
  void writeDeep(const DeepPartFixture& part) { writeDeepFixture(deep_, {part}); }

  RunResult run(const Arguments& more) const {
    return runCommand(deepArguments(deep_, output_, more));
  }

  ReadFile render(const Arguments& more) const {
    const RunResult result = run(more);
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return readBack(output_);
  }

  // A half transparent sample before an opaque one, stored the other way round.
  static DeepPartFixture twoSamples(double near, double far) {
    DeepPartFixture part = opaqueDeepPart(12, 9, 0.0);
    part.samples = [near, far](int, int) {
      return DeepPixelFixture{{1.0, 0.5, 0.25, 0.0, far}, {0.5, 0.0, 0.125, 0.5, near}};
    };
    return part;
  }

  // Columns of samples at many depths, some of them thick.
  static DeepPartFixture mixture(bool thick) {
    DeepPartFixture part = opaqueDeepPart(48, 40, 0.0);
    part.channels.push_back({"ZBack", Imf::FLOAT});
    part.samples = [thick](int x, int y) {
      DeepPixelFixture pixel;
      for (int i = 0; i < (x + y) % 5; ++i) {
        const double front = 60.0 + 7.0 * i + 0.5 * x;
        const double back = thick && i % 2 == 0 ? front + 11.0 : front;
        pixel.push_back({0.5, 0.125 * i, 0.25, ((x * 3 + y) % 8) / 16.0, front, back});
      }
      return pixel;
    };
    return part;
  }

  ScratchFolder folder_;
  std::string deep_ = folder_.file("deep.exr");
  std::string output_ = folder_.file("out.exr");
};

const Arguments kInFocus = {"--set", "focalPlane=100", "--set", "focusRegionSize=50"};
const Arguments kBlurred = {"--set", "focalPlane=70", "--set", "focusRegionSize=40",
                            "--set", "multiplier=9"};

TEST_F(DeepRender, deepPictureAlone_givesColoursOverItsWindows) {
  DeepPartFixture part = opaqueDeepPart(1, 1, 100.0);
  part.display = Imath::Box2i({10, 20}, {29, 34});
  part.data = Imath::Box2i({12, 18}, {31, 30});
  writeDeep(part);
  const ReadFile result = render(kInFocus);
  EXPECT_EQ(result.display, part.display);
  EXPECT_EQ(result.data, part.data);
  EXPECT_EQ(result.names(), (Names{"A", "B", "G", "R"}));
  EXPECT_EQ(result.channels.at("A").type, Imf::FLOAT);
  EXPECT_EQ(result.header.type(), Imf::SCANLINEIMAGE);
  for (const char* attribute : {"chunkCount", "maxSamplesPerPixel", "version"})
    EXPECT_EQ(result.header.find(attribute), result.header.end()) << attribute;
}

TEST_F(DeepRender, samplesInFocus_areComposited) {
  writeDeep(twoSamples(99.75, 100.0));
  const ReadFile result = render(kInFocus);
  EXPECT_NEAR(result.value("R", 5, 4), 0.5, kTolerance);
  EXPECT_NEAR(result.value("G", 5, 4), 0.125 + 0.5 * 0.25, kTolerance);
  EXPECT_NEAR(result.value("B", 5, 4), 0.5 * 0.5, kTolerance);
  EXPECT_NEAR(result.value("A", 5, 4), 1.0, kTolerance);
}

TEST_F(DeepRender, samplesOutOfFocus_spread) {
  DeepPartFixture part = opaqueDeepPart(41, 41, 130.0);
  part.samples = [](int x, int y) {
    if (x != 20 || y != 20) return DeepPixelFixture();
    return DeepPixelFixture{{1.0, 1.0, 1.0, 1.0, 130.0}};
  };
  writeDeep(part);
  const ReadFile result =
      render({"--set", "focalPlane=100", "--set", "focusRegionSize=40", "--set", "multiplier=11"});
  EXPECT_LT(result.value("R", 20, 20), 0.5);
  EXPECT_GT(result.value("R", 22, 20), 0.0);
  EXPECT_EQ(result.value("R", 0, 0), 0.0);
}

TEST_F(DeepRender, anyNumberOfThreads_givesTheSameBits) {
  for (const int tile : {0, 16}) {
    DeepPartFixture part = mixture(true);
    part.tileWidth = part.tileHeight = tile;
    writeDeep(part);
    Arguments arguments = kBlurred;
    arguments.insert(arguments.end(), {"--threads", "1"});
    const ReadFile one = render(arguments);
    for (const char* threads : {"2", "5"}) {
      arguments.back() = threads;
      const ReadFile other = render(arguments);
      for (const auto& [name, channel] : one.channels)
        EXPECT_EQ(channel.bits, other.channels.at(name).bits) << name << " with " << threads;
    }
  }
}

TEST_F(DeepRender, tiledFile_givesTheScanlineOnesBits) {
  DeepPartFixture part = mixture(false);
  writeDeep(part);
  const ReadFile scanlines = render(kBlurred);
  part.tileWidth = 20;
  part.tileHeight = 12;
  writeDeep(part);
  const ReadFile tiles = render(kBlurred);
  for (const auto& [name, channel] : scanlines.channels)
    EXPECT_EQ(channel.bits, tiles.channels.at(name).bits) << name;
}

TEST_F(DeepRender, region_isAPartOfTheWhole) {
  writeDeep(mixture(false));
  const ReadFile whole = render(kBlurred);
  Arguments arguments = kBlurred;
  arguments.insert(arguments.end(), {"--region", "7,9,31,22"});
  const ReadFile region = render(arguments);
  EXPECT_EQ(region.data, Imath::Box2i({7, 18}, {30, 30}));
  for (int y = 18; y <= 30; ++y) {
    for (int x = 7; x <= 30; ++x)
      // Sums begin at the box's own edge, which may show in the last bit.
      ASSERT_NEAR(region.value("R", x, y), whole.value("R", x, y), 1e-6F) << x << " " << y;
  }
}

TEST_F(DeepRender, depthOrder_mattersToThickSamplesAlone) {
  Arguments farFirst = kBlurred;
  farFirst.insert(farFirst.end(), {"--deep-order", "far-first"});
  writeDeep(mixture(false));
  const ReadFile points = render(kBlurred);
  const ReadFile pointsFarFirst = render(farFirst);
  EXPECT_EQ(points.channels.at("R").bits, pointsFarFirst.channels.at("R").bits);
  writeDeep(mixture(true));
  const ReadFile thick = render(kBlurred);
  const ReadFile thickFarFirst = render(farFirst);
  EXPECT_NE(thick.channels.at("R").bits, thickFarFirst.channels.at("R").bits);
}

TEST_F(DeepRender, thickSamples_areWarnedOfWhenServedNearestFirst) {
  writeDeep(mixture(true));
  // Of 1920 pixels each fifth has none, one, two, three and four samples: 10 in 5 pixels, of which
  // 6 are thick.
  EXPECT_EQ(run(kBlurred).error,
            "drevin: warning: " + deep_ +
                ": 2304 of 3840 samples are thick; near-first order cuts them against nearer ones, "
                "which can give wild values: --deep-order far-first cuts them in depth order, as "
                "general-purpose tools serve them\n");
  EXPECT_EQ(run({"--deep-order", "far-first"}).error, "");
  writeDeep(mixture(false));
  EXPECT_EQ(run(kBlurred).error, "");
}

TEST_F(DeepRender, missingAlpha_isWarnedOfOnceAndOpaque) {
  DeepPartFixture part = opaqueDeepPart(20, 90, 0.0);
  part.channels = {{"R", Imf::HALF}, {"Z", Imf::FLOAT}};
  part.samples = [](int, int) { return DeepPixelFixture{{0.5, 99.5}, {0.25, 100.0}}; };
  writeDeep(part);
  const RunResult result = run(kInFocus);
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(linesStarting(result.error, "drevin: warning: " + deep_).size(), 1U) << result.error;
  EXPECT_NE(result.error.find("opaque"), std::string::npos) << result.error;
  EXPECT_NEAR(readBack(output_).value("R", 3, 3), 0.5, kTolerance) << "the nearest hides the rest";
  EXPECT_NEAR(readBack(output_).value("A", 3, 3), 1.0, kTolerance);
}

TEST_F(DeepRender, channelsThatTheSamplesLack_comeFromTheFlatPicture) {
  DeepPartFixture part = opaqueDeepPart(16, 12, 0.0);
  part.channels = {{"A", Imf::HALF}, {"Z", Imf::FLOAT}};
  part.samples = [](int, int) { return DeepPixelFixture{{1.0, 100.0}}; };
  writeDeep(part);
  PartFixture flat = rgbazPart(16, 12, 5.0);
  flat.channels[0].value = [](int, int) { return 0.625; };
  flat.channels.push_back({"other.mask", Imf::HALF, [](int x, int) { return x / 16.0; }});
  writeExrFixture(folder_.file("flat.exr"), flat);
  Arguments arguments = kInFocus;
  arguments.insert(arguments.end(),
                   {"--input", folder_.file("flat.exr"), "--set", "bokehChannels=rgba"});
  const ReadFile result = render(arguments);
  EXPECT_EQ(result.names(), (Names{"A", "B", "G", "R", "Z", "other.mask"}));
  EXPECT_NEAR(result.value("R", 8, 6), 0.625, kTolerance);
  EXPECT_EQ(result.channels.at("other.mask").type, Imf::HALF) << "not touched";
  EXPECT_EQ(result.value("other.mask", 8, 6), 0.5);
}

TEST_F(DeepRender, flatPictureWithoutColours_getsThoseOfTheSamples) {
  writeDeep(opaqueDeepPart(16, 12, 100.0));
  PartFixture flat = rgbazPart(16, 12, 5.0);
  flat.channels = {{"Z", Imf::FLOAT, [](int, int) { return 5.0; }}};
  writeExrFixture(folder_.file("flat.exr"), flat);
  Arguments arguments = kInFocus;
  arguments.insert(arguments.end(),
                   {"--input", folder_.file("flat.exr"), "--set", "bokehChannels=rgba"});
  const ReadFile result = render(arguments);
  EXPECT_EQ(result.names(), (Names{"A", "B", "G", "R", "Z"}));
  EXPECT_NEAR(result.value("R", 8, 6), 0.75, kTolerance);
  EXPECT_EQ(result.value("Z", 8, 6), 5.0);
}

TEST_F(DeepRender, depthOfTheSamples_canBeTheBack) {
  DeepPartFixture part = opaqueDeepPart(41, 41, 0.0);
  part.channels.push_back({"ZBack", Imf::FLOAT});
  part.samples = [](int x, int y) {
    if (x != 20 || y != 20) return DeepPixelFixture();
    return DeepPixelFixture{{1.0, 1.0, 1.0, 1.0, 100.0, 130.0}};
  };
  writeDeep(part);
  const Arguments lens = {"--set", "focalPlane=100", "--set", "focusRegionSize=40",
                          "--set", "multiplier=11"};
  const auto centre = [&](const char* setting) {
    Arguments arguments = lens;
    if (setting != nullptr) arguments.insert(arguments.end(), {"--set", setting});
    return render(arguments).value("R", 20, 20);
  };
  const double front = centre(nullptr);
  EXPECT_EQ(centre("depthChannel=deep.front"), front);
  EXPECT_EQ(centre("depthChannel=depth.Z"), front);
  EXPECT_EQ(centre("depthChannel=Z"), front);
  EXPECT_LT(centre("depthChannel=deep.back"), front) << "out of focus";
}

TEST_F(DeepRender, depthThatThereIsNot_isRefusedWithWhatThereIs) {
  writeDeep(opaqueDeepPart(4, 3, 1.0));
  const RunResult result = run({"--set", "depthChannel=deep.middle"});
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find("R, G, B, A, Z, deep.front, deep.back"), std::string::npos)
      << result.error;
}

TEST_F(DeepRender, everyOutputType_isAResult) {
  writeDeep(mixture(true));
  for (const char* type : {"0", "1", "2", "3", "4"}) {
    Arguments arguments = kBlurred;
    arguments.insert(arguments.end(), {"--set", std::string("outputType=") + type});
    EXPECT_EQ(render(arguments).names(), (Names{"A", "B", "G", "R"})) << type;
  }
}

TEST_F(DeepRender, png_isWritten) {
  writeDeep(opaqueDeepPart(16, 12, 100.0));
  const RunResult result = runCommand(deepArguments(deep_, folder_.file("out.png"), kInFocus));
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(bytesOfFile(folder_.file("out.png")).substr(1, 3), "PNG");
}

TEST_F(DeepRender, partAndView_areChosenByOption) {
  DeepPartFixture left = opaqueDeepPart(8, 6, 100.0);
  left.name = "deep.left";
  left.view = "left";
  DeepPartFixture right = left;
  right.name = "deep.right";
  right.view = "right";
  right.samples = [](int, int) { return DeepPixelFixture{{1.0, 0.0, 0.0, 0.125, 100.0}}; };
  writeDeepFixture(deep_, {left, right});
  EXPECT_NEAR(render(kInFocus).value("R", 4, 3), 0.75, kTolerance);
  for (const Arguments& choice : {Arguments{"--deep-part", "deep.right"}, {"--view", "right"}}) {
    Arguments arguments = kInFocus;
    arguments.insert(arguments.end(), choice.begin(), choice.end());
    const ReadFile result = render(arguments);
    EXPECT_NEAR(result.value("R", 4, 3), 0.125, kTolerance);
    EXPECT_FALSE(result.header.hasName()) << "one part needs no name";
  }
}

TEST_F(DeepRender, report_tellsOfTheSamples) {
  writeDeep(mixture(true));
  const std::string file = folder_.file("report.json");
  Arguments arguments = kBlurred;
  arguments.insert(arguments.end(), {"--report", file});
  const RunResult result = run(arguments);
  const nlohmann::json report = nlohmann::json::parse(bytesOfFile(file));
  const nlohmann::json deep = report["inputs"]["Deep Input"];
  EXPECT_EQ(deep["file"], deep_);
  EXPECT_TRUE(deep["part"].is_null());
  EXPECT_EQ(deep["deepOrder"], "near-first");
  EXPECT_EQ(deep["samples"]["mostPerPixel"], 4);
  EXPECT_EQ(deep["samples"]["read"], 48 * 40 * 2);
  EXPECT_EQ(deep["samples"]["thick"], 48 * 40 * 6 / 5);
  EXPECT_EQ(deep["bandReads"], 2) << "its depths for the size estimate, then all of it";
  EXPECT_EQ(deep["asked"]["box"], nlohmann::json({0, 0, 48, 40}));
  const nlohmann::json channels = deep["asked"]["channels"];
  for (const char* name : {"rgba.red", "rgba.alpha", "deep.front", "deep.back"})
    EXPECT_NE(std::find(channels.begin(), channels.end(), name), channels.end()) << name;
  EXPECT_TRUE(report["inputs"]["Input"]["file"].is_null()) << "black";
  ASSERT_EQ(report["warnings"].size(), 1U);
  EXPECT_EQ(result.error, "drevin: warning: " + report["warnings"][0].get<std::string>() + "\n");
}

TEST_F(DeepRender, report_namesPartAndOrder) {
  DeepPartFixture part = opaqueDeepPart(8, 6, 100.0);
  part.name = "rgba.left";
  writeDeep(part);
  const std::string file = folder_.file("report.json");
  render({"--deep-order", "far-first", "--report", file});
  const nlohmann::json deep = nlohmann::json::parse(bytesOfFile(file))["inputs"]["Deep Input"];
  EXPECT_EQ(deep["part"], "rgba.left");
  EXPECT_EQ(deep["deepOrder"], "far-first");
}

}  // namespace
}  // namespace drevintool::testing

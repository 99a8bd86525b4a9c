#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "OddNumbers.h"
#include "RealPictures.h"
#include "ScratchFolder.h"
#include "prepare/DepthFixes.h"
#include "prepare/Fireflies.h"

namespace drevintool::testing {
namespace {

using nlohmann::json;
using Arguments = std::vector<std::string>;

const Arguments kBlur = {"--set",         "multiplier=9", "--set",
                         "focalPlane=10", "--set",        "focusRegionSize=20"};

Arguments joined(Arguments first, const Arguments& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

/// Pictures rendered with a fix, and pictures that were whole to begin with.
class PictureFixes : public ::testing::Test {
 protected:
  static PartFixture lights(const PixelFunction& depth) {
    PartFixture part = rgbazPart(32, 24, 0.0);
    for (std::size_t c = 0; c + 1 < part.channels.size(); ++c) {
      part.channels[c].value = [c](int x, int y) {
        return 0.125 * static_cast<double>((x * 5 + y * 3 + static_cast<int>(c)) % 9);
      };
    }
    part.channels.back().value = depth;
    part.channels.push_back({"id", Imf::UINT, [](int x, int) { return x; }});
    return part;
  }

  static double twoPlanes(int x, int /*y*/) { return x < 16 ? 5.0 : 20.0; }

  ReadFile render(const PartFixture& part, const Arguments& more) {
    writeExrFixture(input_, part);
    return finish(runCommand(
        renderArguments(input_, output_, joined(joined(kBlur, {"--report", report_}), more))));
  }

  ReadFile renderDeep(const DeepPartFixture& part, const Arguments& more) {
    writeDeepFixture(input_, {part});
    return finish(runCommand(
        deepArguments(input_, output_, joined(joined(kBlur, {"--report", report_}), more))));
  }

  std::vector<std::string> mended() const {
    const json report = json::parse(bytesOfFile(report_));
    return report.value("mended", std::vector<std::string>());
  }

  ReadFile finish(const RunResult& result) {
    EXPECT_EQ(result.exitCode, 0) << result.error;
    error_ = result.error;
    return readBack(output_);
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string output_ = folder_.file("out.exr");
  std::string report_ = folder_.file("report.json");
  std::string error_;
};

void expectSameColours(const ReadFile& a, const ReadFile& b) {
  for (const char* name : {"R", "G", "B", "A"})
    EXPECT_EQ(a.channels.at(name).bits, b.channels.at(name).bits) << name;
}

bool sameColours(const ReadFile& a, const ReadFile& b) {
  return a.channels.at("R").bits == b.channels.at("R").bits;
}

using FixBackground = PictureFixes;
using FixEdges = PictureFixes;
using ClampFireflies = PictureFixes;

TEST_F(FixBackground, pictureWithoutCodes_isUntouched) {
  const PartFixture part = lights(twoPlanes);
  const ReadFile plain = render(part, {});
  EXPECT_TRUE(mended().empty());
  const ReadFile fixed = render(part, {"--fix-background", "100"});
  expectSameColours(plain, fixed);
  EXPECT_EQ(mended(),
            (Arguments{"--fix-background 100: 0 of 768 pixels had no depth and got 100"}));
}

TEST_F(FixBackground, everyCode_becomesTheDepth) {
  for (const double code : {0.0, kNan, kInfinity, -kInfinity, 1e10, 1e30, -1e30}) {
    SCOPED_TRACE(code);
    const PartFixture whole = lights(twoPlanes);
    const PartFixture coded = lights([code](int x, int) { return x < 16 ? 5.0 : code; });
    const ReadFile wanted = render(whole, {});
    expectSameColours(render(coded, {"--fix-background", "20"}), wanted);
    EXPECT_EQ(mended(),
              (Arguments{"--fix-background 20: 384 of 768 pixels had no depth and got 20"}));
  }
}

TEST_F(FixBackground, far_isTheFarthestDistance) {
  const PartFixture coded = lights([](int x, int y) { return x < 16 ? 5.0 : y < 12 ? 20.0 : 0.0; });
  const ReadFile wanted = render(lights(twoPlanes), {});
  EXPECT_FALSE(sameColours(render(coded, {}), wanted));
  expectSameColours(render(coded, {"--fix-background", "far"}), wanted);
  EXPECT_EQ(mended(),
            (Arguments{"--fix-background far: 192 of 768 pixels had no depth and got 20"}));
}

TEST_F(FixBackground, farWithoutAnyDistance_changesNothingAndSaysSo) {
  const PartFixture part = lights([](int, int) { return 0.0; });
  const ReadFile plain = render(part, {});
  expectSameColours(render(part, {"--fix-background", "far"}), plain);
  EXPECT_EQ(mended(),
            (Arguments{"--fix-background far: nothing was changed, for no depth is a distance"}));
}

TEST_F(FixBackground, zeroIn1OverZ_isBackgroundAsInInspection) {
  const PartFixture part = lights([](int x, int) { return x < 16 ? 0.125 : 0.0; });
  const PartFixture whole = lights([](int x, int) { return x < 16 ? 0.125 : 0.0625; });
  const ReadFile wanted = render(whole, {"--set", "depthStyle=1/z"});
  expectSameColours(render(part, {"--set", "depthStyle=1/z", "--fix-background", "0.0625"}),
                    wanted);
  const PartFixture coded = lights([](int x, int) { return x < 16 ? 0.125 : kInfinity; });
  render(coded, {"--set", "depthStyle=1/z", "--fix-background", "far"});
  EXPECT_EQ(mended(),
            (Arguments{"--fix-background far: 384 of 768 pixels had no depth and got 0.125"}));
}

TEST_F(FixBackground, channelsThatAreNotBlurred_areBitIdentical) {
  const PartFixture part = lights([](int x, int) { return x < 16 ? 5.0 : kNan; });
  const ReadFile fixed =
      render(part, {"--fix-background", "20", "--fix-edges", "--clamp-fireflies", "0.5"});
  const ReadFile input = readBack(input_);
  for (const char* name : {"Z", "id"})
    EXPECT_EQ(fixed.channels.at(name).bits, input.channels.at(name).bits) << name;
}

TEST_F(FixBackground, depthChannelThatIsChosen_isTheOneThatIsMended) {
  PartFixture part = lights([](int, int) { return 0.0; });
  part.channels.push_back({"other.Z", Imf::HALF, [](int x, int) { return x < 16 ? 5.0 : 0.0; }});
  render(part, {"--set", "depthChannel=other.Z", "--fix-background", "far"});
  EXPECT_EQ(mended(),
            (Arguments{"--fix-background far: 384 of 768 pixels had no depth and got 5"}));
}

// What inspect tells as the background of a picture.
json inspectedBackground(const std::string& file, const Arguments& more = {}) {
  const RunResult result =
      runCommand(joined({"inspect", "--json", "--plugin", builtPlugin(), file}, more));
  EXPECT_EQ(result.exitCode, 0) << result.error;
  return json::parse(result.out).at(0)["depth"]["background"];
}

TEST_F(FixBackground, valueThatInspectFinds_isTakenToo) {
  const PartFixture part = lights([](int x, int y) {
    return x < 16 ? 5.0 + 0.01 * y : x == 31 && y == 3 ? kNan : 10000.0;
  });
  const ReadFile wanted =
      render(lights([](int x, int y) { return x < 16 ? 5.0 + 0.01 * y : 20.0; }), {});
  expectSameColours(render(part, {"--fix-background", "20"}), wanted);
  EXPECT_EQ(mended(), (Arguments{"--fix-background 20: 384 of 768 pixels had no depth, as 10000 is "
                                 "background here, and got 20"}));
  const json background = inspectedBackground(input_);
  EXPECT_EQ(background["value"], 10000.0);
  EXPECT_EQ(background["pixels"], 383);
  EXPECT_EQ(background["others"], 1);
}

TEST_F(FixBackground, far_isNotTheBackgroundThatWasFound) {
  render(lights([](int x, int y) { return x < 16 ? 5.0 + 0.25 * y : 10000.0; }),
         {"--fix-background", "far"});
  EXPECT_EQ(mended(), (Arguments{"--fix-background far: 384 of 768 pixels had no depth, as 10000 "
                                 "is background here, and got 10.75"}));
}

TEST_F(FixBackground, depthOfPixelsWithoutAlpha_isTaken) {
  const auto withAlpha = [](double depth) {
    PartFixture part = lights([depth](int x, int y) { return x < 16 ? 20.0 + 0.1 * y : depth; });
    for (ChannelFixture& channel : part.channels) {
      if (channel.name == "A") channel.value = [](int x, int) { return x < 16 ? 1.0 : 0.0; };
    }
    return part;
  };
  const ReadFile wanted = render(withAlpha(50.0), {});
  expectSameColours(render(withAlpha(-1.0), {"--fix-background", "50"}), wanted);
  EXPECT_EQ(mended(), (Arguments{"--fix-background 50: 384 of 768 pixels had no depth, as -1 is "
                                 "background here, and got 50"}));
  EXPECT_EQ(inspectedBackground(input_)["value"], -1.0);
}

// In 1/z the farthest is the smallest.
TEST_F(FixBackground, farPlaneIn1OverZ_isTheSmallestValue) {
  const PartFixture part = lights([](int x, int y) { return x < 16 ? 0.5 + 0.01 * y : 0.001; });
  render(part, {"--set", "depthStyle=1/z", "--fix-background", "far"});
  EXPECT_EQ(mended(), (Arguments{"--fix-background far: 384 of 768 pixels had no depth, as 0.001 "
                                 "is background here, and got 0.5"}));
  EXPECT_EQ(inspectedBackground(input_, {"--set", "depthStyle=1/z"})["value"], 0.001);
  EXPECT_TRUE(inspectedBackground(input_).is_null());
}

TEST_F(FixBackground, partSmallerThanThePicture_hasTheFindingOfItsOwnPixels) {
  PartFixture colours = lights(twoPlanes);
  colours.channels.erase(colours.channels.begin() + 4, colours.channels.end());
  colours.name = "colours";
  PartFixture depth = lights([](int x, int y) { return x < 16 ? 5.0 + 0.01 * y : 10000.0; });
  depth.channels.erase(depth.channels.begin(), depth.channels.begin() + 4);
  depth.channels.pop_back();
  depth.data = Imath::Box2i({4, 0}, {27, 23});
  depth.name = "depth";
  writeMultiPartFixture(input_, {colours, depth});
  EXPECT_EQ(inspectedBackground(input_)["pixels"], 12 * 24);
  finish(runCommand(
      renderArguments(input_, output_, {"--report", report_, "--fix-background", "20"})));
  // The pixels beside the part are 0.
  EXPECT_EQ(mended(), (Arguments{"--fix-background 20: 480 of 768 pixels had no depth, as 10000 is "
                                 "background here, and got 20"}));
}

TEST_F(FixBackground, notes_areToldThoughQuiet) {
  render(lights(twoPlanes), {"--fix-background", "far"});
  EXPECT_EQ(linesStarting(error_, "drevin: --fix-background far: 0 of 768").size(), 1U);
}

TEST_F(FixBackground, whatIsNoDepth_isRefused) {
  writeExrFixture(input_, lights(twoPlanes));
  for (const char* text : {"", "near", "nan", "inf", "5x"}) {
    const RunResult result =
        runCommand(renderArguments(input_, output_, {"--fix-background", text}));
    EXPECT_EQ(result.exitCode, 2) << text;
    EXPECT_NE(result.error.find("give a depth, or far"), std::string::npos) << result.error;
  }
}

DeepPartFixture deepPart(double front, double back, double red = 0.25) {
  DeepPartFixture part = opaqueDeepPart(20, 12, 0.0);
  part.channels.push_back({"ZBack", Imf::FLOAT});
  part.samples = [=](int x, int) {
    if (x < 10) return DeepPixelFixture{{1.0, 0.25, 0.5, 0.75, 5.0, 5.0}};
    return DeepPixelFixture{{1.0, 0.25, 0.5, red, front, back}, {0.5, 0.1, 0.1, 0.1, 8.0, 8.0}};
  };
  return part;
}

TEST_F(FixBackground, deepSamples_getTheDepthAndTheirPlaceInTheOrder) {
  for (const char* order : {"near-first", "far-first"}) {
    const ReadFile wanted = renderDeep(deepPart(20.0, 20.0), {"--deep-order", order});
    for (const double code : {0.0, kNan, kInfinity, 1e10}) {
      SCOPED_TRACE(code);
      const ReadFile fixed =
          renderDeep(deepPart(code, code), {"--deep-order", order, "--fix-background", "20"});
      expectSameColours(fixed, wanted);
      EXPECT_EQ(mended(),
                (Arguments{"--fix-background 20: 120 of 360 samples had no depth and got 20"}));
    }
  }
}

TEST_F(FixBackground, deepFar_isTheFarthestFront) {
  renderDeep(deepPart(kInfinity, kInfinity), {"--fix-background", "far"});
  EXPECT_EQ(mended(),
            (Arguments{"--fix-background far: 120 of 360 samples had no depth and got 8"}));
}

TEST_F(FixBackground, deepVolumeAtTheCamera_isADistance) {
  const ReadFile plain = renderDeep(deepPart(0.0, 4.0), {});
  expectSameColours(renderDeep(deepPart(0.0, 4.0), {"--fix-background", "20"}), plain);
  EXPECT_EQ(mended(), (Arguments{"--fix-background 20: 0 of 360 samples had no depth and got 20"}));
}

TEST_F(FixEdges, averagedEdge_becomesExactlyTwoPlanes) {
  const ReadFile wanted = render(lights(twoPlanes), {});
  for (const double mixed : {5.01, 8.0, 12.49}) {
    SCOPED_TRACE(mixed);
    const PartFixture part = lights([mixed](int x, int) {
      return x < 15 ? 5.0 : x == 15 ? mixed : 20.0;
    });
    EXPECT_FALSE(mixed > 6.0 && sameColours(render(part, {}), wanted));
    expectSameColours(render(part, {"--fix-edges"}), wanted);
    EXPECT_EQ(mended(), (Arguments{"--fix-edges: 24 of 768 pixels had averaged depths and got "
                                   "that of the closer side"}));
  }
  const PartFixture farther = lights([](int x, int) {
    return x < 16 ? 5.0 : x == 16 ? 12.6 : 20.0;
  });
  expectSameColours(render(farther, {"--fix-edges"}), wanted);
}

TEST_F(FixEdges, pictureWithoutAveragedEdges_isUntouched) {
  const ReadFile plain = render(lights(twoPlanes), {});
  expectSameColours(render(lights(twoPlanes), {"--fix-edges"}), plain);
}

TEST_F(FixEdges, edgesToTheBackground_areMendedBeforeIt) {
  const PartFixture part = lights([](int x, int) { return x < 15 ? 5.0 : x == 15 ? 4.0 : 0.0; });
  const ReadFile wanted = render(lights(twoPlanes), {});
  expectSameColours(render(part, {"--fix-edges", "--fix-background", "20"}), wanted);
  EXPECT_EQ(mended().size(), 2U);
}

TEST_F(FixEdges, oddDepths_areNoFault) {
  const std::vector<double> depths = {0.0,   kNan, kInfinity, -kInfinity, -5.0,
                                      1e-40, 3e38, 100.0,     99.0,       -3e38};
  const PartFixture part = lights([&depths](int x, int y) {
    return depths[static_cast<std::size_t>(x * 7 + y * 3) % depths.size()];
  });
  const ReadFile fixed = render(part, {"--fix-edges", "--fix-background", "far"});
  for (int y = 0; y < 24; ++y) {
    for (int x = 0; x < 32; ++x)
      EXPECT_TRUE(std::isfinite(fixed.value("R", x, y))) << x << " " << y;
  }
}

TEST_F(FixEdges, besideADeepPicture_isRefused) {
  const RunResult result =
      runCommand(deepArguments(folder_.file("d.exr"), output_, {"--fix-edges"}));
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_NE(result.error.find("--fix-edges"), std::string::npos);
}

TEST(DimColour, brighterColour_keepsItsHue) {
  float red = 8.0F;
  float green = 4.0F;
  float blue = -2.0F;
  EXPECT_TRUE(dimColour(red, green, blue, 2.0F));
  EXPECT_EQ(red, 2.0F);
  EXPECT_EQ(green, 1.0F);
  EXPECT_EQ(blue, -0.5F);
}

TEST(DimColour, colourUpToTheMost_stays) {
  float red = 2.0F;
  float green = -9.0F;
  float blue = kNanFloat;
  EXPECT_FALSE(dimColour(red, green, blue, 2.0F));
  EXPECT_EQ(red, 2.0F);
  EXPECT_EQ(green, -9.0F);
}

TEST(DimColour, infiniteComponent_becomesTheMostAndNanStays) {
  float red = kInfinityFloat;
  float green = 0.5F;
  float blue = kNanFloat;
  EXPECT_TRUE(dimColour(red, green, blue, 2.0F));
  EXPECT_EQ(red, 2.0F);
  EXPECT_EQ(green, 0.5F);
  EXPECT_TRUE(std::isnan(blue));
}

TEST(DimColour, rounding_neverLeavesMoreThanTheMost) {
  for (int i = 1; i < 2000; ++i) {
    float red = 3.0F + 0.37F * static_cast<float>(i);
    float green = red;
    float blue = 0.0F;
    const float most = 1.0F / static_cast<float>(i);
    EXPECT_TRUE(dimColour(red, green, blue, most));
    EXPECT_LE(red, most) << i;
    EXPECT_NEAR(red, most, 1e-6F * most) << i;
  }
}

TEST_F(ClampFireflies, pictureBelowTheMost_isUntouched) {
  const ReadFile plain = render(lights(twoPlanes), {});
  expectSameColours(render(lights(twoPlanes), {"--clamp-fireflies", "1"}), plain);
  EXPECT_EQ(mended(), (Arguments{"--clamp-fireflies 1: 0 of 768 pixels were brighter and were "
                                 "dimmed"}));
}

TEST_F(ClampFireflies, firefly_isThatOfAPictureWithTheDimmedPixel) {
  const auto withLight = [](double light) {
    PartFixture part = lights(twoPlanes);
    for (std::size_t c = 0; c < 3; ++c) {
      const PixelFunction before = part.channels[c].value;
      part.channels[c].value = [=](int x, int y) {
        return x == 9 && y == 9 ? light / static_cast<double>(c + 1) : before(x, y);
      };
    }
    // Thirds of the light would be rounded to halves before they are dimmed.
    for (ChannelFixture& channel : part.channels) {
      if (channel.type == Imf::HALF) channel.type = Imf::FLOAT;
    }
    return part;
  };
  const ReadFile wanted = render(withLight(3.0), {});
  const ReadFile fixed = render(withLight(3072.0), {"--clamp-fireflies", "3"});
  expectSameColours(fixed, wanted);
  EXPECT_EQ(mended(), (Arguments{"--clamp-fireflies 3: 1 of 768 pixels were brighter and were "
                                 "dimmed"}));
}

TEST_F(ClampFireflies, infiniteColour_isDimmedAndNotWarnedOf) {
  PartFixture part = lights(twoPlanes);
  part.channels[0].value = [](int x, int y) { return x == 9 && y == 9 ? kInfinity : 0.5; };
  const ReadFile fixed = render(part, {"--clamp-fireflies", "3"});
  EXPECT_TRUE(linesStarting(error_, "drevin: warning").empty()) << error_;
  for (int y = 0; y < 24; ++y) {
    for (int x = 0; x < 32; ++x)
      EXPECT_TRUE(std::isfinite(fixed.value(part.channels[0].name, x, y)));
  }
}

TEST_F(ClampFireflies, deepSamples_areDimmedAsTheyAreStored) {
  const ReadFile wanted = renderDeep(deepPart(20.0, 20.0, 0.75), {});
  const auto bright = [] {
    DeepPartFixture part = deepPart(20.0, 20.0);
    part.samples = [](int x, int) {
      if (x < 10) return DeepPixelFixture{{1.0, 0.25, 0.5, 0.75, 5.0, 5.0}};
      return DeepPixelFixture{{1.0, 4.0, 8.0, 12.0, 20.0, 20.0}, {0.5, 0.1, 0.1, 0.1, 8.0, 8.0}};
    };
    return part;
  }();
  expectSameColours(renderDeep(bright, {"--clamp-fireflies", "0.75"}), wanted);
  EXPECT_EQ(mended(), (Arguments{"--clamp-fireflies 0.75: 120 of 360 samples were brighter and "
                                 "were dimmed"}));
  const ReadFile one = renderDeep(bright, {"--clamp-fireflies", "0.75", "--channels", "R"});
  EXPECT_EQ(one.channels.at("R").bits, wanted.channels.at("R").bits);
}

TEST_F(ClampFireflies, pictureWithoutColours_staysAndIsToldOf) {
  PartFixture part = lights(twoPlanes);
  part.channels.erase(part.channels.begin());
  const Arguments note = {
      "--clamp-fireflies 3: nothing was changed, for the picture has no colours R, G and B"};
  render(part, {"--clamp-fireflies", "3"});
  EXPECT_EQ(mended(), note);
  Arguments loud = renderArguments(input_, output_, {"--clamp-fireflies", "3"});
  loud.erase(loud.begin() + 1);  // --quiet
  EXPECT_EQ(linesStarting(runCommand(loud).error, "drevin: --clamp"),
            Arguments{"drevin: " + note.front()});
}

TEST_F(ClampFireflies, deepPictureWithoutColours_staysAndIsToldOf) {
  DeepPartFixture part = deepPart(20.0, 20.0);
  part.channels.resize(1);  // alpha
  part.channels.push_back({"Z", Imf::FLOAT});
  part.samples = [](int, int) { return DeepPixelFixture{{1.0, 20.0}}; };
  renderDeep(part, {"--clamp-fireflies", "3"});
  EXPECT_EQ(mended(), Arguments{"--clamp-fireflies 3: nothing was changed, for the deep picture "
                                "has no colours R, G and B"});
}

TEST_F(ClampFireflies, whatIsNoBrightness_isRefused) {
  for (const char* text : {"", "0", "-1", "bright", "1e-60"}) {
    const RunResult result =
        runCommand(renderArguments(input_, output_, {"--clamp-fireflies", text}));
    EXPECT_EQ(result.exitCode, 2) << text;
    EXPECT_NE(result.error.find("give a number above 0"), std::string::npos) << result.error;
  }
}

class RealFixes : public PictureFixes {
 protected:
  Arguments fix(const std::string& name, const Arguments& more) {
    finish(runCommand(renderArguments(pictureFolder() + "/" + name, output_,
                                      joined({"--report", report_}, more))));
    return mended();
  }
};

TEST_F(RealFixes, beachball_hasItsEmptyPixelsBehindTheBall) {
  SKIP_WITHOUT_PICTURES();
  const Arguments notes = fix("flat/beachball.singlepart.0001.exr",
                              {"--region", "1000,600,1040,640", "--fix-background", "far"});
  EXPECT_EQ(notes, (Arguments{"--fix-background far: 201053 of 798036 pixels had no depth and got "
                              "10.921875"}));
}

TEST_F(RealFixes, courtyard_hasTwoPixelsOfSky) {
  SKIP_WITHOUT_PICTURES();
  const Arguments notes =
      fix("flat/courtyard.exr", {"--region", "600,500,620,510", "--fix-background", "50"});
  EXPECT_EQ(notes, (Arguments{"--fix-background 50: 2 of 1555200 pixels had no depth and got 50"}));
}

TEST_F(RealFixes, fireflies_areCountedInAVolume) {
  SKIP_WITHOUT_PICTURES();
  const RunResult result = runCommand(
      deepArguments(pictureFolder() + "/deep/fire_and_spikes.volume.exr", output_,
                    {"--report", report_, "--deep-order", "far-first", "--clamp-fireflies", "1"}));
  ASSERT_EQ(result.exitCode, 0) << result.error;
  ASSERT_EQ(mended().size(), 1U);
  EXPECT_NE(mended()[0].find(" of 191482 samples were brighter"), std::string::npos);
  EXPECT_EQ(mended()[0].find(": 0 of"), std::string::npos) << mended()[0];
}

}  // namespace
}  // namespace drevintool::testing

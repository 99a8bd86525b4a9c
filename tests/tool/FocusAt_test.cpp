#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "OddNumbers.h"
#include "RealPictures.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

using nlohmann::json;
using Arguments = std::vector<std::string>;

class FocusAt : public ::testing::Test {
 protected:
  void writeDepth(const PixelFunction& depth) {
    PartFixture part = rgbazPart(20, 12, 0.0);
    part.channels.back().value = depth;
    writeExrFixture(input_, part);
  }

  RunResult render(const Arguments& more) const {
    Arguments arguments = {"render",   "--plugin", builtPlugin(), "--input", input_,
                           "--output", output_,    "--report",    report_};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runCommand(arguments);
  }

  // The value that the node's control has in a render.
  double focalPlane(const Arguments& more) const {
    const RunResult result = render(more);
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return json::parse(bytesOfFile(report_))["controls"]["focalPlane"]["value"];
  }

  double deepFocus(const DeepPixelFixture& pixel, const Arguments& more = {}) const {
    DeepPartFixture part = opaqueDeepPart(20, 12, 0.0);
    part.channels.push_back({"ZBack", Imf::FLOAT});
    part.samples = [&pixel](int, int) { return pixel; };
    writeDeepFixture(input_, {part});
    Arguments arguments =
        deepArguments(input_, output_, {"--report", report_, "--focus-at", "9,6"});
    arguments.insert(arguments.end(), more.begin(), more.end());
    const RunResult result = runCommand(arguments);
    if (result.exitCode != 0) return -result.exitCode;
    return json::parse(bytesOfFile(report_))["controls"]["focalPlane"]["value"];
  }

  void expectRefused(const Arguments& more, int code, const std::string& piece) const {
    const std::string before = bytesOfFile(output_);
    const RunResult result = render(more);
    EXPECT_EQ(result.exitCode, code) << more.at(1);
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_NE(result.error.find(piece), std::string::npos) << result.error;
    EXPECT_TRUE(bytesOfFile(output_) == before);
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string output_ = folder_.file("out.exr");
  std::string report_ = folder_.file("report.json");
};

TEST_F(FocusAt, depthAtThePoint_isTheFocalPlaneAndTold) {
  writeDepth([](int x, int) { return x < 10 ? 7.5 : 30.0; });
  const RunResult result = render({"--focus-at", "4,6"});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(linesStarting(result.error, "drevin: focalPlane"),
            (Arguments{"drevin: focalPlane 7.5 at 4,6 (origin bottom left, as viewers of the host "
                       "show)"}));
  EXPECT_EQ(focalPlane({"--focus-at", "4,6"}), 7.5);
  EXPECT_EQ(focalPlane({"--focus-at", "15,6"}), 30.0);
}

TEST_F(FocusAt, rows_areCountedFromTheBottomOrAsAskedFromTheTop) {
  writeDepth([](int, int y) { return y < 6 ? 5.0 : 40.0; });  // 40 below
  EXPECT_EQ(focalPlane({"--focus-at", "4,2"}), 40.0);
  EXPECT_EQ(focalPlane({"--focus-at", "4,2,top"}), 5.0);
  EXPECT_NE(render({"--focus-at", "4,2,top"}).error.find("at 4,2 (origin top left)"),
            std::string::npos);
}

TEST_F(FocusAt, pictureIsThatOfTheSameFocalPlane) {
  writeDepth([](int x, int y) { return 5.0 + x + 0.1 * y; });
  ASSERT_EQ(render({"--focus-at", "9,5", "--set", "multiplier=9"}).exitCode, 0);
  const ReadFile at = readBack(output_);
  const double plane = json::parse(bytesOfFile(report_))["controls"]["focalPlane"]["value"];
  ASSERT_EQ(
      render({"--set", "focalPlane=" + std::to_string(plane), "--set", "multiplier=9"}).exitCode,
      0);
  const ReadFile set = readBack(output_);
  EXPECT_EQ(at.channels.at("R").bits, set.channels.at("R").bits);
}

TEST_F(FocusAt, medianOfFivePixelsByFive_leavesOutBackgroundAndStrays) {
  // Of the window around 10,6 from the top: a row of codes, and two strays.
  writeDepth([](int x, int y) {
    const std::vector<double> codes = {0.0, kNan, kInfinity, 1e10, -kInfinity};
    if (y == 4) return codes[static_cast<std::size_t>(x % 5)];
    if (y == 5 && x == 10) return 1000.0;
    if (y == 5 && x == 11) return 0.001;
    return 12.5;
  });
  EXPECT_EQ(focalPlane({"--focus-at", "10,6,top"}), 12.5);
}

TEST_F(FocusAt, evenNumberOfDepths_takesOneThatIsThere) {
  writeDepth([](int x, int) { return x == 0 ? 5.0 : x == 1 ? 9.0 : 0.0; });
  EXPECT_EQ(focalPlane({"--focus-at", "0,6"}), 5.0);
}

TEST_F(FocusAt, depthStyle1OverZ_givesTheDistance) {
  writeDepth([](int x, int) { return x < 3 ? 0.0 : 0.125; });
  EXPECT_EQ(focalPlane({"--focus-at", "4,6", "--set", "depthStyle=1/z"}), 8.0);
  EXPECT_EQ(focalPlane({"--focus-at", "4,6"}), 0.125);
  expectRefused({"--focus-at", "0,6", "--set", "depthStyle=1/z"}, 2, "background");
}

TEST_F(FocusAt, backgroundAlone_isRefusedWithTheRemedy) {
  writeDepth([](int x, int) { return x < 10 ? 0.0 : 30.0; });
  expectRefused({"--focus-at", "3,6"}, 2, "name another point");
  expectRefused({"--focus-at", "3,6"}, 2, "--fix-background");
}

TEST_F(FocusAt, backgroundThatWasGivenADepth_isFocusedOn) {
  writeDepth([](int x, int) { return x < 10 ? 0.0 : 30.0; });
  EXPECT_EQ(focalPlane({"--focus-at", "3,6", "--fix-background", "70"}), 70.0);
  EXPECT_EQ(focalPlane({"--focus-at", "3,6", "--fix-background", "far"}), 30.0);
  EXPECT_EQ(focalPlane({"--focus-at", "15,6", "--fix-background", "70"}), 30.0);
  EXPECT_EQ(
      focalPlane({"--focus-at", "3,6", "--fix-background", "0.25", "--set", "depthStyle=1/z"}),
      4.0);
  const RunResult behind = render({"--focus-at", "3,6", "--fix-background", "-2"});
  EXPECT_EQ(behind.exitCode, 2);
  EXPECT_EQ(
      linesStarting(behind.error, "drevin: error: --focus-at 3,6: the distance there is -2").size(),
      1U)
      << behind.error;
}

// A plane far behind all things is no code, but the same finding as that of inspect.
TEST_F(FocusAt, planeFarBehindAllThings_isLeftOut) {
  writeDepth([](int x, int) { return x < 10 ? 10000.0 : 30.0 + x; });
  expectRefused({"--focus-at", "3,6"}, 2, "nothing but background");
  EXPECT_EQ(focalPlane({"--focus-at", "9,6"}), 40.0);
}

TEST_F(FocusAt, depthOfPixelsWithoutAlpha_isLeftOut) {
  PartFixture part = rgbazPart(20, 12, 0.0);
  for (ChannelFixture& channel : part.channels) {
    if (channel.name == "A") channel.value = [](int x, int) { return x < 10 ? 0.0 : 1.0; };
    if (channel.name == "Z") channel.value = [](int x, int) { return x < 10 ? 50.0 : 30.0; };
  }
  writeExrFixture(input_, part);
  expectRefused({"--focus-at", "3,6"}, 2, "nothing but background");
  EXPECT_EQ(focalPlane({"--focus-at", "9,6"}), 30.0);
}

TEST_F(FocusAt, distanceNotAboveZero_isRefusedWithTheRemedy) {
  writeDepth([](int, int) { return -5.0; });
  expectRefused({"--focus-at", "3,6"}, 2, "the distance there is -5");
  expectRefused({"--focus-at", "3,6"}, 2, "name another point");
  expectRefused({"--focus-at", "3,6", "--set", "depthStyle=1/z"}, 2, "the distance there is -0.2");
}

// 1 / 1e-40 is beyond the largest float.
TEST_F(FocusAt, distanceThatIsNotFinite_isBackground) {
  writeDepth([](int, int) { return 1e-40; });
  expectRefused({"--focus-at", "3,6", "--set", "depthStyle=1/z"}, 2, "nothing but background");
}

TEST_F(FocusAt, focus_isToldThoughQuiet) {
  writeDepth([](int, int) { return 7.5; });
  EXPECT_EQ(linesStarting(render({"--quiet", "--focus-at", "4,6"}).error, "drevin: ").size(), 1U);
}

TEST_F(FocusAt, pointOutsideThePicture_isRefusedWithItsSpans) {
  PartFixture part = rgbazPart(20, 12, 9.0);
  part.data = Imath::Box2i({3, 2}, {16, 7});
  writeExrFixture(input_, part);
  expectRefused({"--focus-at", "2,6"}, 2, "columns 3 to 16 and rows 4 to 9 from the bottom");
  expectRefused({"--focus-at", "5,8,top"}, 2, "rows 2 to 7 from the top");
  EXPECT_EQ(focalPlane({"--focus-at", "3,4"}), 9.0);
  EXPECT_EQ(focalPlane({"--focus-at", "16,2,top"}), 9.0);
}

TEST_F(FocusAt, whatIsNoPoint_isRefused) {
  writeDepth([](int, int) { return 9.0; });
  for (const char* text : {"", "3", "3,", "3,4,5", "3,4,bottom", "x,y", "3.5,4", "3,4,top,5"})
    expectRefused({"--focus-at", text}, 2, "x,y");
}

TEST_F(FocusAt, besideAFocalPlane_isRefused) {
  writeDepth([](int, int) { return 9.0; });
  expectRefused({"--focus-at", "3,4", "--set", "focalPlane=5"}, 2, "give one or the other");
  expectRefused({"--focus-at", "3,4", "--set", "focalPlane@1=5", "--frames", "1"}, 2,
                "give one or the other");
}

TEST_F(FocusAt, pictureWithoutItsDepthChannel_isRefused) {
  PartFixture part = rgbazPart(20, 12, 9.0);
  part.channels.pop_back();
  writeExrFixture(input_, part);
  expectRefused({"--focus-at", "3,4"}, 3, "depthChannel");
}

TEST_F(FocusAt, camera_hasItsFocusFromThePoint) {
  writeDepth([](int, int) { return 9.0; });
  const std::string lens =
      "focalLength=50,fStop=1.4,focalPlane=2.7,horizontalAperture=36,verticalAperture=24";
  ASSERT_EQ(render({"--focus-at", "3,4", "--camera", lens}).exitCode, 0);
  const json report = json::parse(bytesOfFile(report_));
  EXPECT_EQ(report["camera"]["focalPlane"]["value"], 9.0);
  EXPECT_EQ(report["camera"]["focalPlane"]["from"], "--focus-at");
  EXPECT_EQ(report["camera"]["fStop"]["value"], 1.4);
}

TEST_F(FocusAt, headerCameraWithoutFocus_isEnough) {
  SKIP_WITHOUT_PICTURES();
  const std::string scene = pictureFolder() + "/flat/courtyard.exr";
  const RunResult result = runCommand(
      renderArguments(scene, output_,
                      {"--region", "600,100,620,110", "--focus-at", "666,203", "--report", report_,
                       "--camera", "header,focalLength=50,fStop=1.4,horizontalAperture=36"}));
  ASSERT_EQ(result.exitCode, 0) << result.error;
  const json report = json::parse(bytesOfFile(report_));
  EXPECT_NEAR(report["camera"]["focalPlane"]["value"].get<double>(), 3.385, 0.005);
}

TEST_F(FocusAt, sequence_focusesFrameByFrame) {
  for (const int frame : {1, 2}) {
    writeExrFixture(folder_.file("a." + std::to_string(frame) + ".exr"),
                    rgbazPart(20, 12, 10.0 * frame));
  }
  const RunResult result =
      runCommand({"render", "--plugin", builtPlugin(), "--input", folder_.file("a.#.exr"),
                  "--frames", "1-2", "--output", folder_.file("o.#.exr"), "--focus-at", "3,4"});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(linesStarting(result.error, "drevin: frame 1: focalPlane 10 at 3,4").size(), 1U);
  EXPECT_EQ(linesStarting(result.error, "drevin: frame 2: focalPlane 20 at 3,4").size(), 1U);
}

TEST_F(FocusAt, deepFrontSurface_isWhereCoverageComesToHalf) {
  const auto sample = [](double alpha, double front, double back) {
    return std::vector<double>{alpha, 0.25, 0.5, 0.75, front, back};
  };
  EXPECT_EQ(deepFocus({sample(1.0, 20, 20), sample(0.25, 5, 5)}), 20.0);
  EXPECT_EQ(deepFocus({sample(1.0, 20, 20), sample(0.5, 5, 5)}), 5.0);
  EXPECT_EQ(deepFocus({sample(0.375, 5, 5), sample(0.375, 7, 8), sample(1, 30, 30)}), 7.0);
  EXPECT_EQ(
      deepFocus({sample(0.375, 5, 5), sample(0.375, 7, 8)}, {"--set", "depthChannel=deep.back"}),
      8.0);
}

TEST_F(FocusAt, deepPixelsOfLittleCoverage_areBackground) {
  EXPECT_EQ(deepFocus({}), -2.0);
  EXPECT_EQ(deepFocus({{0.25, 0.1, 0.1, 0.1, 5, 5}}), -2.0);
}

TEST_F(FocusAt, script_printsTheFocalPlane) {
  writeDepth([](int x, int) { return x < 10 ? 7.5 : 30.0; });
  const RunResult result =
      runCommand({"script", "--plugin", builtPlugin(), "--input", input_, "--focus-at", "4,6"});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(linesStarting(result.out, " focalPlane"), (Arguments{" focalPlane 7.5"}));
  EXPECT_EQ(linesStarting(result.error, "drevin: focalPlane 7.5 at 4,6").size(), 1U);
}

TEST_F(FocusAt, scriptWithoutPicture_isRefused) {
  const RunResult lone = runCommand({"script", "--plugin", builtPlugin(), "--focus-at", "4,6"});
  EXPECT_EQ(lone.exitCode, 2);
  EXPECT_NE(lone.error.find("--input or --deep"), std::string::npos);
  EXPECT_EQ(runCommand({"script", "--plugin", builtPlugin(), "--input", input_}).exitCode, 2);
}

}  // namespace
}  // namespace drevintool::testing

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <nlohmann/json.hpp>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "Refusal.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

using nlohmann::json;
using Arguments = std::vector<std::string>;

// Five frames whose left half stays and whose right half goes away: 20 units a frame.
class FocusKeys : public ::testing::Test {
 protected:
  FocusKeys() {
    for (int frame = 1; frame <= 5; ++frame)
      writeFrame("a", frame, 10.0);
  }

  void writeFrame(const std::string& name, int frame, double left) const {
    PartFixture part = rgbazPart(20, 12, 0.0);
    part.channels.back().value = [=](int x, int) { return x < 10 ? left : 20.0 * frame; };
    writeExrFixture(folder_.file(name + "." + std::to_string(frame) + ".exr"), part);
  }

  Arguments arguments(const std::string& frames, const Arguments& more) const {
    Arguments all = {"render",   "--plugin", builtPlugin(),     "--input", input_,
                     "--frames", frames,     "--output",        output_,   "--report",
                     report_,    "--set",    "max_kernelsize=3"};
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }

  // The node's focal planes, frame by frame.
  std::vector<double> planes(const std::string& frames, const Arguments& more) const {
    const RunResult result = runCommand(arguments(frames, more));
    EXPECT_EQ(result.exitCode, 0) << result.error;
    std::vector<double> planes;
    if (result.exitCode != 0) return planes;
    const json report = json::parse(bytesOfFile(report_));
    for (const json& frame : report["frames"])
      planes.push_back(frame["controls"]["focalPlane"]["value"]);
    return planes;
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("a.#.exr");
  std::string output_ = folder_.file("o.#.exr");
  std::string report_ = folder_.file("report.json");
};

TEST_F(FocusKeys, focus_runsInALineBetweenThemAndStaysOutside) {
  // 10 on the left at frame 2, 80 on the right at frame 4.
  EXPECT_EQ(planes("1-5", {"--focus-at", "4,6@2", "--focus-at", "15,6@4"}),
            (std::vector<double>{10, 10, 45, 80, 80}));
}

TEST_F(FocusKeys, orderOfTheOptions_doesNotMatter) {
  EXPECT_EQ(planes("1-5", {"--focus-at", "15,6@4", "--focus-at", "4,6,top@2"}),
            (std::vector<double>{10, 10, 45, 80, 80}));
}

TEST_F(FocusKeys, oneKey_holdsItsDistance) {
  EXPECT_EQ(planes("1-5", {"--focus-at", "15,6@3"}), (std::vector<double>{60, 60, 60, 60, 60}));
}

// As each task of a farm has but some of the frames.
TEST_F(FocusKeys, framesOfKeys_needNotBeRendered) {
  const Arguments keys = {"--focus-at", "4,6@1", "--focus-at", "15,6@5"};
  EXPECT_EQ(planes("3", keys), std::vector<double>{55});
  EXPECT_EQ(planes("1-5", {"--focus-at", "4,6@1", "--focus-at", "15,6@5", "--chunk", "3/5"}),
            std::vector<double>{55});
  EXPECT_EQ(planes("1-5", keys), (std::vector<double>{10, 32.5, 55, 77.5, 100}));
}

TEST_F(FocusKeys, pictures_areThoseOfTheSameKeysOfTheControl) {
  planes("3", {"--focus-at", "4,6@1", "--focus-at", "15,6@5", "--set", "multiplier=9"});
  const ReadFile points = readBack(folder_.file("o.3.exr"));
  planes("3", {"--set", "focalPlane@1=10", "--set", "focalPlane@5=100", "--set", "multiplier=9"});
  EXPECT_EQ(points.channels.at("R").bits, readBack(folder_.file("o.3.exr")).channels.at("R").bits);
}

TEST_F(FocusKeys, eachKey_isToldOnce) {
  const RunResult result =
      runCommand(arguments("2-4", {"--focus-at", "4,6@1", "--focus-at", "15,6,top@5"}));
  EXPECT_EQ(linesStarting(result.error, "drevin: "),
            (Arguments{"drevin: frame 1: focalPlane 10 at 4,6 (origin bottom left, as viewers of "
                       "the host show)",
                       "drevin: frame 5: focalPlane 100 at 15,6 (origin top left)"}));
}

TEST_F(FocusKeys, views_haveEachTheirOwn) {
  for (int frame = 1; frame <= 2; ++frame) {
    writeFrame("l", frame, 10.0);
    writeFrame("r", frame, 30.0);
  }
  input_ = folder_.file("%v.#.exr");
  output_ = folder_.file("o.%v.#.exr");
  EXPECT_EQ(planes("1-2", {"--views", "left,right", "--focus-at", "4,6@1"}),
            (std::vector<double>{10, 30, 10, 30}));
}

TEST_F(FocusKeys, camera_hasItsFocusFromThem) {
  planes("3", {"--focus-at", "4,6@1", "--focus-at", "15,6@5", "--camera",
               "focalLength=50,fStop=1.4,horizontalAperture=36,verticalAperture=24"});
  const json camera = json::parse(bytesOfFile(report_))["frames"][0]["camera"];
  EXPECT_EQ(camera["focalPlane"]["value"], 55);
  EXPECT_EQ(camera["focalPlane"]["from"], "--focus-at");
}

TEST_F(FocusKeys, deepPictures_areLookedAt) {
  writeDeepFixture(folder_.file("d.exr"), {opaqueDeepPart(20, 12, 7.0)});
  Arguments all = deepArguments(folder_.file("d.exr"), folder_.file("o.#.exr"),
                                {"--frames", "1", "--report", report_, "--focus-at", "4,6@9"});
  ASSERT_EQ(runCommand(all).exitCode, 0);
  EXPECT_EQ(json::parse(bytesOfFile(report_))["frames"][0]["controls"]["focalPlane"]["value"], 7);
}

TEST_F(FocusKeys, frameThatIsMissingOrPointOutside_isRefusedBeforeAnyIsRendered) {
  RunResult result = runCommand(arguments("1-5", {"--quiet", "--focus-at", "4,6@9"}));
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_EQ(result.error.rfind("drevin: error: frame 9: " + folder_.file("a.9.exr"), 0), 0U)
      << result.error;
  result = runCommand(arguments("1-5", {"--quiet", "--focus-at", "40,6@2"}));
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_NE(result.error.find("frame 2: --focus-at 40,6@2: lies outside"), std::string::npos)
      << result.error;
  EXPECT_EQ(folder_.entries().size(), 5U);
}

TEST_F(FocusKeys, whatIsNoKey_isRefused) {
  const auto refused = [&](const Arguments& more, const std::string& piece) {
    const RunResult result = runCommand(arguments("1-5", more));
    EXPECT_EQ(result.exitCode, 2) << result.error;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_NE(result.error.find(piece), std::string::npos) << result.error;
  };
  refused({"--focus-at", "4,6@"}, "is no frame");
  refused({"--focus-at", "4,6@1.5"}, "is no frame");
  refused({"--focus-at", "4,6@2000000000"}, "is no frame");
  refused({"--focus-at", "4@1"}, "x,y");
  refused({"--focus-at", "4,6", "--focus-at", "5,6"}, "has no frame");
  refused({"--focus-at", "4,6@1", "--focus-at", "5,6"}, "has no frame");
  refused({"--focus-at", "4,6@1", "--focus-at", "5,6@1"}, "has a key at frame 1 already");
  refused({"--focus-at", "4,6@1", "--set", "focalPlane=5"}, "give one or the other");
}

TEST_F(FocusKeys, withoutFramesAndOnSheets_areRefused) {
  const std::string input = folder_.file("a.1.exr");
  expectRefused(renderArguments(input, folder_.file("o.exr"), {"--focus-at", "4,6@1"}), 2,
                {"--focus-at 4,6@1", "--frames"});
  expectRefused({"sheet", "--plugin", builtPlugin(), "--input", input_, "--frames", "1", "--vary",
                 "multiplier=1,2", "--focus-at", "4,6@1", "--output", folder_.file("o.png")},
                2, {"--focus-at 4,6@1", "a sheet shows one frame"});
}

TEST_F(FocusKeys, script_hasThemAsACurve) {
  const auto script = [&](const Arguments& more) {
    Arguments all = {"script", "--plugin", builtPlugin(), "--input", input_};
    all.insert(all.end(), more.begin(), more.end());
    const RunResult result = runCommand(all);
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return linesStarting(result.out, " focalPlane");
  };
  EXPECT_EQ(script({"--focus-at", "4,6@1", "--focus-at", "15,6@5"}),
            Arguments{" focalPlane {{curve L x1 10 x5 100}}"});
  EXPECT_EQ(script({"--focus-at", "15,6@2"}), Arguments{" focalPlane 40"});
}

}  // namespace
}  // namespace drevintool::testing

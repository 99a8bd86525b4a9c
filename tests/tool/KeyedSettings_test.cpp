#include "controls/KeyedSettings.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"
#include "terminal/ExitCode.h"

namespace drevintool::testing {
namespace {

using Texts = std::vector<std::string>;

std::string failureOf(const Texts& settings) {
  try {
    groupSettings(settings);
  } catch (const ToolError& error) {
    EXPECT_EQ(error.code(), ExitCode::Usage);
    return error.what();
  }
  ADD_FAILURE() << "no failure";
  return {};
}

TEST(KeyedSettings, keysOfOneControl_areTogetherInTheirOrder) {
  const auto groups = groupSettings({"focalPlane@48=24", "bloom=1", "focalPlane@1=2.7"});
  ASSERT_EQ(groups.size(), 2U);
  ASSERT_EQ(groups[0].keys.size(), 2U);
  EXPECT_EQ(groups[0].keys[0].frame, 1.0);
  EXPECT_EQ(groups[0].keys[0].setting.value, "2.7");
  EXPECT_EQ(groups[0].keys[0].setting.name, "focalPlane");
  EXPECT_EQ(groups[0].keys[0].setting.text, "--set focalPlane@1=2.7");
  EXPECT_EQ(groups[0].keys[1].frame, 48.0);
  EXPECT_FALSE(groups[1].keyed);
}

TEST(KeyedSettings, keysOfSeveralControls_areNotMixed) {
  const auto groups = groupSettings({"a@1=1", "b@1=2", "b@2=3", "a@2=4"});
  ASSERT_EQ(groups.size(), 2U);
  EXPECT_EQ(groups[0].keys[1].setting.value, "4");
  EXPECT_EQ(groups[1].keys[1].setting.value, "3");
}

TEST(KeyedSettings, unkeyedSettings_mayComeTwice) {
  EXPECT_EQ(groupSettings({"bloom=1", "bloom=0"}).size(), 2U);
}

TEST(KeyedSettings, valuesWithAnAtSign_areNoKeys) {
  EXPECT_FALSE(groupSettings({"depthChannel=a@b"}).front().keyed);
}

TEST(KeyedSettings, sameFrameTwice_isRefused) {
  EXPECT_NE(failureOf({"bloom@1=1", "bloom@2=0", "bloom@1.0=0.5"}).find("frame 1 already"),
            std::string::npos);
}

TEST(KeyedSettings, keyedAndUnkeyed_isRefusedInEitherOrder) {
  EXPECT_NE(failureOf({"bloom@1=1", "bloom=0"}).find("with keys and without"), std::string::npos);
  EXPECT_NE(failureOf({"bloom=0", "bloom@1=1"}).find("with keys and without"), std::string::npos);
}

TEST(KeyedSettings, framesThatAreNone_areNamed) {
  for (const char* frame : {"", "x", "nan", "inf", "1e10", "1-2"}) {
    const std::string line = failureOf({std::string("bloom@") + frame + "=1"});
    EXPECT_NE(line.find(std::string("'") + frame + "' is no frame"), std::string::npos) << line;
  }
}

// The command's own view of keyed controls.
class RackFocus : public ::testing::Test {
 protected:
  RackFocus() { writeExrFixture(input_, rgbazPart(20, 10, 100.0)); }

  RunResult render(const Texts& more) const {
    return runCommand(renderArguments(input_, folder_.file("out.#.exr"), more));
  }

  double valueAt(int frame, const std::string& control) const {
    const std::string file = folder_.file("r." + std::to_string(frame) + ".json");
    return nlohmann::json::parse(bytesOfFile(file))["controls"][control]["value"].get<double>();
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
};

TEST_F(RackFocus, numbers_runBetweenTheirKeys) {
  const RunResult result = render({"--frames", "1-5", "--set", "focalPlane@2=10", "--set",
                                   "focalPlane@4=20", "--set", "correctiveSlices@1=1", "--set",
                                   "correctiveSlices@5=4", "--report", folder_.file("r.#.json")});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(valueAt(1, "focalPlane"), 10.0);
  EXPECT_EQ(valueAt(2, "focalPlane"), 10.0);
  EXPECT_EQ(valueAt(3, "focalPlane"), 15.0);
  EXPECT_EQ(valueAt(5, "focalPlane"), 20.0);
  // Whole numbers drop what is behind the point, as in the host.
  EXPECT_EQ(valueAt(4, "correctiveSlices"), 3.0);
}

TEST_F(RackFocus, keyedFrame_isTheSamePictureAsTheValueItself) {
  ASSERT_EQ(render({"--frames", "3", "--set", "multiplier=9", "--set", "focalPlane@1=10", "--set",
                    "focalPlane@5=20"})
                .exitCode,
            0);
  const std::string plain = folder_.file("plain.exr");
  ASSERT_EQ(runCommand(
                renderArguments(input_, plain, {"--set", "multiplier=9", "--set", "focalPlane=15"}))
                .exitCode,
            0);
  EXPECT_TRUE(bytesOfFile(plain) == bytesOfFile(folder_.file("out.3.exr")));
}

TEST_F(RackFocus, colours_runComponentByComponent) {
  const RunResult result = render({"--frames", "2", "--set", "kChrAbbOff@1=0,0,1", "--set",
                                   "kChrAbbOff@3=1", "--report", folder_.file("r.#.json")});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  const auto value =
      nlohmann::json::parse(bytesOfFile(folder_.file("r.2.json")))["controls"]["kChrAbbOff"];
  EXPECT_EQ(value["value"], nlohmann::json({0.5, 0.5, 1}));
}

TEST_F(RackFocus, controlsThatAreNoNumbers_takeNoKeys) {
  for (const char* setting : {"depthStyle@1=Real", "realWorldLens@1=1", "depthChannel@1=depth.Z",
                              "bokehChannels@1=rgb"}) {
    const RunResult result = render({"--frames", "1", "--set", setting});
    EXPECT_EQ(result.exitCode, 2) << setting;
    EXPECT_NE(result.error.find("takes no keys"), std::string::npos) << result.error;
  }
}

TEST_F(RackFocus, keysWithoutAFrame_nameTheRemedy) {
  const RunResult result =
      runCommand(renderArguments(input_, folder_.file("o.exr"), {"--set", "focalPlane@1=10"}));
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_NE(result.error.find("--frames 12"), std::string::npos) << result.error;
}

TEST_F(RackFocus, keysThatAreNoValues_areRefusedBeforeAnythingIsRendered) {
  for (const char* setting :
       {"focalPlane@9=nan", "focalPlane@9=inf", "focalPlane@9=", "correctiveSlices@9=1.5",
        "correctiveSlices@9=1000", "kChrAbbOff@9=1,2", "focalPlaen@9=1"}) {
    const RunResult result = render({"--frames", "1", "--set", setting});
    EXPECT_EQ(result.exitCode, 2) << setting;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  }
  EXPECT_EQ(folder_.entries(), Texts{"in.exr"});
}

}  // namespace
}  // namespace drevintool::testing

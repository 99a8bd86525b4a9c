#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "CommandRun.h"

namespace drevintool::testing {
namespace {

using nlohmann::json;

RunResult controls(std::vector<std::string> more) {
  std::vector<std::string> arguments = {"controls", "--json", "--plugin", builtPlugin()};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return runCommand(arguments);
}

// The control of that name after the changes.
json control(const std::string& name, const std::vector<std::string>& more) {
  const RunResult result = controls(more);
  EXPECT_EQ(result.exitCode, 0) << result.error;
  for (const json& entry : json::parse(result.out)) {
    if (entry["name"] == name) return entry;
  }
  return {};
}

json valueAfter(const std::string& name, const std::string& text) {
  return control(name, {"--set", name + "=" + text})["value"];
}

// The change must be refused with code 2 and one line that holds `piece`.
void expectSettingRefused(const std::string& setting, const std::string& piece) {
  const RunResult result = controls({"--set", setting});
  EXPECT_EQ(result.exitCode, 2) << setting;
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find(piece), std::string::npos) << piece << " in " << result.error;
  EXPECT_EQ(result.out, "");
}

TEST(ControlValues, numbers_areSet) {
  EXPECT_EQ(valueAfter("focalPlane", "2.7"), 2.7);
  EXPECT_EQ(valueAfter("focalPlane", "1e3"), 1000);
  EXPECT_EQ(valueAfter("kNumSides", "5"), 5);
  EXPECT_EQ(valueAfter("multiplier", "0.25"), 0.25) << "a slider range does not force";
}

TEST(ControlValues, booleans_inBothSpellings) {
  for (const char* text : {"1", "true"})
    EXPECT_EQ(valueAfter("realWorldLens", text), true);
  for (const char* text : {"0", "false"})
    EXPECT_EQ(valueAfter("normalizeVisualization", text), false);
  expectSettingRefused("realWorldLens=yes", "true");
}

TEST(ControlValues, choices_byLabelOrIndex) {
  EXPECT_EQ(valueAfter("worldScale", "m"), "m");
  EXPECT_EQ(valueAfter("worldScale", "2"), "m");
  EXPECT_EQ(valueAfter("filmFormat", "16mm"), "16mm");
  EXPECT_EQ(valueAfter("outputType", "Focus Matte"), "Focus Matte");
  expectSettingRefused("filmFormat=Vista Vison", "Vista Vision");
  expectSettingRefused("worldScale=5", "0 to 4");
  expectSettingRefused("worldScale=-1", "0 to 4");
}

TEST(ControlValues, severalValues_byCommas) {
  EXPECT_EQ(valueAfter("depthSlicesNearAndFar", "1,50"), json({1, 50}));
  EXPECT_EQ(valueAfter("kChrAbbOff", "0.5,0.25,1"), json({0.5, 0.25, 1}));
  EXPECT_EQ(valueAfter("kChrAbbOff", "0.5"), json({0.5, 0.5, 0.5}));
  expectSettingRefused("depthSlicesNearAndFar=1", "2 numbers");
  expectSettingRefused("depthSlicesNearAndFar=1,2,3", "2 numbers");
  expectSettingRefused("focalPlane=1,2", "1 number");
}

TEST(ControlValues, channels_byName) {
  EXPECT_EQ(valueAfter("depthChannel", "depth.Z"), "depth.Z");
  EXPECT_EQ(valueAfter("depthChannel", "R"), "rgba.red");
  EXPECT_EQ(valueAfter("depthChannel", "none"), "none");
  EXPECT_EQ(valueAfter("defocusMatteChannel", "mattes.edge"), "mattes.edge");
  expectSettingRefused("depthChannel=", "channel");
}

TEST(ControlValues, channelSets_byNameOrList) {
  EXPECT_EQ(valueAfter("bokehChannels", "all"), "all");
  EXPECT_EQ(valueAfter("bokehChannels", "none"), "none");
  EXPECT_EQ(valueAfter("bokehChannels", "rgb"), valueAfter("bokehChannels", "R,G,B"));
  EXPECT_NE(valueAfter("bokehChannels", "rgb"), valueAfter("bokehChannels", "rgba"));
  expectSettingRefused("bokehChannels=R,all", "alone");
}

TEST(ControlValues, forcedRanges_areNamed) {
  expectSettingRefused("kNumSides=2", "3 to 16");
  expectSettingRefused("kNumSides=17", "3 to 16");
  expectSettingRefused("max_kernelsize=0", "1 to 256");
  expectSettingRefused("correctiveSlices=257", "1 to 256");
  expectSettingRefused("focalLength=-1", "0 to 300");
  expectSettingRefused("bloomCurvature=4.5", "0 to 4");
  expectSettingRefused("kSphAbb=1.01", "-1 to 1");
}

TEST(ControlValues, endsOfForcedRanges_areTaken) {
  EXPECT_EQ(valueAfter("kNumSides", "3"), 3);
  EXPECT_EQ(valueAfter("kNumSides", "16"), 16);
  EXPECT_EQ(valueAfter("focalLength", "300"), 300);
  EXPECT_EQ(valueAfter("kSphAbb", "-1"), -1);
}

TEST(ControlValues, whatIsNoNumber_isRefused) {
  for (const char* text : {"", "x", "1e999", "nan", "inf", "0x10", "1 2", "1e39"}) {
    expectSettingRefused(std::string("focalPlane=") + text, "focalPlane");
  }
  expectSettingRefused("kNumSides=5.5", "whole number");
}

TEST(ControlValues, unknownName_namesTheNearest) {
  expectSettingRefused("focalplane=3", "focalPlane");
  expectSettingRefused("chromaticAberrationMatteChannel=none", "chromicAberrationMatteChannel");
  expectSettingRefused("integrateFrontAndBackSeparately=1", "integrateFrontAndBackSeperately");
  expectSettingRefused("=3", "NAME=VALUE");
}

TEST(ControlValues, filmFormat_fillsAndGreysTheAperturePair) {
  const json width = control("apertureWidth", {"--set", "filmFormat=Vista Vision"});
  EXPECT_EQ(width["value"], 37.7);
  EXPECT_EQ(width["enabled"], false);
  const std::vector<std::string> custom = {"--set", "filmFormat=Vista Vision", "--set",
                                           "filmFormat=Custom"};
  EXPECT_EQ(control("apertureHeight", custom)["value"], 25.17);
  EXPECT_EQ(control("apertureHeight", custom)["enabled"], true);
}

TEST(ControlValues, orderOfSettings_counts) {
  EXPECT_EQ(
      control("apertureWidth", {"--set", "apertureWidth=36", "--set", "filmFormat=16mm"})["value"],
      10.26);
  EXPECT_EQ(
      control("apertureWidth", {"--set", "filmFormat=16mm", "--set", "apertureWidth=36"})["value"],
      36);
}

TEST(ControlValues, camera_greysTheLensControls) {
  const std::vector<std::string> camera = {"--camera", "focalLength=85,fStop=2"};
  for (const char* name :
       {"focalPlane", "focalLength", "fStop", "apertureWidth", "apertureHeight"}) {
    EXPECT_EQ(control(name, camera)["enabled"], false) << name;
  }
}

TEST(ControlValues, cameraThatIsNone_isRefused) {
  for (const char* text :
       {"focalLenght=3", "focalLength", "focalLength=x", "fStop=1e999", "fStop=1,fStop=2", ","}) {
    const RunResult result = controls({"--camera", text});
    EXPECT_EQ(result.exitCode, 2) << text;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  }
  EXPECT_NE(controls({"--camera", "focalLenght=3"}).error.find("focalLength"), std::string::npos);
}

}  // namespace
}  // namespace drevintool::testing

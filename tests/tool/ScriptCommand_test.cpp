#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <map>
#include <nlohmann/json.hpp>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

using Json = nlohmann::json;
using Texts = std::vector<std::string>;

Texts with(Texts texts, const Texts& more) {
  texts.insert(texts.end(), more.begin(), more.end());
  return texts;
}

class Script : public ::testing::Test {
 protected:
  RunResult script(const Texts& more) const {
    return runCommand(with({"script", "--plugin", builtPlugin()}, more));
  }

  RunResult controls(const Texts& more) const {
    return runCommand(with({"controls", "--json", "--plugin", builtPlugin()}, more));
  }

  RunResult controlsFrom(const std::string& text, const Texts& more = {}) const {
    writeBytes(file_, text);
    return controls(with({"--script", file_}, more));
  }

  // Name to value of every control.
  static Json valuesOf(const RunResult& result) {
    EXPECT_EQ(result.exitCode, 0) << result.error;
    Json values = Json::object();
    for (const Json& control : Json::parse(result.out)) {
      if (!control["name"].is_null()) values[control["name"].get<std::string>()] = control["value"];
    }
    return values;
  }

  Json valueFrom(const std::string& line, const std::string& control) const {
    return valuesOf(controlsFrom("Drevin {\n " + line + "\n}\n"))[control];
  }

  std::string warningFrom(const std::string& line) const {
    const RunResult result = controlsFrom("Drevin {\n " + line + "\n}\n");
    EXPECT_EQ(result.exitCode, 0) << result.error;
    const Texts warnings = linesStarting(result.error, "drevin: warning: ");
    EXPECT_EQ(warnings.size(), 1U) << result.error;
    return warnings.empty() ? "" : warnings.front();
  }

  ScratchFolder folder_;
  std::string file_ = folder_.file("a.nk");
};

TEST_F(Script, nodeAsMade_hasNothingButItsName) {
  EXPECT_EQ(script({}).out, "Drevin {\n name Drevin1\n}\n");
  EXPECT_EQ(script({"--name", "Lens_2"}).out, "Drevin {\n name Lens_2\n}\n");
}

TEST_F(Script, changedControls_areInIt) {
  const RunResult result =
      script({"--set", "focalPlane=2.7", "--set", "filmFormat=Vista Vision", "--set",
              "realWorldLens=1", "--set", "kChrAbbOff=0.5,1,0.25", "--set", "bloom=0"});
  EXPECT_EQ(
      result.out,
      "Drevin {\n focalPlane 2.7\n realWorldLens true\n filmFormat \"Vista Vision\"\n"
      " apertureWidth 37.7\n apertureHeight 25.17\n kChrAbbOff {0.5 1 0.25}\n name Drevin1\n}\n");
}

TEST_F(Script, keyedControls_areLinearCurves) {
  const RunResult result =
      script({"--set", "focalPlane@48=24", "--set", "focalPlane@1=2.7", "--set",
              "depthSlicesNearAndFar@1=1,5", "--set", "depthSlicesNearAndFar@9=2,5"});
  EXPECT_NE(result.out.find(" focalPlane {{curve L x1 2.7 x48 24}}\n"), std::string::npos)
      << result.out;
  EXPECT_NE(result.out.find(" depthSlicesNearAndFar {{curve L x1 1 x9 2} {curve L x1 5 x9 5}}\n"),
            std::string::npos)
      << result.out;
}

TEST_F(Script, cameraValues_becomeTheLensControls) {
  const RunResult result =
      script({"--camera",
              "focalLength=50,fStop=1.4,focalPlane=2.7,horizontalAperture=36,verticalAperture="
              "24"});
  const Json values = [&] {
    writeBytes(file_, result.out);
    return valuesOf(controls({"--script", file_}));
  }();
  EXPECT_EQ(values["focalLength"], 50);
  EXPECT_EQ(values["fStop"], 1.4);
  EXPECT_EQ(values["focalPlane"], 2.7);
  EXPECT_EQ(values["filmFormat"], "Custom");
  EXPECT_EQ(values["apertureWidth"], 36);
  EXPECT_EQ(values["apertureHeight"], 24);
}

// A value for a control that is not its default.
std::string otherValue(const Json& control) {
  const Json& value = control["value"];
  const std::string kind = control["kind"];
  if (value.is_boolean()) return value.get<bool>() ? "false" : "true";
  if (control["choices"].is_array()) {
    const Json& choices = control["choices"];
    return choices[choices[0] == value ? 1 : 0].get<std::string>();
  }
  if (kind == "Input_ChannelMask_knob") return "rgba.green,depth.Z,spots.a";
  if (kind.find("Channel") != std::string::npos) return "matte one.x";
  if (kind == "Int_knob") return "7";
  if (value.is_array()) return value.size() == 2 ? "0.1,0.3333333" : "0.1,0.25,0.3333333";
  return "0.7654321";
}

TEST_F(Script, everyControlChanged_readsBackTheSame) {
  Texts changes;
  const Json asMade = Json::parse(controls({}).out);
  int changed = 0;
  for (const Json& control : asMade) {
    if (control["name"].is_null()) continue;
    changes.insert(changes.end(),
                   {"--set", control["name"].get<std::string>() + "=" + otherValue(control)});
    ++changed;
  }
  EXPECT_GT(changed, 35);
  const Json before = valuesOf(controls(changes));
  writeBytes(file_, script(changes).out);
  const RunResult read = controls({"--script", file_});
  EXPECT_EQ(read.error, "");
  EXPECT_EQ(valuesOf(read), before);
  const Json fresh = valuesOf(controls({}));
  for (const auto& [name, value] : before.items())
    EXPECT_NE(value, fresh[name]) << name;
  // And once more, for the text itself.
  const std::string again = script({"--script", file_}).out;
  EXPECT_EQ(again, bytesOfFile(file_));
}

TEST_F(Script, eachControlAlone_readsBackTheSame) {
  for (const Json& control : Json::parse(controls({}).out)) {
    if (control["name"].is_null()) continue;
    const Texts change = {"--set", control["name"].get<std::string>() + "=" + otherValue(control)};
    writeBytes(file_, script(change).out);
    EXPECT_EQ(valuesOf(controls({"--script", file_})), valuesOf(controls(change))) << change[1];
  }
}

TEST_F(Script, keyedControls_readBackAtEveryFrame) {
  const Texts keys = {"--set", "focalPlane@1=2.7", "--set", "focalPlane@4=24",
                      "--set", "multiplier@2=1",   "--set", "multiplier@3=9"};
  writeBytes(file_, script(keys).out);
  EXPECT_EQ(script({"--script", file_}).out, bytesOfFile(file_));
  const std::string input = folder_.file("in.exr");
  writeExrFixture(input, rgbazPart(20, 10, 10.0));
  const auto render = [&](const std::string& output, const Texts& more) {
    return runCommand(renderArguments(input, folder_.file(output), with({"--frames", "1-4"}, more)))
        .exitCode;
  };
  ASSERT_EQ(render("keys.#.exr", keys), 0);
  ASSERT_EQ(render("script.#.exr", {"--script", file_}), 0);
  for (const char* frame : {"1", "2", "3", "4"}) {
    EXPECT_TRUE(bytesOfFile(folder_.file(std::string("keys.") + frame + ".exr")) ==
                bytesOfFile(folder_.file(std::string("script.") + frame + ".exr")))
        << frame;
  }
}

TEST_F(Script, standardInput_isAScript) {
  RunOptions shell;
  shell.command = "/bin/sh";
  const std::string command = std::string("'") + DREVIN_COMMAND + "' ";
  const std::string plugin = " --plugin '" + builtPlugin() + "'";
  const RunResult result = runCommand({"-c", command + "script --set bloom=0.25" + plugin + " | " +
                                                 command + "controls --json --script -" + plugin},
                                      shell);
  EXPECT_EQ(valuesOf(result)["bloom"], 0.25);
}

// The shell opens the pipe both ways, so that neither it nor the command sees the end of it.
TEST_F(Script, signalWhileStandardInputWaits_endsWithItsCode) {
  const std::string pipe = folder_.file("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const std::map<int, int> codes = {{SIGINT, 130}, {SIGTERM, 143}};
  for (const auto& [signal, code] : codes) {
    RunOptions shell;
    shell.command = "/bin/sh";
    shell.signal = signal;
    shell.signalAfterSeconds = 1.5;
    shell.timeoutSeconds = 30.0;
    const RunResult result = runCommand(
        {"-c", std::string("exec '") + DREVIN_COMMAND + "' script --script - --plugin '" +
                   builtPlugin() + "' 0<>'" + pipe + "'"},
        shell);
    EXPECT_EQ(result.exitCode, code) << result.error;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_LT(result.secondsAfterSignal, 10.0);
  }
}

TEST_F(Script, standardInputThatCannotBeRead_endsWith3) {
  RunOptions shell;
  shell.command = "/bin/sh";
  const RunResult result =
      runCommand({"-c", std::string("exec '") + DREVIN_COMMAND + "' script --script - --plugin '" +
                            builtPlugin() + "' < /"},
                 shell);
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find("--script -: Is a directory"), std::string::npos) << result.error;
}

TEST_F(Script, settings_winOverTheScript) {
  const Json values = valuesOf(controlsFrom(
      "Drevin {\n focalPlane {{curve L x1 1 x5 9}}\n bloom 0.5\n}\n", {"--set", "focalPlane=3"}));
  EXPECT_EQ(values["focalPlane"], 3);
  EXPECT_EQ(values["bloom"], 0.5);
}

TEST_F(Script, valuesOfTheHost_areUnderstood) {
  EXPECT_EQ(valueFrom("focalPlane 2.7", "focalPlane"), 2.7);
  EXPECT_EQ(valueFrom("focalPlane {2.7}", "focalPlane"), 2.7);
  EXPECT_EQ(valueFrom("focalPlane {{curve x12 2.7}}", "focalPlane"), 2.7);
  EXPECT_EQ(valueFrom("focalPlane {curve x12 2.7}", "focalPlane"), 2.7);
  EXPECT_EQ(valueFrom("kChrAbbOff 0.5", "kChrAbbOff"), Json({0.5, 0.5, 0.5}));
  EXPECT_EQ(valueFrom("kChrAbbOff {0.5 {curve x1 2} 1}", "kChrAbbOff"), Json({0.5, 2, 1}));
  EXPECT_EQ(valueFrom("filmFormat \"Super 35mm\"", "filmFormat"), "Super 35mm");
  EXPECT_EQ(valueFrom("filmFormat 3", "filmFormat"), "Super 35mm");
  EXPECT_EQ(valueFrom("realWorldLens true", "realWorldLens"), true);
  EXPECT_EQ(valueFrom("depthChannel depth.Z", "depthChannel"), "depth.Z");
  EXPECT_EQ(valueFrom("depthChannel {other.z}", "depthChannel"), "other.z");
  EXPECT_EQ(valueFrom("bokehChannels {rgba.red rgba.green -rgba.blue}", "bokehChannels"),
            "rgba.red,rgba.green");
  EXPECT_EQ(valueFrom("correctiveSlices 1000", "correctiveSlices"), 256);
}

TEST_F(Script, valuesThatTheControlCuts_areNamedWithWhatIsUsed) {
  const auto cut = [&](const char* line, const char* text) {
    const std::string warning = warningFrom(line);
    EXPECT_NE(warning.find(text), std::string::npos) << warning;
  };
  cut("focalLength 700", "focalLength: 700 is out of range; 300 is used");
  cut("focalLength 300.5", "focalLength: 300.5 is out of range; 300 is used");
  cut("correctiveSlices 9999", "correctiveSlices: 9999 is out of range; 256 is used");
  cut("kNumSides 3.9", "kNumSides: 3.9 is no whole number; 3 is used");
  cut("kNumSides {{curve x4 200}}", "kNumSides: 200 is out of range; 16 is used");
  EXPECT_EQ(controlsFrom("Drevin {\n focalLength 300\n kNumSides 16\n fStop 700\n}\n").error, "");
}

TEST_F(Script, keysThatTheControlCuts_areNamedOnceAndPrintedAsUsed) {
  writeBytes(file_, "Drevin {\n kNumSides {{curve K x1 3.7 x5 200}}\n}\n");
  const RunResult steps = script({"--script", file_});
  EXPECT_NE(steps.out.find(" kNumSides {{curve K x1 3 x5 16}}\n"), std::string::npos) << steps.out;
  EXPECT_EQ(linesStarting(steps.error, "drevin: warning: ").size(), 1U) << steps.error;
  // On the way to 200 the control is at its end before frame 5: the line itself must stay.
  writeBytes(file_, "Drevin {\n kNumSides {{curve L x1 3.5 x5 200}}\n}\n");
  const RunResult line = script({"--script", file_});
  EXPECT_NE(line.out.find(" kNumSides {{curve L x1 3.5 x5 200}}\n"), std::string::npos) << line.out;
  EXPECT_NE(line.error.find("kNumSides: 200 is out of range; 16 is used"), std::string::npos)
      << line.error;
  EXPECT_EQ(linesStarting(line.error, "drevin: warning: ").size(), 1U) << line.error;
}

TEST_F(Script, filmBackOfTheScript_staysAsItIs) {
  EXPECT_EQ(valueFrom("filmFormat \"Vista Vision\"", "apertureWidth"), 22);
  EXPECT_EQ(valueFrom("apertureWidth 11\n filmFormat \"Vista Vision\"", "apertureWidth"), 11);
}

TEST_F(Script, whatTheHostKeepsForItself_isNotToldOf) {
  const RunResult result = controlsFrom(
      "Drevin {\n inputs 2+1\n name A\n xpos 1\n ypos 2\n selected true\n tile_color 0xff00\n"
      " label \"my \\[value x]\"\n addUserKnob {20 User l \"a b\" +STARTLINE}\n disable "
      "false\n}\n");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.error, "");
}

TEST_F(Script, unknownKnobs_areNamed) {
  EXPECT_NE(warningFrom("focusing 3").find("focusing: is no control"), std::string::npos);
  EXPECT_NE(warningFrom("disable true").find("disable"), std::string::npos);
}

TEST_F(Script, expressions_areNamedWithWhatIsUsed) {
  for (const char* line :
       {"focalPlane {{parent.Camera1.focal_point}}", "focalPlane {{frame/2}}",
        "focalPlane \"frame * 2\"", "focalPlane {{curve+1}}", "focalPlane {{\"curve + 1\" x1 2}}",
        "focalPlane {1 2}", "focalPlane {\"curve}", "focalPlane {{\"curve x1 2}}",
        "focalPlane \"\\\"curve\"", "focalPlane {}", "focalPlane"}) {
    const std::string warning = warningFrom(line);
    EXPECT_NE(warning.find("focalPlane"), std::string::npos) << warning;
    EXPECT_NE(warning.find("default 100 is used"), std::string::npos) << warning;
  }
  EXPECT_NE(warningFrom("kChrAbbOff {0.5 {frame} 1}").find("kChrAbbOff"), std::string::npos);
  EXPECT_NE(warningFrom("kChrAbbOff {{frame}}").find("kChrAbbOff"), std::string::npos);
  EXPECT_NE(warningFrom("realWorldLens {{frame}}").find("default false"), std::string::npos);
  EXPECT_NE(warningFrom("filmFormat {{frame}}").find("default 35mm"), std::string::npos);
}

TEST_F(Script, smoothCurves_areNamedAndStraightened) {
  const std::string input = folder_.file("in.exr");
  writeExrFixture(input, rgbazPart(20, 10, 10.0));
  writeBytes(file_, "Drevin {\n focalPlane {{curve x1 10 x3 20}}\n}\n");
  const RunResult result = runCommand(
      renderArguments(input, folder_.file("o.#.exr"),
                      {"--script", file_, "--frames", "2", "--report", folder_.file("r.#.json")}));
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(linesStarting(result.error, "drevin: warning: ").size(), 1U) << result.error;
  EXPECT_NE(result.error.find("focalPlane: is smooth"), std::string::npos) << result.error;
  const Json report = Json::parse(bytesOfFile(folder_.file("r.2.json")));
  EXPECT_EQ(report["controls"]["focalPlane"]["value"], 15);
  EXPECT_EQ(report["warnings"].size(), 1U);
}

TEST_F(Script, curvesWithoutAFrame_nameTheRemedy) {
  const RunResult result = controlsFrom("Drevin {\n focalPlane {{curve L x1 1 x2 2}}\n}\n");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_NE(result.error.find("--frames"), std::string::npos) << result.error;
}

TEST_F(Script, labelThatThereIsNot_endsWith3) {
  const RunResult result = controlsFrom("Drevin {\n filmFormat Imaginary\n}\n");
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find("Vista Vision"), std::string::npos) << result.error;
}

TEST_F(Script, severalNodes_areChosenByName) {
  const std::string two =
      "Drevin {\n name One\n bloom 0.25\n}\nDrevin {\n name Two\n bloom 0.5\n}\n";
  EXPECT_EQ(valuesOf(controlsFrom(two, {"--node", "Two"}))["bloom"], 0.5);
  for (const Texts& more : {Texts{}, Texts{"--node", "Tow"}}) {
    const RunResult result = controlsFrom(two, more);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_NE(result.error.find("One, Two"), std::string::npos) << result.error;
  }
}

TEST_F(Script, nameOfTheScriptsNode_staysUnlessAnotherIsGiven) {
  writeBytes(file_, "Drevin {\n name One\n}\nDrevin {\n name Two\n bloom 0.5\n}\n");
  EXPECT_EQ(script({"--script", file_, "--node", "Two"}).out,
            "Drevin {\n bloom 0.5\n name Two\n}\n");
  EXPECT_EQ(script({"--script", file_, "--node", "Two", "--name", "Three"}).out,
            "Drevin {\n bloom 0.5\n name Three\n}\n");
  writeBytes(file_, "Drevin {\n bloom 0.5\n}\n");
  EXPECT_EQ(script({"--script", file_}).out, "Drevin {\n bloom 0.5\n name Drevin1\n}\n");
}

TEST_F(Script, clones_areRefusedWhereOnlyTheyWouldDo) {
  const std::string clone = "clone node1|Drevin {\n name Copy\n}\n";
  const std::string node = "Drevin {\n name One\n bloom 0.25\n}\n";
  for (const auto& [text, more] : std::vector<std::pair<std::string, Texts>>{
           {clone, {}}, {clone, {"--node", "Copy"}}, {node + clone, {"--node", "Copy"}}}) {
    const RunResult result = controlsFrom(text, more);
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_NE(result.error.find("is a clone"), std::string::npos) << result.error;
  }
  EXPECT_EQ(valuesOf(controlsFrom(node + clone))["bloom"], 0.25);
  EXPECT_EQ(valuesOf(controlsFrom(node + clone, {"--node", "One"}))["bloom"], 0.25);
  EXPECT_EQ(controlsFrom(node + clone, {"--node", "Two"}).exitCode, 2);
}

TEST_F(Script, nameWithAPlaceForTheFrame_isRefusedUnlessAFileHasIt) {
  for (const char* name : {"s.####.nk", "s.%04d.nk", "%V/s.nk"}) {
    const RunResult result = controls({"--script", folder_.file(name)});
    EXPECT_EQ(result.exitCode, 2) << name;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_NE(result.error.find(std::string(name) + ": one script is for all frames"),
              std::string::npos)
        << result.error;
  }
  writeBytes(folder_.file("s.####.nk"), "Drevin {\n multiplier 3\n}\n");
  EXPECT_EQ(valuesOf(controls({"--script", folder_.file("s.####.nk")}))["multiplier"], 3.0);
}

TEST_F(Script, folder_isNoScript) {
  const RunResult result = controls({"--script", folder_.path()});
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_NE(result.error.find("is a directory, not a script"), std::string::npos) << result.error;
}

TEST_F(Script, manyNodes_areNamedAsFarAsALineBears) {
  std::string many = "Drevin {\n name " + std::string(100000, 'x') + "\n}\n";
  for (int i = 1; i < 50000; ++i)
    many += "Drevin {\n name D" + std::to_string(i) + "\n}\n";
  for (const Texts& more : {Texts{}, Texts{"--node", "Two"}}) {
    const RunResult result = controlsFrom(many, more);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_NE(result.error.find("xxx..., D1, D2, "), std::string::npos);
    EXPECT_NE(result.error.find(" and 49980 more"), std::string::npos);
    EXPECT_LT(result.error.size(), 500U);
  }
}

TEST_F(Script, filesThatHoldNoNode_endWith3) {
  for (const char* text :
       {"", "Blur {\n size 3\n}\n", "Drevin {\n bloom 1\n", "Drevin {\n a \"\n}"}) {
    const RunResult result = controlsFrom(text);
    EXPECT_EQ(result.exitCode, 3) << text;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  }
  const RunResult missing = controls({"--script", folder_.file("none.nk")});
  EXPECT_EQ(missing.exitCode, 3);
}

TEST_F(Script, nodesOfOneNameInGroups_areChosenWithTheGroups) {
  const std::string two =
      "Group {\n inputs 0\n name A\n}\n Drevin {\n  multiplier 3\n  name Drevin1\n }\nend_group\n"
      "Group {\n name B\n}\n LiveGroup {\n name C\n}\n  Drevin {\n  multiplier 7\n  name Drevin1\n"
      " }\n end_group\nend_group\n";
  const RunResult all = controlsFrom(two);
  EXPECT_EQ(all.exitCode, 2);
  EXPECT_NE(all.error.find("choose with --node: A.Drevin1, B.C.Drevin1"), std::string::npos)
      << all.error;
  EXPECT_EQ(valuesOf(controlsFrom(two, {"--node", "A.Drevin1"}))["multiplier"], 3.0);
  EXPECT_EQ(valuesOf(controlsFrom(two, {"--node", "B.C.Drevin1"}))["multiplier"], 7.0);
  const RunResult either = controlsFrom(two, {"--node", "Drevin1"});
  EXPECT_EQ(either.exitCode, 2);
  EXPECT_NE(either.error.find("several nodes called Drevin1"), std::string::npos) << either.error;
  const std::string outside = two + "Drevin {\n multiplier 9\n name Drevin1\n}\n";
  EXPECT_EQ(valuesOf(controlsFrom(outside, {"--node", "Drevin1"}))["multiplier"], 9.0);
  EXPECT_EQ(valuesOf(controlsFrom(outside, {"--node", "A.Drevin1"}))["multiplier"], 3.0);
  EXPECT_EQ(script({"--script", file_, "--node", "A.Drevin1"}).out,
            "Drevin {\n multiplier 3\n name Drevin1\n}\n");
}

TEST_F(Script, nodeInAGroup_needsNoGroupWhereItsNameIsTheOnlyOne) {
  const std::string two =
      "Group {\n name A\n}\n Drevin {\n  multiplier 3\n  name One\n }\nend_group\n"
      "Drevin {\n multiplier 7\n name Two\n}\n";
  EXPECT_EQ(valuesOf(controlsFrom(two, {"--node", "One"}))["multiplier"], 3.0);
  EXPECT_EQ(valuesOf(controlsFrom(two, {"--node", "A.One"}))["multiplier"], 3.0);
  EXPECT_EQ(controlsFrom(two, {"--node", "A.Two"}).exitCode, 2);
}

TEST_F(Script, nodesOfOneWholeName_areChosenByTheirLines) {
  const std::string two =
      "Drevin {\n multiplier 3\n name One\n}\nDrevin {\n multiplier 7\n name One\n}\n";
  for (const Texts& more : {Texts{}, Texts{"--node", "One"}}) {
    const RunResult result = controlsFrom(two, more);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_NE(result.error.find("choose with --node: line 1, line 5"), std::string::npos)
        << result.error;
  }
  EXPECT_EQ(valuesOf(controlsFrom(two, {"--node", "line 5"}))["multiplier"], 7.0);
}

TEST_F(Script, whatIsSoOfSeveralComponents_isToldOnce) {
  const std::string smooth = "{curve x1 2 x5 4 x9 1}";
  writeBytes(file_, "Drevin {\n kChrAbbOff {" + smooth + " 1 " + smooth + "}\n}\n");
  const RunResult result = script({"--script", file_});
  EXPECT_EQ(result.exitCode, 0) << result.error;
  const Texts warnings = linesStarting(result.error, "drevin: warning: ");
  ASSERT_EQ(warnings.size(), 1U) << result.error;
  EXPECT_NE(warnings[0].find("is smooth between its keys"), std::string::npos) << warnings[0];
}

TEST_F(Script, pictureToFocusIn_isNamedAsElsewhere) {
  const std::string input = folder_.file("take#@%d.exr");
  writeExrFixture(input, rgbazPart(20, 10, 12.5));
  const RunResult result =
      script({"--input", folder_.file("take\\#\\@\\%d.exr"), "--focus-at", "5,5"});
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_NE(result.out.find("focalPlane 12.5"), std::string::npos) << result.out;
  for (const std::string option : {"--input", "--deep"}) {
    const RunResult place = script({option, input, "--focus-at", "5,5"});
    EXPECT_EQ(place.exitCode, 2);
    EXPECT_EQ(place.error.rfind("drevin: error: " + option, 0), 0U) << place.error;
    EXPECT_NE(place.error.find("name the file of one frame"), std::string::npos) << place.error;
  }
}

TEST_F(Script, nodeWithoutAScript_isAUsageFault) {
  EXPECT_EQ(controls({"--node", "One"}).exitCode, 2);
  EXPECT_EQ(controls({"--script", ""}).exitCode, 2);
  EXPECT_EQ(script({"--name", "no name"}).exitCode, 2);
}

TEST_F(Script, channelThatThePictureLacks_endsWith3) {
  const std::string input = folder_.file("in.exr");
  writeExrFixture(input, rgbazPart(20, 10, 10.0));
  writeBytes(file_, "Drevin {\n depthChannel other.Z\n}\n");
  const RunResult result =
      runCommand(renderArguments(input, folder_.file("o.exr"), {"--script", file_}));
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_NE(result.error.find("other.Z"), std::string::npos) << result.error;
}

TEST_F(Script, channelsInQuotesThatDoNotEnd_areRefusedWithTheControl) {
  for (const char* line : {R"(bokehChannels {"})", R"(bokehChannels {rgba.red "x})"}) {
    const RunResult result = controlsFrom("Drevin {\n " + std::string(line) + "\n}\n");
    EXPECT_EQ(result.exitCode, 3) << line;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_NE(result.error.find(file_ + ": "), std::string::npos) << result.error;
    EXPECT_NE(result.error.find("bokehChannels"), std::string::npos) << result.error;
  }
}

}  // namespace
}  // namespace drevintool::testing

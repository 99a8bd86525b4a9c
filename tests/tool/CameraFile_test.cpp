#include "controls/CameraFile.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "Refusal.h"
#include "ScratchFolder.h"
#include "terminal/ExitCode.h"

namespace drevintool::testing {
namespace {

using Json = nlohmann::json;

class CameraFile : public ::testing::Test {
 protected:
  std::map<std::string, ControlCurve> read(const std::string& text) const {
    writeBytes(file_, text);
    return readCameraFile(file_);
  }

  std::string faultOf(const std::string& text) const {
    try {
      read(text);
    } catch (const ToolError& error) {
      EXPECT_EQ(error.code(), ExitCode::InputUnreadable) << text;
      EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos);
      return error.what();
    }
    ADD_FAILURE() << "no failure: " << text;
    return {};
  }

  // Refused by a render, soon and in little memory, in a line of a sane length.
  void expectCheapRefusal(const std::string& text, const std::string& piece) const {
    writeBytes(file_, text);
    const std::string input = folder_.file("in.exr");
    writeExrFixture(input, rgbazPart(20, 10, 15.0));
    const auto arguments = renderArguments(input, folder_.file("out.exr"), {"--camera", file_});
    expectRefused(arguments, 3, {file_, piece});
    const RunResult result = runCommand(arguments);
    EXPECT_LT(result.error.size(), 500U);
    EXPECT_LT(result.processorSeconds, DREVIN_SANITIZED ? 20.0 : 1.0);
    EXPECT_LT(result.peakKibibytes, DREVIN_SANITIZED ? 2 << 20 : 200 << 10);
  }

  ScratchFolder folder_;
  std::string file_ = folder_.file("camera.json");
};

TEST_F(CameraFile, numbers_areTheSameAtEveryFrame) {
  const auto curves = read("{\"focalLength\": 50, \"fStop\": 1.4}");
  ASSERT_EQ(curves.size(), 2U);
  EXPECT_EQ(curves.at("focalLength").at(-7), 50.0);
  EXPECT_FALSE(curves.at("fStop").varies());
}

TEST_F(CameraFile, objectsAndArrays_areKeysByFrame) {
  const auto curves =
      read("{\"focalPlane\": {\"48\": 24, \"1\": 1}, \"fStop\": [[10, 4], [-10, 2]]}");
  EXPECT_EQ(curves.at("focalPlane").at(24.5), 12.5);
  EXPECT_EQ(curves.at("focalPlane").at(100), 24.0);
  EXPECT_EQ(curves.at("fStop").at(0), 3.0);
}

TEST_F(CameraFile, folderInItsPlace_saysWhatIsWanted) {
  const ScratchFolder folder;
  writeExrFixture(folder.file("in.exr"), rgbazPart(8, 6, 1.0));
  expectRefused(renderArguments(folder.file("in.exr"), folder.file("out.exr"),
                                {"--camera", folder.path() + "/"}),
                3, {folder.path(), "is a directory, not a JSON file of a camera's values"});
}

TEST_F(CameraFile, unknownKey_namesTheNearest) {
  EXPECT_NE(faultOf("{\"focalLenght\": 50}").find("did you mean focalLength?"), std::string::npos);
}

TEST_F(CameraFile, valuesThatAreNone_nameTheirKey) {
  for (const char* value : {"\"50\"", "null", "true", "{}", "[]", "[1, 2]", "[[1]]", "[[1, 2, 3]]",
                            "{\"a\": 1}", "{\"\": 1}", "[[1, \"2\"]]", "[[\"1\", 2]]", "1e99",
                            "[[1, 2], [1, 3]]", "{\"1\": 2, \"1.0\": 3}", "[[1e30, 1]]"}) {
    const std::string line = faultOf(std::string("{\"fStop\": ") + value + "}");
    EXPECT_NE(line.find("fStop: "), std::string::npos) << line;
  }
}

TEST_F(CameraFile, filesThatAreNoCamera_areRefused) {
  for (const char* text :
       {"", "{", "[]", "3", "{}", "{\"fStop\": nan}", "{\"fStop\": 1e999}", "{\"fStop\": 1} x"}) {
    EXPECT_NE(faultOf(text).find(file_), std::string::npos);
  }
  EXPECT_NE(faultOf(std::string(100000, '[')).find("no JSON"), std::string::npos);
}

TEST_F(CameraFile, keysGivenTwice_areRefused) {
  EXPECT_NE(faultOf("{\"fStop\": 1, \"fStop\": 2}").find("fStop is given twice"),
            std::string::npos);
  EXPECT_NE(faultOf("{\"fStop\": {\"1\": 1, \"1\": 2}}").find("fStop: has two keys at frame 1"),
            std::string::npos);
}

TEST_F(CameraFile, damage_namesItsLine) {
  const std::string line = faultOf("{\n\"fStop\": 1,\n\n x\n}");
  EXPECT_NE(line.find("is no JSON from line 4, character 2 on"), std::string::npos) << line;
  EXPECT_NE(faultOf("[").find("no JSON object"), std::string::npos);
  EXPECT_NE(faultOf("{x").find("line 1, character 2 on"), std::string::npos);
}

TEST_F(CameraFile, moreThanTheMostBytes_areRefusedCheaply) {
  expectCheapRefusal(std::string(60U << 20U, '['), "is larger than 4 MiB");
  expectCheapRefusal(std::string(kMostCameraBytes + 1, ' '), "is larger than 4 MiB");
}

TEST_F(CameraFile, nesting_isRefusedWhereItBeginsToBeTooDeep) {
  const std::string deep(kMostCameraBytes - 100, '[');
  expectCheapRefusal(deep, "is no JSON object");
  expectCheapRefusal("{\"fStop\": " + deep, "fStop: a list is no number");
  expectCheapRefusal("{\"fStop\": {\"1\": " + deep, "fStop: a list is no number");
  std::string objects = "{\"fStop\": {\"1\": ";
  for (int i = 0; i < 500000; ++i)
    objects += "{\"1\":";
  expectCheapRefusal(objects, "fStop: an object is no number");
}

TEST_F(CameraFile, longNamesAndTexts_areCutInMessages) {
  const std::string text(1000000, 'x');
  expectCheapRefusal("{\"" + text + "\": 1}", "no key 'xxx");
  expectCheapRefusal("{\"fStop\": [[1, \"" + text + "\"]]}", "xxx...\" is no number");
  expectCheapRefusal("{\"fStop\": 1, " + text, "is no JSON");
}

TEST_F(CameraFile, asManyKeysAsFit_areAResult) {
  std::string keys = "{\"focalPlane\": {\"1\": 10";
  for (int frame = 2; keys.size() < kMostCameraBytes - 100; ++frame)
    keys += ",\"" + std::to_string(frame) + "\":20";
  const auto curves = read(keys + "}}");
  EXPECT_GT(curves.at("focalPlane").keys().size(), 300000U);
  EXPECT_EQ(curves.at("focalPlane").at(1.5), 15.0);
}

TEST_F(CameraFile, keys_areRenderedFrameByFrame) {
  writeBytes(file_,
             "{\"focalLength\": 50, \"fStop\": 2, \"focalPlane\": {\"1\": 10, \"3\": 20}, "
             "\"horizontalAperture\": 36, \"verticalAperture\": 24}");
  const std::string input = folder_.file("in.exr");
  writeExrFixture(input, rgbazPart(40, 30, 15.0));
  const std::vector<std::string> lens = {"--set", "realWorldLens=1", "--set", "worldScale=m"};
  std::vector<std::string> more = {"--camera", file_,      "--frames",
                                   "1-3",      "--report", folder_.file("r.#.json")};
  more.insert(more.end(), lens.begin(), lens.end());
  const RunResult result = runCommand(renderArguments(input, folder_.file("file.#.exr"), more));
  ASSERT_EQ(result.exitCode, 0) << result.error;
  const Json report = Json::parse(bytesOfFile(folder_.file("r.2.json")));
  EXPECT_EQ(report["camera"]["focalPlane"]["value"], 15.0);
  EXPECT_EQ(report["camera"]["focalPlane"]["unit"], "scene units");
  EXPECT_EQ(report["camera"]["focalPlane"]["from"], file_);
  std::vector<std::string> plain = {"--camera",
                                    "focalLength=50,fStop=2,focalPlane=20,horizontalAperture=36,"
                                    "verticalAperture=24"};
  plain.insert(plain.end(), lens.begin(), lens.end());
  ASSERT_EQ(runCommand(renderArguments(input, folder_.file("plain.exr"), plain)).exitCode, 0);
  EXPECT_TRUE(bytesOfFile(folder_.file("plain.exr")) == bytesOfFile(folder_.file("file.3.exr")));
}

TEST_F(CameraFile, keysWithoutAFrame_nameTheRemedy) {
  writeBytes(file_, "{\"focalPlane\": {\"1\": 10, \"3\": 20}}");
  const RunResult result = runCommand({"controls", "--plugin", builtPlugin(), "--camera", file_});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_NE(result.error.find("--frames"), std::string::npos) << result.error;
}

TEST_F(CameraFile, pathWithAPlace_isReadForEachFrame) {
  writeBytes(folder_.file("camera.1.json"), "{\"focalPlane\": 5}");
  writeBytes(folder_.file("camera.2.json"), "{\"focalPlane\": 7}");
  const std::string input = folder_.file("in.exr");
  writeExrFixture(input, rgbazPart(20, 10, 15.0));
  const RunResult result =
      runCommand(renderArguments(input, folder_.file("o.#.exr"),
                                 {"--camera", folder_.file("camera.#.json"), "--frames", "1-3",
                                  "--skip-bad-frames", "--report", folder_.file("r.#.json")}));
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(linesStarting(result.error, "drevin: error: frame 3: ").size(), 1U) << result.error;
  EXPECT_EQ(Json::parse(bytesOfFile(folder_.file("r.2.json")))["camera"]["focalPlane"]["value"], 7);
}

TEST_F(CameraFile, missingFile_endsWith3) {
  const RunResult result =
      runCommand({"controls", "--plugin", builtPlugin(), "--camera", folder_.file("no.json")});
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
}

TEST_F(CameraFile, scriptOfAKeyedCamera_hasCurves) {
  writeBytes(file_, "{\"focalPlane\": {\"1\": 2.7, \"48\": 24}, \"fStop\": 1.4}");
  const RunResult result = runCommand({"script", "--plugin", builtPlugin(), "--camera", file_});
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_NE(result.out.find(" focalPlane {{curve L x1 2.7 x48 24}}\n"), std::string::npos)
      << result.out;
  EXPECT_NE(result.out.find(" fStop 1.4\n"), std::string::npos) << result.out;
}

}  // namespace
}  // namespace drevintool::testing

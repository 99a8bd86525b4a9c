#include "controls/CameraFile.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CommandRun.h"
#include "ExrFixture.h"
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

#include "controls/HeaderCamera.h"

#include <OpenEXR/ImfChannelList.h>
#include <OpenEXR/ImfDoubleAttribute.h>
#include <OpenEXR/ImfFloatAttribute.h>
#include <OpenEXR/ImfFrameBuffer.h>
#include <OpenEXR/ImfIntAttribute.h>
#include <OpenEXR/ImfOutputFile.h>
#include <OpenEXR/ImfRationalAttribute.h>
#include <OpenEXR/ImfStringAttribute.h>
#include <OpenEXR/ImfVecAttribute.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>

#include "CommandRun.h"
#include "RealPictures.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

using Texts = std::vector<std::string>;

class HeaderCamera : public ::testing::Test {
 protected:
  void number(const char* name, float value) { header_.insert(name, Imf::FloatAttribute(value)); }
  void text(const char* name, const char* value) {
    header_.insert(name, Imf::StringAttribute(value));
  }
  std::map<std::string, CameraFinding> found(double metresPerUnit = 1.0) const {
    return findHeaderCamera(header_, {2000, 1000, 1.0}, metresPerUnit);
  }
  // -1 where nothing was found.
  double value(const char* key) const {
    const auto findings = found();
    const auto finding = findings.find(key);
    return finding == findings.end() ? -1.0 : finding->second.value;
  }

  Imf::Header header_;
};

TEST_F(HeaderCamera, standardAttributes_areRead) {
  number("effectiveFocalLength", 49.5F);
  number("nominalFocalLength", 50.0F);
  number("aperture", 1.4F);
  number("focus", 2.7F);
  header_.insert("sensorOverallDimensions", Imf::V2fAttribute({36.0F, 24.0F}));
  EXPECT_EQ(value("focalLength"), 49.5);
  EXPECT_EQ(value("fStop"), 1.4);
  EXPECT_EQ(value("focalPlane"), 2.7);
  EXPECT_EQ(value("horizontalAperture"), 36.0);
  EXPECT_EQ(value("verticalAperture"), 24.0);
  EXPECT_EQ(found()["focalLength"].from, "effectiveFocalLength");
}

TEST_F(HeaderCamera, standardFocus_isInMetres) {
  number("focus", 2.5F);
  EXPECT_DOUBLE_EQ(found(0.01)["focalPlane"].value, 250.0);
  EXPECT_EQ(found(0.01)["focalPlane"].from, "focus 2.5 m");
  EXPECT_NEAR(found(0.3048)["focalPlane"].value, 8.2021, 1e-4);
}

TEST_F(HeaderCamera, focusOfRenderers_isInSceneUnits) {
  number("camera/focus_distance", 2.5F);
  EXPECT_EQ(found(0.01)["focalPlane"].value, 2.5);
}

TEST_F(HeaderCamera, standardFocus_comesBeforeThatOfRenderers) {
  number("focusDistance", 3.0F);
  number("focus", 2.0F);
  EXPECT_EQ(value("focalPlane"), 2.0);
}

TEST_F(HeaderCamera, photositePitch_timesPixelsIsTheFilmBack) {
  number("sensorPhotositePitch", 5.0F);
  EXPECT_DOUBLE_EQ(value("horizontalAperture"), 10.0);
  EXPECT_DOUBLE_EQ(value("verticalAperture"), 5.0);
}

TEST_F(HeaderCamera, spellings_differInCaseSeparatorsAndFolders) {
  for (const char* name : {"focalLength", "focal_length", "FOCAL-LENGTH", "camera/focal_length",
                           "exr/camera/FocalLength", "cameraFocalLength", "CameraFocalLength",
                           "lens:focalLength", "meta.cam.focal length", "focalLengthMm"}) {
    Imf::Header header;
    header.insert(name, Imf::FloatAttribute(35.0F));
    const auto findings = findHeaderCamera(header, {100, 100, 1.0}, 1.0);
    ASSERT_EQ(findings.count("focalLength"), 1U) << name;
    EXPECT_EQ(findings.at("focalLength").value, 35.0);
    EXPECT_EQ(findings.at("focalLength").from, name);
  }
}

TEST_F(HeaderCamera, filmApertures_areInInches) {
  number("horizontalFilmAperture", 2.0F);
  number("cameraVerticalFilmAperture", 1.0F);
  EXPECT_DOUBLE_EQ(value("horizontalAperture"), 50.8);
  EXPECT_DOUBLE_EQ(value("verticalAperture"), 25.4);
}

TEST_F(HeaderCamera, apertureOfTheCamera_isAFilmBackAndNoFNumber) {
  number("cameraAperture", 36.0F);
  EXPECT_EQ(value("horizontalAperture"), 36.0);
  EXPECT_EQ(value("fStop"), -1.0);
}

TEST_F(HeaderCamera, numbersOfAnyType_areRead) {
  header_.insert("focalLength", Imf::IntAttribute(35));
  header_.insert("fNumber", Imf::RationalAttribute(Imf::Rational(28, 10)));
  header_.insert("focusDistance", Imf::DoubleAttribute(1.25));
  text("sensorWidth", " 36.0 mm");
  EXPECT_EQ(value("focalLength"), 35.0);
  EXPECT_EQ(value("fStop"), 2.8);
  EXPECT_EQ(value("focalPlane"), 1.25);
  EXPECT_EQ(value("horizontalAperture"), 36.0);
}

TEST_F(HeaderCamera, fNumbersInTexts_areRead) {
  text("fStop", "f/2.8");
  EXPECT_EQ(value("fStop"), 2.8);
}

TEST_F(HeaderCamera, valuesThatAreNone_areLeftOut) {
  number("focalLength", 0.0F);
  number("fStop", -2.0F);
  number("focus", std::numeric_limits<float>::quiet_NaN());
  number("focusDistance", std::numeric_limits<float>::infinity());
  text("sensorWidth", "36x24");
  text("filmHeight", "");
  header_.insert("hAperture", Imf::V2fAttribute({1.0F, 2.0F}));
  EXPECT_TRUE(found().empty());
}

TEST_F(HeaderCamera, filmBackWithoutAHeight_hasThePicturesShape) {
  std::map<std::string, CameraFinding> findings = {{"horizontalAperture", {36.0, "a"}}};
  addPictureShape({2000, 1000, 1.0}, findings);
  EXPECT_EQ(findings["verticalAperture"].value, 18.0);
  findings.erase("verticalAperture");
  addPictureShape({2000, 1000, 2.0}, findings);
  EXPECT_EQ(findings["verticalAperture"].value, 9.0);
  findings = {};
  addPictureShape({2000, 1000, 1.0}, findings);
  EXPECT_TRUE(findings.empty());
}

TEST_F(HeaderCamera, focalLengthForAFilmOfWidthOne_isThatOfTheFieldOfView) {
  number("CameraFocalLength", 1.0722535F);
  number("CameraFov", 50.0F);
  auto findings = found();
  EXPECT_EQ(findings.count("focalLength"), 0U);
  addFocalLength(header_, findings);
  EXPECT_EQ(findings.count("focalLength"), 0U) << "no film back";
  findings["horizontalAperture"] = {36.0, "--camera"};
  addFocalLength(header_, findings);
  EXPECT_NEAR(findings["focalLength"].value, 38.6011246, 1e-5);
  EXPECT_EQ(findings["focalLength"].from, "CameraFov 50 degrees");
}

TEST_F(HeaderCamera, focalLengthInMillimetres_comesBeforeTheFieldOfView) {
  number("focalLength", 2.0F);
  number("fov", 50.0F);
  number("filmWidth", 36.0F);
  auto findings = found();
  addFocalLength(header_, findings);
  EXPECT_EQ(findings["focalLength"].value, 2.0);
}

TEST_F(HeaderCamera, shortFocalLengthWithoutAFieldOfView_isTaken) {
  number("focalLength", 1.5F);
  EXPECT_EQ(value("focalLength"), 1.5);
  number("fov", 180.0F);
  EXPECT_EQ(value("focalLength"), 1.5) << "no field of view at all";
}

TEST_F(HeaderCamera, fieldOfViewAlone_givesTheFocalLength) {
  text("exr/camera/horizontal_fov", "90");
  number("filmWidth", 36.0F);
  auto findings = found();
  addFocalLength(header_, findings);
  EXPECT_NEAR(findings["focalLength"].value, 18.0, 1e-6);
}

// Real headers through the command.
class RealHeaderCamera : public ::testing::Test {
 protected:
  RunResult render(const std::string& input, const std::string& camera, const Texts& more) const {
    Texts arguments = {"render",
                       "--plugin",
                       builtPlugin(),
                       "--input",
                       pictureFolder() + input,
                       "--camera",
                       camera,
                       "--output",
                       folder_.file("o.exr"),
                       "--report",
                       folder_.file("r.json")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runCommand(arguments);
  }

  ScratchFolder folder_;
};

TEST_F(RealHeaderCamera, renderedScene_hasItsCamera) {
  SKIP_WITHOUT_PICTURES();
  const RunResult result = render("/meta/cornellBox.cryptomatte.0001.exr", "header",
                                  {"--set", "depthChannel=normals.Z"});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(
      linesStarting(result.error, "drevin: camera: "),
      Texts{"drevin: camera: focalLength 35 mm (cameraFocalLength), fStop 8 (cameraFNumber), "
            "focalPlane 200 scene units (cameraTargetDistance), horizontalAperture 35.999928 mm "
            "(cameraAperture), verticalAperture 20.2499595 mm (cameraAperture and the picture's "
            "shape)"});
  const auto report = nlohmann::json::parse(bytesOfFile(folder_.file("r.json")));
  EXPECT_EQ(report["camera"]["fStop"]["value"], 8.0);
  EXPECT_EQ(report["camera"]["fStop"]["from"], "cameraFNumber");
}

TEST_F(RealHeaderCamera, photograph_lacksItsFocusAndSaysSo) {
  SKIP_WITHOUT_PICTURES();
  const Texts depth = {"--set", "depthChannel=R"};
  const RunResult result = render("/meta/Carrots.exr", "header", depth);
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find("fStop 8 (aperture)"), std::string::npos) << result.error;
  EXPECT_NE(result.error.find("--camera header,focalPlane=...,horizontalAperture=..."),
            std::string::npos)
      << result.error;
  EXPECT_EQ(
      render("/meta/Carrots.exr", "header,focalPlane=0.5,horizontalAperture=36", depth).exitCode,
      0);
}

TEST_F(RealHeaderCamera, focalLengthForAFilmOfWidthOne_isThatOfTheFieldOfView) {
  SKIP_WITHOUT_PICTURES();
  const std::string deep = pictureFolder() + "/deep/fire_and_spikes.volume.exr";
  const auto renderDeep = [&](const std::string& camera) {
    Texts arguments = deepArguments(deep, folder_.file("o.exr"), {"--camera", camera});
    arguments.erase(arguments.begin() + 1);  // --quiet
    return runCommand(arguments);
  };
  const RunResult result = renderDeep("header,fStop=2,horizontalAperture=36,focalPlane=4");
  ASSERT_EQ(result.exitCode, 0) << result.error;
  EXPECT_NE(result.error.find("camera: focalLength 38.60"), std::string::npos) << result.error;
  EXPECT_NE(result.error.find(" mm (CameraFov 50 degrees)"), std::string::npos) << result.error;
  const RunResult refused = renderDeep("header,fStop=2,focalPlane=4");
  EXPECT_EQ(refused.exitCode, 3);
  EXPECT_NE(refused.error.find("lacks the camera's horizontalAperture;"), std::string::npos)
      << refused.error;
  EXPECT_NE(refused.error.find("CameraFov 50 degrees"), std::string::npos) << refused.error;
}

TEST(CameraOption, faultsOfTheText_areUsageFaults) {
  for (const char* camera : {"focalLength", "focalLength=", "focalLength=a", "fStop=1,fStop=2",
                             "f=1", "header,", "header,x=1", "header,fStop", "=", ","}) {
    const RunResult result =
        runCommand({"controls", "--plugin", builtPlugin(), "--camera", camera});
    EXPECT_EQ(result.exitCode, 2) << camera << ": " << result.error;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  }
}

TEST(CameraOption, valuesThatAreNotAboveZero_areUsageFaultsThatNameThem) {
  for (const char* camera : {"focalLength=-50", "fStop=0", "fStop=-1", "focalPlane=0",
                             "horizontalAperture=0", "header,verticalAperture=-0"}) {
    const RunResult result =
        runCommand({"controls", "--plugin", builtPlugin(), "--camera", camera});
    EXPECT_EQ(result.exitCode, 2) << camera << ": " << result.error;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_NE(result.error.find("give a number above 0"), std::string::npos) << result.error;
  }
}

TEST(CameraOption, valuesOfAFileThatAreNotAboveZero_nameTheirFrame) {
  const ScratchFolder folder;
  const std::string file = folder.file("camera.json");
  writeBytes(file, R"({"focalLength": 50, "fStop": {"1": 2.8, "7": 0}})");
  const RunResult result = runCommand({"script", "--plugin", builtPlugin(), "--camera", file});
  EXPECT_EQ(result.exitCode, 2) << result.error;
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find(file + ": fStop is 0 at frame 7; give a number above 0"),
            std::string::npos)
      << result.error;
  writeBytes(file, R"({"fStop": 0.001})");
  EXPECT_EQ(runCommand({"script", "--plugin", builtPlugin(), "--camera", file}).exitCode, 0);
}

TEST(CameraOption, headerWithoutAPicture_isAUsageFault) {
  for (const auto& [command, words] : std::vector<std::pair<std::string, std::string>>{
           {"controls", "reads no picture"}, {"script", "with --input or --deep"}}) {
    const RunResult result = runCommand({command, "--plugin", builtPlugin(), "--camera", "header"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_NE(result.error.find(words), std::string::npos) << result.error;
  }
}

TEST(CameraOption, headerOfAPicture_becomesTheLensControlsOfAScript) {
  const ScratchFolder folder;
  const std::string input = folder.file("in.exr");
  Imf::Header header(20, 10);
  header.insert("effectiveFocalLength", Imf::FloatAttribute(49.5F));
  header.insert("aperture", Imf::FloatAttribute(1.4F));
  header.insert("focus", Imf::FloatAttribute(2.5F));
  header.insert("sensorOverallDimensions", Imf::V2fAttribute({36.0F, 24.0F}));
  header.channels().insert("Z", Imf::Channel(Imf::FLOAT));
  {
    std::vector<float> depths(200, 7.5F);
    Imf::OutputFile file(input.c_str(), header);
    Imf::FrameBuffer buffer;
    buffer.insert("Z", Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(depths.data()), sizeof(float),
                                  20 * sizeof(float)));
    file.setFrameBuffer(buffer);
    file.writePixels(10);
  }
  const Texts arguments = {"script",  "--plugin", builtPlugin(), "--camera",    "header",
                           "--input", input,      "--set",       "worldScale=m"};
  const RunResult result = runCommand(arguments);
  ASSERT_EQ(result.exitCode, 0) << result.error;
  EXPECT_NE(result.out.find(" focalLength 49.5\n"), std::string::npos) << result.out;
  EXPECT_NE(result.out.find(" focalPlane 2.5\n"), std::string::npos) << result.out;
  EXPECT_NE(result.error.find("drevin: camera: focalLength 49.5 mm"), std::string::npos)
      << result.error;
  Texts focused = arguments;
  focused.insert(focused.end(), {"--focus-at", "3,3"});
  const RunResult point = runCommand(focused);
  EXPECT_EQ(point.exitCode, 0) << point.error;
  EXPECT_NE(point.out.find(" focalPlane 7.5\n"), std::string::npos) << point.out;
}

}  // namespace
}  // namespace drevintool::testing

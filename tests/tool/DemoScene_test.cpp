#include "demo/DemoScene.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <cmath>
#include <stdexcept>

#include "CommandRun.h"
#include "ScratchFolder.h"
#include "arguments/Arguments.h"
#include "demo/DemoAperture.h"
#include "demo/DemoCommand.h"
#include "demo/DemoMattes.h"
#include "demo/DemoNeon.h"
#include "demo/DemoRows.h"
#include "demo/DemoSuggestions.h"
#include "picture/ExrReader.h"
#include "sequence/FramePattern.h"
#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

constexpr int kWidth = 240;
constexpr float kBright = 20.0F;

const DemoPicture& scene() {
  static const DemoPicture kScene = renderDemoScene(DemoCamera{}, kWidth);
  return kScene;
}

std::size_t pixelCount(const DemoPicture& picture) {
  return static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
}

// Pixels brighter than 20 in some colour whose depth lies between the two.
int lightsBetween(double from, double to) {
  int count = 0;
  const auto& planes = scene().planes;
  for (std::size_t i = 0; i < pixelCount(scene()); ++i) {
    const float most = std::max({planes.at("R")[i], planes.at("G")[i], planes.at("B")[i]});
    const float z = planes.at("Z")[i];
    if (most > kBright && z > from && z < to) ++count;
  }
  return count;
}

// Planes sum to a share of the whole; the centre of what they hold, as a share of the side.
double centreOfRows(const std::vector<float>& plane, int side) {
  double sum = 0.0;
  double moment = 0.0;
  for (std::size_t i = 0; i < plane.size(); ++i) {
    sum += plane[i];
    moment += plane[i] * (std::floor(static_cast<double>(i) / side) + 0.5);
  }
  return moment / sum / side;
}

TEST(DemoScene, rendering_fillsColourAlphaAndDepthPlanesOfItsSize) {
  EXPECT_EQ(scene().width, kWidth);
  EXPECT_EQ(scene().height, 135);
  ASSERT_EQ(scene().planes.size(), 5U);
  for (const char* name : {"R", "G", "B", "A", "Z"}) {
    EXPECT_EQ(scene().planes.at(name).size(), pixelCount(scene())) << name;
  }
}

TEST(DemoScene, renderingTwice_givesTheSameValues) {
  const DemoPicture again = renderDemoScene(DemoCamera{}, kWidth);
  EXPECT_EQ(again.planes, scene().planes);
}

TEST(DemoScene, colours_areFiniteAndNotNegative) {
  for (const char* name : {"R", "G", "B", "A"}) {
    for (const float value : scene().planes.at(name)) {
      ASSERT_TRUE(std::isfinite(value) && value >= 0.0F) << name << " " << value;
    }
  }
}

TEST(DemoScene, sky_isInfinitelyFarAndNoDepthIsZeroOrUndefined) {
  std::size_t sky = 0;
  for (const float z : scene().planes.at("Z")) {
    ASSERT_FALSE(std::isnan(z));
    ASSERT_GT(z, 1.0F);
    if (std::isinf(z)) ++sky;
  }
  EXPECT_GT(sky, pixelCount(scene()) / 100);
  EXPECT_LT(sky, pixelCount(scene()) / 2);
}

TEST(DemoScene, lightsAboveTwenty_areBeforeAndBehindTheSubject) {
  const double focus = DemoCamera{}.focalPlane;
  EXPECT_GT(lightsBetween(1.0, focus - 1.0), 10);
  EXPECT_GT(lightsBetween(focus + 1.0, 30.0), 10);
  EXPECT_GT(lightsBetween(30.0, 200.0), 10);
}

TEST(DemoScene, subject_coversAGoodPartOfThePictureAtTheFocalPlane) {
  std::size_t inFocus = 0;
  for (const float z : scene().planes.at("Z")) {
    if (std::abs(z - DemoCamera{}.focalPlane) < 0.5) ++inFocus;
  }
  EXPECT_GT(inFocus, pixelCount(scene()) / 5);
}

TEST(DemoScene, focusedPixels_carryNoLightFromBehind) {
  const auto& planes = scene().planes;
  for (std::size_t i = 0; i < pixelCount(scene()); ++i) {
    if (std::abs(planes.at("Z")[i] - DemoCamera{}.focalPlane) > 0.5) continue;
    ASSERT_LT(planes.at("R")[i], 6.0F);
  }
}

TEST(DemoScene, camera_isToldByTheKeysOfTheCameraOption) {
  EXPECT_EQ(
      cameraText(DemoCamera{}),
      "focalLength=85,fStop=1.2,focalPlane=3.85,horizontalAperture=36,verticalAperture=20.25");
}

TEST(DemoScene, project_undoesRay) {
  const DemoCamera camera;
  const DemoPlace place = project(camera, camera.ray(31.25, 77.5, 240, 135).at(7.0), 240, 135);
  EXPECT_NEAR(place.column, 31.25, 1e-9);
  EXPECT_NEAR(place.row, 77.5, 1e-9);
}

TEST(DemoRows, everyRow_isWorkedOnOnce) {
  std::vector<int> visits(100, 0);
  forDemoRows(100, [&](int row) { ++visits[static_cast<std::size_t>(row)]; });
  EXPECT_EQ(visits, std::vector<int>(100, 1));
}

TEST(DemoRows, everyNumberOfThreads_doesAllRows) {
  for (const unsigned threads : {1U, 2U, 7U, 1000U}) {
    std::vector<int> visits(10, 0);
    forDemoRows(
        10, [&](int row) { ++visits[static_cast<std::size_t>(row)]; }, threads);
    EXPECT_EQ(visits, std::vector<int>(10, 1)) << threads;
  }
}

TEST(DemoRows, failureOfARow_isThrownToTheCaller) {
  const auto failing = [](int row) {
    if (row == 3) throw std::runtime_error("row 3");
  };
  for (const unsigned threads : {1U, 4U})
    EXPECT_THROW(forDemoRows(10, failing, threads), std::runtime_error) << threads;
}

TEST(DemoMattes, values_lieBetweenZeroAndOneAndUseBothEnds) {
  const DemoPicture mattes = makeDemoMattes(scene(), DemoCamera{});
  ASSERT_EQ(mattes.planes.size(), 3U);
  for (const auto& [name, plane] : mattes.planes) {
    ASSERT_EQ(plane.size(), pixelCount(scene())) << name;
    const auto [least, most] = std::minmax_element(plane.begin(), plane.end());
    EXPECT_GE(*least, 0.0F) << name;
    EXPECT_LT(*least, 0.01F) << name;
    EXPECT_GT(*most, 0.95F) << name;
    EXPECT_LE(*most, 1.0F) << name;
  }
}

TEST(DemoMattes, neonSign_isKeptFromDefocusing) {
  const DemoPicture mattes = makeDemoMattes(scene(), DemoCamera{});
  const DemoPlace sign = project(DemoCamera{}, kDemoNeonCentre, scene().width, scene().height);
  const auto i =
      static_cast<std::size_t>(sign.row) * kWidth + static_cast<std::size_t>(sign.column);
  EXPECT_EQ(mattes.planes.at("matte.defocus")[i], 0.0F);
  EXPECT_EQ(mattes.planes.at("matte.defocus")[0], 1.0F);
}

TEST(DemoAperture, picture_isSquareAndAsLargeAsTheLargestKernel) {
  const DemoPicture aperture = makeDemoAperture();
  EXPECT_EQ(aperture.width, aperture.height);
  EXPECT_GE(aperture.width, 256);
  for (const auto& [name, plane] : aperture.planes) {
    ASSERT_EQ(plane.size(), pixelCount(aperture)) << name;
    const auto [least, most] = std::minmax_element(plane.begin(), plane.end());
    EXPECT_EQ(*least, 0.0F) << name;
    EXPECT_GT(*most, 0.75F) << name;
    EXPECT_LE(*most, 1.0F) << name;
  }
}

TEST(DemoAperture, hearts_lieSideBySideInTheOrderOfTheirColours) {
  const DemoPicture aperture = makeDemoAperture();
  const auto middle = [&](const char* name) {
    double sum = 0.0;
    double moment = 0.0;
    const std::vector<float>& plane = aperture.planes.at(name);
    for (std::size_t i = 0; i < plane.size(); ++i) {
      sum += plane[i];
      moment += plane[i] * static_cast<double>(i % static_cast<std::size_t>(aperture.width));
    }
    return moment / sum / aperture.width;
  };
  EXPECT_NEAR(middle("G") - middle("R"), 0.02, 0.002);
  EXPECT_NEAR(middle("B") - middle("G"), 0.02, 0.002);
}

// Light that a channel passes, told from samples x samples places as a kernel of that side has.
double lightThrough(const DemoPicture& aperture, const char* name, int samples) {
  double sum = 0.0;
  for (int row = 0; row < samples; ++row) {
    for (int column = 0; column < samples; ++column) {
      const int x = (2 * column + 1) * aperture.width / (2 * samples);
      const int y = (2 * row + 1) * aperture.height / (2 * samples);
      const int index = y * aperture.width + x;
      sum += aperture.planes.at(name)[static_cast<std::size_t>(index)];
    }
  }
  return sum;
}

TEST(DemoAperture, everyChannel_passesTheSameLightAtAnySize) {
  const DemoPicture aperture = makeDemoAperture();
  for (const int samples : {1, 3, 5, 7, 21, 512}) {
    const double green = lightThrough(aperture, "G", samples);
    for (const char* name : {"R", "B", "A"}) {
      EXPECT_NEAR(lightThrough(aperture, name, samples) / green, 1.0, 0.07) << name << samples;
    }
  }
}

TEST(DemoAperture, heart_standsOnItsHeadAndClearOfTheBorder) {
  const DemoPicture aperture = makeDemoAperture();
  const std::vector<float>& red = aperture.planes.at("R");
  const int side = aperture.width;
  EXPECT_GT(centreOfRows(red, side), 0.5);  // the lobes, its heavy end, are below
  for (int i = 0; i < side; ++i) {
    EXPECT_EQ(red[static_cast<std::size_t>(i)], 0.0F);
    EXPECT_EQ(red[static_cast<std::size_t>(side - 1) * static_cast<std::size_t>(side) +
                  static_cast<std::size_t>(i)],
              0.0F);
    EXPECT_EQ(red[static_cast<std::size_t>(i) * static_cast<std::size_t>(side)], 0.0F);
  }
}

TEST(DemoCommand, files_areAllWrittenAndReadBack) {
  const testing::ScratchFolder folder;
  const std::string place = folder.file("new/scene");
  ASSERT_EQ(runDemo({place, false}, 64), 0);
  const Picture street = readExr(place + "/street.exr");
  EXPECT_EQ(street.width, 64);
  EXPECT_EQ(street.height, 36);
  EXPECT_EQ(street.channels.size(), 5U);
  EXPECT_FALSE(testing::bytesOfFile(place + "/street.deep.exr").empty());
  EXPECT_EQ(readExr(place + "/mattes.exr").channels.size(), 3U);
  EXPECT_EQ(readExr(place + "/kernel.exr").channels.size(), 4U);
  EXPECT_EQ(testing::bytesOfFile(place + "/camera.txt"), cameraText(DemoCamera{}) + "\n");
}

TEST(DemoCommand, json_namesFilesAndCommands) {
  const testing::ScratchFolder folder;
  ::testing::internal::CaptureStdout();
  ASSERT_EQ(runDemo({folder.path(), true}, 64), 0);
  const auto json = nlohmann::json::parse(::testing::internal::GetCapturedStdout());
  ASSERT_EQ(json["files"].size(), 5U);
  for (const auto& entry : json["files"])
    EXPECT_FALSE(testing::bytesOfFile(entry["file"]).empty()) << entry;
  ASSERT_FALSE(json["commands"].empty());
  EXPECT_EQ(json["commands"][0]["arguments"][0], "render");
  EXPECT_FALSE(json["commands"][0]["purpose"].get<std::string>().empty());
}

TEST(DemoCommand, folderThatIsAFile_endsInOneLineAndCodeFour) {
  const testing::ScratchFolder folder;
  testing::writeBytes(folder.file("taken"), "x");
  try {
    runDemo({folder.file("taken"), false}, 64);
    FAIL() << "nothing was thrown";
  } catch (const ToolError& error) {
    EXPECT_EQ(error.code(), ExitCode::OutputNotWritten);
    EXPECT_NE(std::string(error.what()).find("taken"), std::string::npos);
  }
}

TEST(DemoCommand, folderWithoutRoom_goesAgainWithAllThatWasMadeForIt) {
  if (DREVIN_SANITIZED) GTEST_SKIP() << "it renders the whole scene first, which takes a minute";
  const testing::ScratchFolder folder;
  testing::RunOptions options;
  options.fileSize = 1000;
  const testing::RunResult result =
      testing::runCommand({"demo", folder.file("new/scene")}, options);
  EXPECT_EQ(result.exitCode, 4) << result.error;
  EXPECT_EQ(folder.entries(), std::vector<std::string>{});
}

TEST(DemoSuggestions, signsInTheFolder_areThoseOfItsName) {
  const std::string directory = "de mo #@%d/a\\#%V";
  for (const DemoSuggestion& suggestion : demoSuggestions(directory, DemoCamera{})) {
    for (std::size_t i = 1; i + 1 < suggestion.arguments.size(); ++i) {
      const std::string& option = suggestion.arguments[i];
      if (option != "--input" && option != "--deep" && option != "--kernel" &&
          option != "--mattes" && option != "--output") {
        continue;
      }
      const FramePattern path(suggestion.arguments[i + 1]);
      EXPECT_FALSE(path.hasFrame() || path.hasView()) << suggestion.arguments[i + 1];
      EXPECT_EQ(path.path(7, "left").rfind(directory + "/", 0), 0U) << path.path(7, "left");
    }
  }
}

TEST(DemoSuggestions, everyCommand_isUnderstoodAndWritesItsOwnPicture) {
  std::vector<std::string> outputs;
  for (const DemoSuggestion& suggestion : demoSuggestions("a folder", DemoCamera{})) {
    std::vector<const char*> words{"drevin"};
    for (const std::string& word : suggestion.arguments)
      words.push_back(word.c_str());
    const Arguments arguments = parseArguments(static_cast<int>(words.size()), words.data());
    const auto* render = std::get_if<RenderArguments>(&arguments);
    ASSERT_NE(render, nullptr) << suggestion.purpose;
    const bool deep = !render->deep.empty();
    EXPECT_EQ(deep ? render->deep : render->input,
              deep ? "a folder/street.deep.exr" : "a folder/street.exr");
    outputs.push_back(render->output);
  }
  EXPECT_GE(outputs.size(), 5U);
  std::sort(outputs.begin(), outputs.end());
  EXPECT_EQ(std::adjacent_find(outputs.begin(), outputs.end()), outputs.end());
}

TEST(DemoSuggestions, shellLine_quotesWhatAShellWouldSplit) {
  EXPECT_EQ(shellLine({"render", "a=1,2", "it's so", ""}), "drevin render a=1,2 'it'\\''s so' ''");
}

}  // namespace
}  // namespace drevintool

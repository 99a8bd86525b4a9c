#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "RealPictures.h"
#include "Refusal.h"
#include "ScratchFolder.h"
#include "terminal/ExitCode.h"

namespace drevintool::testing {
namespace {

using nlohmann::json;
using Texts = std::vector<std::string>;

class SheetCommand : public ::testing::Test {
 protected:
  SheetCommand() {
    PartFixture part = rgbazPart(40, 24, 110.0);
    part.channels[0].value = [](int x, int y) { return (x * 7 + y * 5) % 11 / 11.0; };
    part.channels.back().value = [](int x, int) { return 100.0 + x; };
    writeExrFixture(input_, part);
  }

  // As the tests call it: without progress.
  Texts arguments(const Texts& more) const {
    Texts all = {"sheet",   "--quiet", "--plugin", builtPlugin(),
                 "--input", input_,    "--output", output_};
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }

  RunResult run(const Texts& more) const { return runCommand(arguments(more)); }

  json reportOf(Texts more) {
    more.insert(more.end(), {"--report", report_});
    const RunResult result = run(more);
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return json::parse(bytesOfFile(report_));
  }

  ReadFile rendered(const Texts& settings) const {
    Texts more = {"--channels", "rgb"};
    more.insert(more.end(), settings.begin(), settings.end());
    const std::string file = folder_.file("single.exr");
    const RunResult result = runCommand(renderArguments(input_, file, more));
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return readBack(file);
  }

  // Bits of a picture that stands at its full size on the sheet.
  static void expectOnSheet(const ReadFile& sheet, const json& picture, const ReadFile& single) {
    const int left = picture["at"][0];
    const int top = picture["at"][1];
    ASSERT_EQ(picture["size"][0], single.data.max.x - single.data.min.x + 1);
    ASSERT_EQ(picture["size"][1], single.data.max.y - single.data.min.y + 1);
    for (int y = 0; y < picture["size"][1]; ++y) {
      for (int x = 0; x < picture["size"][0]; ++x) {
        for (const char* channel : {"R", "G", "B"}) {
          ASSERT_EQ(sheet.bits(channel, left + x, top + y),
                    single.bits(channel, single.data.min.x + x, single.data.min.y + y))
              << channel << " " << x << " " << y;
        }
      }
    }
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string output_ = folder_.file("sheet.exr");
  std::string report_ = folder_.file("report.json");
};

TEST_F(SheetCommand, pictures_areThoseOfRender) {
  const json report = reportOf({"--set", "multiplier=9", "--vary", "focalPlane=100,120,139"});
  const ReadFile sheet = readBack(output_);
  EXPECT_EQ(sheet.names(), (Texts{"B", "G", "R"}));
  EXPECT_EQ(report["size"], json({sheet.data.max.x + 1, sheet.data.max.y + 1}));
  ASSERT_EQ(report["pictures"].size(), 3U);
  for (const json& picture : report["pictures"]) {
    const std::string plane = picture["varied"]["focalPlane"];
    expectOnSheet(sheet, picture,
                  rendered({"--set", "multiplier=9", "--set", "focalPlane=" + plane}));
  }
}

TEST_F(SheetCommand, twoControls_areColumnsAndRows) {
  const json report = reportOf({"--set", "multiplier=9", "--set", "kernelType=Aperture Blades",
                                "--vary", "kNumSides=3,6,9", "--vary", "depthStyle=Real,1/z"});
  EXPECT_EQ(report["columns"], 3);
  EXPECT_EQ(report["rows"], 2);
  const json& pictures = report["pictures"];
  ASSERT_EQ(pictures.size(), 6U);
  EXPECT_EQ(pictures[4]["varied"], json({{"kNumSides", "6"}, {"depthStyle", "1/z"}}));
  EXPECT_EQ(pictures[4]["render"]["controls"]["depthStyle"]["value"], "1/z");
  EXPECT_EQ(pictures[4]["render"]["controls"]["kNumSides"]["value"], 6);
  EXPECT_EQ(pictures[4]["at"][0], pictures[1]["at"][0]);
  EXPECT_EQ(pictures[4]["at"][1], pictures[5]["at"][1]);
}

TEST_F(SheetCommand, booleansAndComponents_areVaried) {
  const json matte = reportOf({"--set", "outputType=Focal Distance Visualization", "--vary",
                               "normalizeVisualization=false,1"});
  EXPECT_EQ(matte["pictures"][1]["render"]["controls"]["normalizeVisualization"]["value"], true);
  const json shift = reportOf(
      {"--set", "kChrAbb=3", "--set", "multiplier=9", "--vary", "kChrAbbOff=1,1,1;0.5,0.2,1"});
  EXPECT_EQ(shift["pictures"][1]["render"]["controls"]["kChrAbbOff"]["value"], json({0.5, 0.2, 1}));
}

TEST_F(SheetCommand, width_scalesPicturesByTheirMeans) {
  const json report =
      reportOf({"--vary", "focalPlane=100,120", "--width", "10", "--type", "float"});
  const json picture = report["pictures"][0];
  EXPECT_EQ(picture["size"], json({10, 6}));
  const ReadFile sheet = readBack(output_);
  const ReadFile single = rendered({"--set", "focalPlane=100", "--type", "float"});
  double sum = 0.0;
  for (int i = 0; i < 16; ++i)
    sum += single.value("R", single.data.min.x + 4 + i % 4, single.data.min.y + 8 + i / 4);
  const int left = picture["at"][0];
  const int top = picture["at"][1];
  EXPECT_NEAR(sheet.value("R", left + 1, top + 2), sum / 16.0, 1e-6);
}

TEST_F(SheetCommand, region_isWhatIsShown) {
  const json report = reportOf({"--vary", "focalPlane=100,120", "--region", "4,4,20,12"});
  EXPECT_EQ(report["pictures"][0]["size"], json({16, 8}));
}

TEST_F(SheetCommand, captions_standBelowThePictures) {
  const json picture = reportOf({"--vary", "focalPlane=100,120"})["pictures"][1];
  const ReadFile sheet = readBack(output_);
  const int top = picture["at"][1].get<int>() + picture["size"][1].get<int>();
  int dots = 0;
  for (int y = top; y <= sheet.data.max.y; ++y) {
    for (int x = picture["at"][0]; x <= sheet.data.max.x; ++x)
      dots += sheet.value("G", x, y) > 0.5 ? 1 : 0;
  }
  // "focalPlane 120" in letters of 5 x 9 dots.
  EXPECT_GT(dots, 14 * 6);
  EXPECT_LT(dots, 14 * 30);
}

TEST_F(SheetCommand, pictures_areTheSameForAnyNumberAtATime) {
  const Texts vary = {"--set", "multiplier=9", "--vary", "focalPlane=100,110,120,130"};
  std::string first;
  for (const char* count : {"1", "2", "4"}) {
    Texts more = vary;
    more.insert(more.end(), {"--frames-in-flight", count, "--threads", "4"});
    ASSERT_EQ(run(more).exitCode, 0);
    if (first.empty()) first = bytesOfFile(output_);
    EXPECT_EQ(bytesOfFile(output_), first) << count;
  }
}

TEST_F(SheetCommand, keyedControls_areThoseOfTheFrame) {
  const json report = reportOf({"--set", "multiplier@1=1", "--set", "multiplier@11=21", "--frames",
                                "6", "--vary", "focalPlane=100,120"});
  EXPECT_EQ(report["pictures"][1]["render"]["controls"]["multiplier"]["value"], 11);
}

TEST_F(SheetCommand, variedValues_winOverSetAndScript) {
  writeBytes(folder_.file("a.nk"), "Drevin {\n focalPlane 7\n multiplier 5\n name D\n}\n");
  const json report = reportOf(
      {"--script", folder_.file("a.nk"), "--set", "focalPlane=8", "--vary", "focalPlane=100,120"});
  const json controls = report["pictures"][0]["render"]["controls"];
  EXPECT_EQ(controls["focalPlane"]["value"], 100);
  EXPECT_EQ(controls["multiplier"]["value"], 5);
}

TEST_F(SheetCommand, deepPicture_isShown) {
  writeDeepFixture(folder_.file("deep.exr"), {opaqueDeepPart(24, 16, 120.0)});
  const RunResult result =
      runCommand({"sheet", "--quiet", "--plugin", builtPlugin(), "--deep", folder_.file("deep.exr"),
                  "--vary", "multiplier=1,9", "--output", output_});
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(readBack(output_).names(), (Texts{"B", "G", "R"}));
}

TEST_F(SheetCommand, typeAndCompression_areTheSheets) {
  ASSERT_EQ(run({"--vary", "focalPlane=1,2", "--type", "half", "--compression", "piz"}).exitCode,
            0);
  EXPECT_EQ(readBack(output_).channels.at("R").type, Imf::HALF);
  EXPECT_EQ(readBack(output_).header.compression(), Imf::PIZ_COMPRESSION);
  ASSERT_EQ(run({"--vary", "focalPlane=1,2", "--type", "keep"}).exitCode, 0);
  EXPECT_EQ(readBack(output_).channels.at("R").type, Imf::HALF) << "the input's";
}

TEST_F(SheetCommand, valuesThatAreNone_areRefusedAsForSet) {
  const int usage = static_cast<int>(ExitCode::Usage);
  expectRefused(arguments({"--vary", "focalPlane=2,abc"}), usage,
                {"--vary focalPlane=abc", "not a number that it can hold"});
  expectRefused(arguments({"--vary", "focalPlain=2"}), usage, {"did you mean focalPlane?"});
  expectRefused(arguments({"--vary", "depthStyle=Real,1/zz"}), usage, {"did you mean '1/z'?"});
  expectRefused(arguments({"--vary", "correctiveSlices=1,300"}), usage, {"range 1 to 256"});
  expectRefused(arguments({"--vary", "realWorldLens=maybe"}), usage, {"0, 1, true or false"});
}

TEST_F(SheetCommand, channelThatIsNone_isRefused) {
  expectRefused(arguments({"--vary", "depthChannel=Z,Q"}),
                static_cast<int>(ExitCode::InputUnreadable), {"--vary depthChannel=Q", input_});
}

TEST_F(SheetCommand, otherWrongUses_areRefused) {
  const int usage = static_cast<int>(ExitCode::Usage);
  expectRefused(arguments({}), usage, {"--vary is missing"});
  expectRefused(arguments({"--vary", "focalPlane=1,2", "--frames", "1-2"}), usage, {"one frame"});
  expectRefused(arguments({"--vary", "focalPlane=1,2", "--views", "l,r"}), usage, {"one frame"});
  expectRefused(arguments({"--vary", "focalPlane=1,2", "--width", "0"}), usage, {"--width"});
  expectRefused(arguments({"--vary", "focalPlane=1,2", "--columns", "x"}), usage, {"--columns"});
  expectRefused(arguments({"--vary", "focalPlane=1", "--vary", "fStop=2", "--columns", "2"}), usage,
                {"--columns"});
  expectRefused(arguments({"--vary", "fStop=1,2", "--camera", "fStop=2"}), usage,
                {"--vary fStop", "--camera"});
}

TEST_F(SheetCommand, sheetLargerThanTheMemory_isRefusedBeforeTheWork) {
  expectRefused(arguments({"--vary", "focalPlane=1,2", "--max-memory", "1M"}),
                static_cast<int>(ExitCode::InputUnreadable), {"memory"});
}

TEST_F(SheetCommand, controlWithoutEffect_isWarnedOf) {
  const RunResult result = run({"--set", "multiplier=9", "--vary", "fStop=1,2,3"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.error, "drevin: warning: --vary fStop: no picture differs by it\n");
  EXPECT_EQ(run({"--set", "multiplier=9", "--vary", "focalPlane=100,139"}).error, "");
}

TEST_F(SheetCommand, warningOfAllPictures_isPrintedOnce) {
  const RunResult all =
      run({"--set", "max_kernelsize=3", "--set", "multiplier=40", "--vary", "focalPlane=100,139"});
  EXPECT_EQ(linesStarting(all.error, "drevin: warning: Max kernel size").size(), 1U) << all.error;
  const RunResult one =
      run({"--set", "max_kernelsize=3", "--vary", "multiplier=1,40", "--set", "focalPlane=100"});
  EXPECT_EQ(linesStarting(one.error, "drevin: warning: multiplier=40: Max kernel size").size(), 1U)
      << one.error;
}

TEST_F(SheetCommand, pointToFocusOn_isRefusedBesideAVariedFocus) {
  expectRefused(arguments({"--vary", "focalPlane=100,139", "--focus-at", "4,4"}), 2,
                {"--vary focalPlane", "--focus-at sets the focus too"});
  EXPECT_EQ(run({"--vary", "multiplier=1,9", "--focus-at", "4,4"}).exitCode, 0);
}

TEST_F(SheetCommand, kernelThatOnePictureUses_isNotCalledUnused) {
  const std::string kernel = folder_.file("kernel.exr");
  writeExrFixture(kernel, rgbazPart(9, 9, 1.0));
  EXPECT_EQ(
      run({"--kernel", kernel, "--set", "multiplier=9", "--vary", "kernelType=Input,Circular"})
          .error,
      "");
  const RunResult none = run({"--kernel", kernel, "--set", "multiplier=9", "--vary",
                              "kernelType=Aperture Blades,Circular"});
  EXPECT_EQ(linesStarting(none.error, "drevin: warning: --kernel " + kernel).size(), 1U)
      << none.error;
}

TEST_F(SheetCommand, report_hasTheBytesOfTheSheetAndNoneOfItsPictures) {
  const json report = reportOf({"--vary", "multiplier=1,9"});
  EXPECT_EQ(report["bytesWritten"], bytesOfFile(output_).size());
  for (const json& picture : report["pictures"])
    EXPECT_TRUE(picture["render"]["stats"]["bytesWritten"].is_null());
}

TEST_F(SheetCommand, progress_endsWithTheWholeSheet) {
  Texts loud = arguments({"--vary", "focalPlane=100,139", "--set", "multiplier=9"});
  loud.erase(loud.begin() + 1);
  const RunResult result = runCommand(loud);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(linesStarting(result.error, "Progress: 100%").size(), 1U) << result.error;
}

// How far neighbours differ within a box of the sheet, in its columns and rows.
double roughness(const ReadFile& sheet, int left, int top, int width, int height) {
  double sum = 0.0;
  for (int y = top; y < top + height; ++y) {
    for (int x = left; x < left + width; ++x)
      sum += std::fabs(sheet.value("G", x + 1, y) - sheet.value("G", x, y));
  }
  return sum;
}

TEST_F(SheetCommand, realPicture_isSharpWhereEachPictureFocuses) {
  SKIP_WITHOUT_PICTURES();
  const std::string input = pictureFolder() + "/flat/courtyard.exr";
  const RunResult result =
      runCommand({"sheet", "--quiet", "--plugin", builtPlugin(), "--input", input, "--set",
                  "multiplier=20", "--set", "focusRegionSize=2", "--vary", "focalPlane=2.7,11.2",
                  "--width", "720", "--report", report_, "--output", output_});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  const json pictures = json::parse(bytesOfFile(report_))["pictures"];
  const ReadFile sheet = readBack(output_);
  // The shelves in front and the fountain, in a picture of 720 x 540.
  const auto shelves = [&](int i) {
    return roughness(sheet, pictures[i]["at"][0].get<int>() + 40,
                     pictures[i]["at"][1].get<int>() + 370, 160, 100);
  };
  const auto fountain = [&](int i) {
    return roughness(sheet, pictures[i]["at"][0].get<int>() + 305,
                     pictures[i]["at"][1].get<int>() + 190, 120, 160);
  };
  EXPECT_GT(shelves(0), 1.3 * shelves(1));
  EXPECT_GT(fountain(1), 1.3 * fountain(0));
}

}  // namespace
}  // namespace drevintool::testing

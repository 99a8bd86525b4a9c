#include "RealPictures.h"

#include <gtest/gtest.h>

#include <cmath>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

using Arguments = std::vector<std::string>;

class RealPictures : public ::testing::Test {
 protected:
  static std::string picture(const std::string& name) { return pictureFolder() + "/" + name; }

  ReadFile render(const std::string& name, const Arguments& more) {
    const RunResult result =
        runCommand(renderArguments(picture(name), folder_.file("out.exr"), more));
    EXPECT_EQ(result.exitCode, 0) << name << ": " << result.error;
    return readBack(folder_.file("out.exr"));
  }

  ScratchFolder folder_;
};

// Bits of the named channel are those of the input over the result's data window.
void expectSameBits(const ReadFile& result, const ReadFile& input, const std::string& name) {
  ASSERT_EQ(result.channels.at(name).type, input.channels.at(name).type) << name;
  for (int y = result.data.min.y; y <= result.data.max.y; ++y) {
    for (int x = result.data.min.x; x <= result.data.max.x; ++x) {
      ASSERT_EQ(result.bits(name, x, y), input.bits(name, x, y)) << name << " " << x << " " << y;
    }
  }
}

bool isFinite(const ReadFile& file, const std::string& name) {
  for (int y = file.data.min.y; y <= file.data.max.y; ++y) {
    for (int x = file.data.min.x; x <= file.data.max.x; ++x) {
      if (!std::isfinite(file.value(name, x, y))) return false;
    }
  }
  return true;
}

TEST_F(RealPictures, cryptomatteChannels_areBitIdentical) {
  SKIP_WITHOUT_PICTURES();
  const std::string name = "meta/cornellBox.cryptomatte.0001.exr";
  const ReadFile input = readBack(picture(name));
  const ReadFile result =
      render(name, {"--set", "depthChannel=normals.X", "--set", "multiplier=5"});
  EXPECT_EQ(result.display, input.display);
  EXPECT_EQ(result.data, input.data);
  EXPECT_EQ(result.names(), input.names());
  for (const std::string& channel : input.names()) {
    if (channel.size() > 1) expectSameBits(result, input, channel);
  }
}

TEST_F(RealPictures, windows_areKept) {
  SKIP_WITHOUT_PICTURES();
  for (const std::string& file : filesIn("windows")) {
    const std::string name = file.substr(pictureFolder().size() + 1);
    const ReadFile input = readBack(file);
    const ReadFile result = render(
        name, {"--set", "depthChannel=G", "--set", "focalPlane=0.5", "--set", "multiplier=8"});
    EXPECT_EQ(result.display, input.display) << name;
    EXPECT_EQ(result.data, input.data) << name;
    EXPECT_TRUE(isFinite(result, "R")) << name;
  }
}

TEST_F(RealPictures, dataWindowsThatMove_areKept) {
  SKIP_WITHOUT_PICTURES();
  for (const char* frame : {"0001", "0002", "0003", "0004"}) {
    const std::string name = std::string("flat/beachball.singlepart.") + frame + ".exr";
    const ReadFile input = readBack(picture(name));
    const ReadFile result = render(
        name, {"--set", "focalPlane=9.2", "--set", "multiplier=6", "--channels", "rgba,left.R"});
    EXPECT_EQ(result.data, input.data) << frame;
    EXPECT_EQ(result.names(), (Arguments{"A", "B", "G", "R", "left.R"}));
    expectSameBits(result, input, "left.R");
    EXPECT_TRUE(isFinite(result, "R")) << frame;
  }
}

TEST_F(RealPictures, depthFromAnotherPart_isTaken) {
  SKIP_WITHOUT_PICTURES();
  const ReadFile result =
      render("flat/beachball.multipart.0001.exr",
             {"--set", "depthChannel=depth_right.Z", "--set", "focalPlane=9.2", "--set",
              "multiplier=6", "--region", "700,600,1300,700", "--channels", "rgba,depth_right.Z"});
  EXPECT_EQ(result.data.max.x, 1299);
  EXPECT_EQ(result.names(), (Arguments{"A", "B", "G", "R", "depth_right.Z"}));
}

TEST_F(RealPictures, thinLens_keepsWhatIsInFocus) {
  SKIP_WITHOUT_PICTURES();
  const Arguments lens = {"--set",    "realWorldLens=1",  "--set",      "focalLength=50",
                          "--set",    "fStop=1.4",        "--set",      "filmFormat=Custom",
                          "--set",    "apertureWidth=36", "--set",      "apertureHeight=24",
                          "--set",    "worldScale=m",     "--set",      "focalPlane=11.2",
                          "--region", "600,500,800,560",  "--channels", "rgb"};
  const ReadFile result = render("flat/courtyard.exr", lens);
  EXPECT_TRUE(isFinite(result, "R"));
  EXPECT_TRUE(isFinite(result, "G"));
}

TEST_F(RealPictures, apertureImages_areTaken) {
  SKIP_WITHOUT_PICTURES();
  for (const char* kernel : {"kernel/circles.exr", "kernel/BrightRings.exr"}) {
    const ReadFile result =
        render("layers/rgbaz.exr",
               {"--kernel", picture(kernel), "--set", "kernelType=Input", "--set", "focalPlane=0.5",
                "--set", "multiplier=5", "--set", "missingKernelChannel=R"});
    EXPECT_TRUE(isFinite(result, "R")) << kernel;
  }
}

TEST_F(RealPictures, layersAsTheyAreNamedInPractice_areWrittenBack) {
  SKIP_WITHOUT_PICTURES();
  for (const std::string& file : filesIn("layers")) {
    const std::string name = file.substr(pictureFolder().size() + 1);
    const RunResult result =
        runCommand(renderArguments(file, folder_.file("out.exr"), {"--set", "max_kernelsize=9"}));
    EXPECT_TRUE(result.exitCode == 0 || result.exitCode == 3) << name << result.error;
    if (result.exitCode == 3) {
      EXPECT_NE(result.error.find("depth"), std::string::npos) << result.error;
    }
  }
}

TEST_F(RealPictures, everyHalfValue_isAResult) {
  SKIP_WITHOUT_PICTURES();
  for (const char* name : {"values/AllHalfValues.exr", "values/BrightRingsNanInf.exr"}) {
    render(name, {"--set", "depthChannel=G", "--set", "max_kernelsize=7"});
    render(name, {"--set", "depthChannel=G", "--set", "outputType=2"});
  }
}

TEST_F(RealPictures, pictureWithoutDepth_saysWhatItHas) {
  SKIP_WITHOUT_PICTURES();
  const RunResult result =
      runCommand(renderArguments(picture("flat/forest.composited.exr"), folder_.file("out.exr")));
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find("A, B, G, R"), std::string::npos) << result.error;
}

}  // namespace
}  // namespace drevintool::testing

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "RealPictures.h"
#include "ScratchFolder.h"
#include "deep/DeepExrSource.h"

namespace drevintool::testing {
namespace {

using Arguments = std::vector<std::string>;

struct RealDeepPicture {
  const char* name;
  std::uint64_t samples;
  std::uint64_t thick;
  std::uint64_t mostPerPixel;
  PixelBox box;
  double nearest;
  double farthest;
};

// What the pictures' own description says of them.
const std::vector<RealDeepPicture> kPictures = {
    {"fire_and_spikes.volume.exr", 191482, 159121, 227, {0, 0, 150, 100}, 2.82, 10.84},
    {"glass_balls.motionblur.exr", 30078, 0, 3, {5, 4, 191, 172}, 1.40, 4.98},
    {"discs.42.exr", 67605, 0, 8, {0, 0, 256, 256}, 3.5, 2048.0},
    {"deepalpha.tiled.exr", 28846, 0, 22, {0, 0, 160, 120}, 3.03, 5.0},
    {"tinydeep.exr", 1, 0, 1, {0, 0, 4, 4}, 10.0, 10.0},
};

std::string deepPicture(const std::string& name) {
  return pictureFolder() + "/deep/" + name;
}

// Reads all rows; the nearest and the farthest depth.
std::pair<float, float> depthsOf(DeepExrSource& source) {
  float nearest = std::numeric_limits<float>::infinity();
  float farthest = -nearest;
  embedded::DeepRow row;
  const DD::Image::ChannelSet depths(DD::Image::Mask_Deep);
  for (int y = source.box().y(); y < source.box().t(); ++y) {
    source.readRow(y, source.box().x(), source.box().r(), depths, row);
    for (const float depth : row.values) {
      nearest = std::min(nearest, depth);
      farthest = std::max(farthest, depth);
    }
  }
  return {nearest, farthest};
}

TEST(RealDeepPictures, samplesAndDepths_areThoseOfTheirDescription) {
  SKIP_WITHOUT_PICTURES();
  for (const RealDeepPicture& picture : kPictures) {
    DeepExrSource source(deepPicture(picture.name), "", "");
    const auto [nearest, farthest] = depthsOf(source);
    EXPECT_EQ(source.counts().samples, picture.samples) << picture.name;
    EXPECT_EQ(source.counts().thick, picture.thick) << picture.name;
    EXPECT_EQ(source.counts().mostPerPixel, picture.mostPerPixel) << picture.name;
    EXPECT_EQ(source.box().x(), picture.box.x) << picture.name;
    EXPECT_EQ(source.box().y(), picture.box.y) << picture.name;
    EXPECT_EQ(source.box().r(), picture.box.r) << picture.name;
    EXPECT_EQ(source.box().t(), picture.box.t) << picture.name;
    EXPECT_NEAR(nearest, picture.nearest, 0.01 * picture.nearest) << picture.name;
    EXPECT_NEAR(farthest, picture.farthest, 0.01 * picture.farthest) << picture.name;
  }
}

TEST(RealDeepPictures, forest_hasTwoSamplesInAPixelAtMost) {
  SKIP_WITHOUT_PICTURES();
  const std::vector<std::pair<std::string, double>> passes = {
      {"forest.Balls.exr", 163e3}, {"forest.Leaves.exr", 292e3}, {"forest.Trunks.exr", 49e3}};
  for (const auto& [name, samples] : passes) {
    DeepExrSource source(deepPicture(name), "", "left");
    const auto [nearest, farthest] = depthsOf(source);
    EXPECT_NEAR(static_cast<double>(source.counts().samples), samples, 500.0) << name;
    EXPECT_EQ(source.counts().mostPerPixel, 2U) << name;
    EXPECT_EQ(source.counts().thick, 0U) << name;
    EXPECT_EQ(source.format().width(), 1024) << name;
    EXPECT_EQ(source.format().height(), 576) << name;
    EXPECT_GE(nearest, 72.0F) << name;
    EXPECT_LE(farthest, 993.0F) << name;
  }
}

TEST(RealDeepPictures, everyOne_renders) {
  SKIP_WITHOUT_PICTURES();
  for (const std::string& file : filesIn("deep")) {
    const ScratchFolder folder;
    const RunResult result = runCommand(deepArguments(
        file, folder.file("out.exr"),
        {"--deep-order", "far-first", "--set", "focalPlane=5", "--set", "max_kernelsize=9"}));
    ASSERT_EQ(result.exitCode, 0) << result.error;
    const ReadFile picture = readBack(folder.file("out.exr"));
    EXPECT_EQ(picture.names(), (Arguments{"A", "B", "G", "R"})) << file;
    for (int y = picture.data.min.y; y <= picture.data.max.y; ++y) {
      for (int x = picture.data.min.x; x <= picture.data.max.x; ++x) {
        ASSERT_TRUE(std::isfinite(picture.value("R", x, y))) << file;
        ASSERT_TRUE(std::isfinite(picture.value("A", x, y))) << file;
      }
    }
  }
}

TEST(RealDeepPictures, viewOfAVolume_isNotWarnedOf) {
  SKIP_WITHOUT_PICTURES();
  const ScratchFolder folder;
  const std::string file = deepPicture("fire_and_spikes.volume.exr");
  const RunResult result =
      runCommand(deepArguments(file, folder.file("out.exr"), {"--set", "outputType=Focus Matte"}));
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.error.find("thick"), std::string::npos) << result.error;
}

TEST(RealDeepPictures, volume_isWarnedOfWithItsFigures) {
  SKIP_WITHOUT_PICTURES();
  const ScratchFolder folder;
  const std::string file = deepPicture("fire_and_spikes.volume.exr");
  const RunResult result =
      runCommand(deepArguments(file, folder.file("out.exr"), {"--set", "max_kernelsize=5"}));
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_NE(result.error.find("159121 of 191482 samples are thick"), std::string::npos)
      << result.error;
  EXPECT_NE(result.error.find("--deep-order far-first"), std::string::npos) << result.error;
}

TEST(RealDeepPictures, attributesOfTheScene_areKept) {
  SKIP_WITHOUT_PICTURES();
  const ScratchFolder folder;
  const std::string file = deepPicture("fire_and_spikes.volume.exr");
  ASSERT_EQ(runCommand(deepArguments(file, folder.file("out.exr"), {"--set", "max_kernelsize=5"}))
                .exitCode,
            0);
  const ReadFile result = readBack(folder.file("out.exr"));
  for (const char* name : {"CameraFov", "CameraFocalLength", "worldToCamera"})
    EXPECT_NE(result.header.find(name), result.header.end()) << name;
  EXPECT_EQ(result.header.find("chunkCount"), result.header.end());
}

TEST(RealDeepPictures, flatPictureBesideThem_isTaken) {
  SKIP_WITHOUT_PICTURES();
  const ScratchFolder folder;
  const std::string flat = pictureFolder() + "/flat/forest.composited.exr";
  const RunResult result = runCommand(
      deepArguments(deepPicture("forest.Balls.exr"), folder.file("out.exr"),
                    {"--input", flat, "--set", "focalPlane=200", "--set", "max_kernelsize=9"}));
  ASSERT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(readBack(folder.file("out.exr")).data, readBack(flat).data);
  const RunResult other = runCommand(
      deepArguments(deepPicture("discs.42.exr"), folder.file("out2.exr"), {"--input", flat}));
  EXPECT_EQ(other.exitCode, 3);
  EXPECT_NE(other.error.find("is 1024 x 576"), std::string::npos) << other.error;
  EXPECT_NE(other.error.find("is 256 x 256"), std::string::npos) << other.error;
}

TEST(RealDeepPictures, idsOfSamples_areTheirNumbers) {
  SKIP_WITHOUT_PICTURES();
  DeepExrSource source(deepPicture("glass_balls.motionblur.exr"), "", "");
  const DD::Image::Channel id = DD::Image::getChannel("other.Id");
  ASSERT_TRUE(source.channels().contains(id));
  embedded::DeepRow row;
  for (int y = source.box().y(); y < source.box().t(); ++y) {
    source.readRow(y, source.box().x(), source.box().r(), DD::Image::ChannelSet(id), row);
    for (const float value : row.values)
      ASSERT_EQ(value, std::floor(value));
  }
}

}  // namespace
}  // namespace drevintool::testing

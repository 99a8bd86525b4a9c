#include "defocus/ScanlineDefocus.h"

#include <gtest/gtest.h>

#include <cmath>

#include "defocus/ImagingFrame.h"
#include "support/Draw.h"
#include "support/PlainScene.h"

namespace drevin::test {
namespace {

using Picture = std::map<int, std::vector<std::vector<float>>>;

/// Rows from 0 of the scene's format.
Picture render(const LiteralScene& scene) {
  const ImagingFrame frame(scene);
  Picture picture;
  for (int y = 0; y < scene.image.formatHeight; ++y) {
    for (auto& [channel, row] : frame.row(y, 0, scene.image.formatWidth)) {
      picture[channel].push_back(row);
    }
  }
  return picture;
}

void drawColours(LiteralScene& scene, unsigned seed) {
  Draw draw(seed);
  for (int channel = 1; channel <= 4; ++channel) {
    for (float& value : scene.image.planes[channel])
      value = draw.real(0.0F, 4.0F);
  }
}

void drawDepths(LiteralScene& scene, unsigned seed) {
  Draw draw(seed);
  for (float& depth : scene.image.planes[5])
    depth = draw.real(7.0F, 13.0F);
}

TEST(ScanlineDefocus, pictureInFocus_comesBackUnchanged) {
  for (const int slices : {1, 2, 10}) {
    LiteralScene scene = plainScene(20, 12, 10.0F);
    scene.settings.correctiveSlices = slices;
    scene.settings.multiplier = 40.0F;
    drawColours(scene, 1);
    const Picture picture = render(scene);
    for (int y = 0; y < 12; ++y) {
      for (int x = 0; x < 20; ++x) {
        for (const int channel : scene.channels) {
          const float expected = scene.image.at(x, y, channel);
          EXPECT_NEAR(picture.at(channel)[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)],
                      expected, 1e-6F * expected);
        }
      }
    }
  }
}

TEST(ScanlineDefocus, constantPicture_staysConstantUnderAnyBlur) {
  for (const int kernel : {1, 2}) {
    for (const int slices : {1, 2, 3, 10, 256}) {
      LiteralScene scene = plainScene(24, 16, 0.0F);
      scene.settings.kernelType = kernel;
      scene.settings.correctiveSlices = slices;
      scene.settings.multiplier = 25.0F;
      drawDepths(scene, static_cast<unsigned>(slices));
      for (const auto& [channel, rows] : render(scene)) {
        for (const auto& row : rows) {
          for (const float value : row) {
            EXPECT_NEAR(value, 0.25F * static_cast<float>(channel), 1e-5F) << slices;
          }
        }
      }
    }
  }
}

/// Red summed over the picture of one light on black, blurred everywhere by `coc`.
double lightOver(float coc, int side) {
  LiteralScene scene = plainScene(side, side, 1000.0F);
  scene.settings.multiplier = coc;
  scene.channels = {1};
  scene.image.planes[1] = constantPlane(scene.image.box, 0.0F);
  pixelAt(scene.image, 1, side / 2, side / 2) = 100.0F;
  double sum = 0.0;
  const Picture picture = render(scene);
  for (const auto& row : picture.at(1)) {
    for (const float value : row)
      sum += static_cast<double>(value);
  }
  return sum;
}

TEST(ScanlineDefocus, singleLightUnderUniformBlur_keepsItsEnergy) {
  for (const float coc : {1.0F, 1.5F, 2.0F, 3.0F, 4.7F, 12.0F, 33.3F, 63.0F}) {
    EXPECT_NEAR(lightOver(coc, 2 * static_cast<int>(coc) + 9), 100.0, 1e-4 * 100.0) << coc;
  }
}

TEST(ScanlineDefocus, frontOfThePlaneWithAllBehind_isBlack) {
  LiteralScene scene = plainScene(8, 6, 11.0F);
  scene.settings.focusOutput = 1;
  for (const auto& [channel, rows] : render(scene)) {
    for (const auto& row : rows) {
      for (const float value : row)
        EXPECT_EQ(value, 0.0F) << channel;
    }
  }
}

TEST(ScanlineDefocus, channelThatTheKernelsLack_comesBackExactly) {
  LiteralScene scene = plainScene(12, 9, 12.0F);
  scene.settings.multiplier = 9.0F;
  scene.settings.bokehChannels = {1, 3};
  drawColours(scene, 5);
  const Picture picture = render(scene);
  bool blurred = false;
  for (int y = 0; y < 9; ++y) {
    for (int x = 0; x < 12; ++x) {
      const auto row = static_cast<std::size_t>(y);
      const auto column = static_cast<std::size_t>(x);
      EXPECT_EQ(picture.at(2)[row][column], scene.image.at(x, y, 2));
      EXPECT_EQ(picture.at(4)[row][column], scene.image.at(x, y, 4));
      blurred = blurred || picture.at(1)[row][column] != scene.image.at(x, y, 1);
    }
  }
  EXPECT_TRUE(blurred);
}

/// Left half in front of focus, right half in the far distance, with the far half bright.
LiteralScene twoPlanes() {
  LiteralScene scene = plainScene(30, 12, 8.0F);
  scene.channels = {1};
  scene.settings.multiplier = 9.0F;
  for (int y = 0; y < 12; ++y) {
    for (int x = 0; x < 30; ++x) {
      const bool far = x >= 15;
      pixelAt(scene.image, 1, x, y) = far ? 100.0F : 1.0F;
      if (far) pixelAt(scene.image, 5, x, y) = 12.0F;
    }
  }
  return scene;
}

TEST(ScanlineDefocus, fullyCoveringNearSlice_hidesTheFarOne) {
  LiteralScene scene = twoPlanes();
  scene.settings.backMultiplier = 2.0F;
  scene.settings.correctiveSlices = 2;
  const Picture sliced = render(scene);
  scene.settings.correctiveSlices = 1;
  const Picture mixed = render(scene);
  // Column 10 is five from the edge: only near kernels, of reach 4, cover it, but the far ones, of
  // reach 8, bleed over it where one slice mixes all.
  EXPECT_NEAR(sliced.at(1)[6][10], 1.0F, 1e-4F);
  EXPECT_NEAR(sliced.at(1)[6][9], 1.0F, 1e-4F);
  EXPECT_GT(mixed.at(1)[6][10], 2.0F);
}

TEST(ScanlineDefocus, rimOfANearObject_isNeverDarkerThanBothSides) {
  for (const int slices : {1, 2, 3, 10}) {
    LiteralScene scene = twoPlanes();
    scene.settings.correctiveSlices = slices;
    const Picture picture = render(scene);
    for (const auto& row : picture.at(1)) {
      for (const float value : row) {
        EXPECT_GE(value, 1.0F - 1e-4F);
        EXPECT_LE(value, 100.0F + 1e-2F);
      }
    }
  }
}

TEST(ScanlineDefocus, rowSplitInX_isBitIdentical) {
  LiteralScene scene = plainScene(40, 10, 0.0F);
  scene.settings.multiplier = 11.0F;
  scene.settings.correctiveSlices = 10;
  scene.settings.bloom = 1.0F;
  drawDepths(scene, 2);
  drawColours(scene, 3);
  const ImagingFrame frame(scene);
  const auto whole = frame.row(4, 0, 40);
  for (const int split : {1, 7, 20, 39}) {
    const auto left = frame.row(4, 0, split);
    const auto right = frame.row(4, split, 40);
    for (const auto& [channel, row] : whole) {
      std::vector<float> joined = left.at(channel);
      joined.insert(joined.end(), right.at(channel).begin(), right.at(channel).end());
      EXPECT_EQ(joined, row) << split;
    }
  }
}

TEST(ScanlineDefocus, rowsInAnyOrder_areBitIdentical) {
  LiteralScene scene = plainScene(20, 10, 0.0F);
  scene.settings.multiplier = 11.0F;
  drawDepths(scene, 2);
  drawColours(scene, 3);
  const Picture upward = render(scene);
  const ImagingFrame frame(scene);
  for (int y = 9; y >= 0; --y) {
    const auto row = frame.row(y, 0, 20);
    EXPECT_EQ(row.at(1), upward.at(1)[static_cast<std::size_t>(y)]);
  }
}

TEST(ScanlineDefocus, sourceRowsInAnyOrder_agree) {
  LiteralScene scene = plainScene(1, 1, 12.0F);
  scene.settings.multiplier = 7.0F;
  const ImagingFrame frame(scene);
  const dvOutputSpan span{0, 0, 9};
  dvScanlineDefocus upward(frame.settings(), span, {1});
  dvScanlineDefocus downward(frame.settings(), span, {1});
  const int padding = frame.settings().frame.padding;
  std::vector<float> colour(static_cast<std::size_t>(9 + 2 * padding));
  const float depth = 12.0F;
  const auto splat = [&](dvScanlineDefocus& defocus, int y) {
    Draw draw(static_cast<unsigned>(y + 100));
    for (float& value : colour)
      value = draw.real(0.0F, 1.0F);
    dvSourceRow row;
    row.y = y;
    row.colour = {colour.data() + padding};
    row.depth = &depth;
    defocus.splatSourceRow(row);
  };
  for (int y = -padding; y <= padding; ++y) {
    splat(upward, y);
    splat(downward, -y);
  }
  std::vector<float> first(9);
  std::vector<float> second(9);
  upward.composite(0, first.data());
  downward.composite(0, second.data());
  for (std::size_t i = 0; i < 9; ++i) {
    EXPECT_NEAR(first[i], second[i], 1e-6F);
  }
}

TEST(ScanlineDefocus, defocusMatteZero_keepsAPictureSharp) {
  LiteralScene scene = plainScene(12, 9, 12.0F);
  scene.settings.multiplier = 9.0F;
  scene.settings.defocusMatteChannel = 1;
  scene.mattes = scene.image;
  scene.mattes->planes[1] = constantPlane(scene.image.box, 0.0F);
  drawColours(scene, 5);
  const Picture picture = render(scene);
  for (int x = 0; x < 12; ++x) {
    EXPECT_NEAR(picture.at(2)[4][static_cast<std::size_t>(x)], scene.image.at(x, 4, 2), 1e-5F);
  }
}

TEST(ScanlineDefocus, lensBloom_isTheDifferenceThatBloomMakes) {
  LiteralScene scene = plainScene(16, 10, 12.0F);
  scene.settings.multiplier = 6.0F;
  drawColours(scene, 9);
  const Picture plain = render(scene);
  scene.settings.bloom = 0.8F;
  const Picture bloomed = render(scene);
  scene.settings.outputType = 1;
  const Picture bloom = render(scene);
  for (std::size_t y = 0; y < 10; ++y) {
    for (std::size_t x = 0; x < 16; ++x) {
      EXPECT_NEAR(bloom.at(1)[y][x], bloomed.at(1)[y][x] - plain.at(1)[y][x], 1e-4F);
      EXPECT_EQ(bloom.at(4)[y][x], plain.at(4)[y][x]);
    }
  }
}

TEST(ScanlineDefocus, negativeDepthsOfSeveralSlices_leaveNothing) {
  LiteralScene scene = plainScene(8, 6, -3.0F);
  scene.settings.realWorldLens = true;
  scene.settings.correctiveSlices = 3;
  const Picture picture = render(scene);
  for (const auto& row : picture.at(1)) {
    for (const float value : row)
      EXPECT_EQ(value, 0.0F);
  }
}

TEST(ScanlineDefocus, largeKernel_staysWithinTheBoundOfDoubleSums) {
  // Thousands of shares of about 2e-5: the sums that single precision alone would spoil.
  LiteralScene scene = plainScene(3, 1, 1000.0F);
  scene.settings.maxKernelSize = 255;
  scene.settings.multiplier = 255.0F;
  const Picture picture = render(scene);
  for (const float value : picture.at(3)[0]) {
    EXPECT_NEAR(value, 0.75F, 1e-5F);
  }
}

}  // namespace
}  // namespace drevin::test

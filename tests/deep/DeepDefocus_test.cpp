#include "deep/DeepDefocus.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "deep/DeepFrame.h"
#include "support/PlainScene.h"

namespace drevin::test {
namespace {

constexpr int width = 40;
constexpr int height = 9;
constexpr int extra = 8;  // a channel of the flat picture alone
constexpr float tolerance = 2e-6F;

using Colour = std::function<float(int x, int y)>;

LiteralDeepSample point(float depth, float red, float alpha) {
  return {
      depth, depth, {{1, red * alpha}, {4, alpha}, {literalFront, depth}, {literalBack, depth}}};
}

/// A flat picture of one depth with red of that colour and alpha 1; up to 8 px of blur.
LiteralScene flatScene(float depth, const Colour& red) {
  LiteralScene scene = plainScene(width, height, depth);
  scene.settings.multiplier = 8.0F;
  scene.settings.kernelType = 2;
  scene.channels = {1, 4};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      pixelAt(scene.image, 1, x, y) = red(x, y);
      pixelAt(scene.image, 4, x, y) = 1.0F;
    }
  }
  return scene;
}

LiteralDeepScene deepScene(const LiteralScene& flat,
                           const std::function<LiteralDeepPixel(int x, int y)>& pixel) {
  LiteralDeepScene scene;
  scene.flat = flat;
  scene.deep.box = {0, 0, width, height};
  scene.deep.channels = {1, 4, literalFront, literalBack};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      scene.deep.pixels.push_back(pixel(x, y));
    }
  }
  return scene;
}

/// Red that differs from pixel to pixel, so that every blur of it shows.
float wallRed(int x, int y) {
  return 0.1F + 0.8F * static_cast<float>((x * 7 + y * 5) % 11) / 10.0F;
}
float paneRed(int x, int y) {
  return x % 9 < 3 && y % 4 < 2 ? 0.9F : 0.2F;
}
float grey(int, int) {
  return 0.5F;
}

/// A channel over columns that no kernel of the right edge reaches.
void expectConstant(const DeepFrame& frame, int channel, float value) {
  for (int y = 0; y < height; ++y) {
    const auto row = frame.row(y, 0, width);
    for (int x = 0; x + frame.padding() < width - 1; ++x) {
      EXPECT_NEAR(row.at(channel)[static_cast<std::size_t>(x)], value, tolerance) << x << ' ' << y;
    }
  }
}

TEST(DeepDefocus, oneOpaqueSample_isTheFlatPictureAwayFromTheSkippedColumn) {
  for (const float depth : {8.0F, 9.3F, 10.0F, 11.7F}) {
    const LiteralScene flat = flatScene(depth, wallRed);
    const LiteralDeepScene scene = deepScene(
        flat, [&](int x, int y) { return LiteralDeepPixel{point(depth, wallRed(x, y), 1.0F)}; });
    const ImagingFrame expected(flat);
    const DeepFrame frame(scene);
    ASSERT_LT(frame.padding(), 8);
    for (int y = 0; y < height; ++y) {
      const auto wanted = expected.row(y, 0, width);
      const auto row = frame.row(y, 0, width);
      for (int x = 0; x + frame.padding() < width - 1; ++x) {
        const auto at = static_cast<std::size_t>(x);
        EXPECT_NEAR(row.at(1)[at], wanted.at(1)[at], tolerance) << x << ' ' << y << ' ' << depth;
        EXPECT_NEAR(row.at(4)[at], wanted.at(4)[at], tolerance) << x << ' ' << y << ' ' << depth;
      }
    }
  }
}

TEST(DeepDefocus, lastColumn_neverReachesTheOutput) {
  for (const float depth : {8.0F, 10.0F}) {
    const LiteralScene flat = flatScene(depth, grey);
    const LiteralDeepScene scene = deepScene(flat, [&](int x, int) {
      return LiteralDeepPixel{point(depth, x == width - 1 ? 1000.0F : 0.5F, 1.0F)};
    });
    const DeepFrame frame(scene);
    const auto row = frame.row(4, 0, width + 2);
    for (std::size_t x = 0; x < width - 1; ++x) {
      EXPECT_NEAR(row.at(1)[x], 0.5F, tolerance) << x;
    }
    // In focus, only the column itself could fill it.
    const float last = row.at(1)[width - 1];
    EXPECT_NEAR(last, depth == 10.0F ? 0.0F : 0.5F, tolerance);
  }
}

TEST(DeepDefocus, lastColumn_isReadWhereTheOutputEndsFarFromIt) {
  const dvSplatFrame frame{{}, nullptr, 1, 5, width};
  const dvDeepDefocus whole(frame, {}, {0, 0, width}, {});
  EXPECT_EQ(whole.deepColumns().left, 0);
  EXPECT_EQ(whole.deepColumns().right, width - 1);
  const dvDeepDefocus region(frame, {}, {10, 0, 20}, {});
  EXPECT_EQ(region.deepColumns().left, 5);
  EXPECT_EQ(region.deepColumns().right, 25);
  const dvDeepDefocus beyond(frame, {}, {width + 20, 0, width + 30}, {});
  EXPECT_EQ(beyond.deepColumns().left, beyond.deepColumns().right);
}

TEST(DeepDefocus, paneOfHalfAlphaBeforeAWall_givesHalfOfEachAtItsOwnBlur) {
  for (const int slices : {1, 2, 10}) {
    LiteralScene pane = flatScene(8.0F, paneRed);
    pane.settings.correctiveSlices = slices;
    const LiteralScene wall = flatScene(11.0F, wallRed);
    const LiteralDeepScene scene = deepScene(pane, [](int x, int y) {
      return LiteralDeepPixel{point(8.0F, paneRed(x, y), 0.5F), point(11.0F, wallRed(x, y), 1.0F)};
    });
    const ImagingFrame paneBlurred(pane);
    const ImagingFrame wallBlurred(wall);
    const DeepFrame frame(scene);
    for (int y = 0; y < height; ++y) {
      const std::vector<float> half = paneBlurred.row(y, 0, width).at(1);
      const std::vector<float> other = wallBlurred.row(y, 0, width).at(1);
      const auto row = frame.row(y, 0, width);
      for (int x = 0; x + frame.padding() < width - 1; ++x) {
        const auto at = static_cast<std::size_t>(x);
        EXPECT_NEAR(row.at(1)[at], 0.5F * (half[at] + other[at]), 1e-5F) << x << ' ' << y;
      }
    }
  }
}

TEST(DeepDefocus, emptyImage_staysZero) {
  const LiteralDeepScene scene =
      deepScene(flatScene(8.0F, grey), [](int, int) { return LiteralDeepPixel{}; });
  const DeepFrame frame(scene);
  const std::vector<float> row = frame.row(3, -4, width + 4).at(1);
  for (const float value : row) {
    EXPECT_EQ(value, 0.0F);
  }
}

TEST(DeepDefocus, halfCoverage_isHalvedByTheBackground) {
  const LiteralDeepScene scene = deepScene(
      flatScene(8.0F, grey), [](int, int) { return LiteralDeepPixel{point(8.0F, 0.6F, 0.5F)}; });
  const DeepFrame frame(scene);
  expectConstant(frame, 1, 0.3F);
  expectConstant(frame, 4, 0.5F);
}

TEST(DeepDefocus, negativeBloomThreshold_doesNotLightTheBackground) {
  LiteralScene flat = flatScene(8.0F, grey);
  flat.settings.bloom = 1.0F;
  flat.settings.bloomCurvature = 0.0F;
  flat.settings.bloomThreshold = -0.5F;
  const LiteralDeepScene scene =
      deepScene(flat, [](int, int) { return LiteralDeepPixel{point(8.0F, 0.6F, 0.5F)}; });
  // The sample shows 0.6 and the bloom of the 1.1 above the threshold, the background nothing.
  expectConstant(DeepFrame(scene), 1, 0.5F * (0.6F + 1.1F));
}

TEST(DeepDefocus, frontMode_leavesWhatIsBehindToTheBackground) {
  LiteralScene flat = flatScene(8.0F, grey);
  flat.settings.focusOutput = 1;
  const LiteralDeepScene scene = deepScene(flat, [](int, int) {
    return LiteralDeepPixel{point(8.0F, 0.8F, 0.25F), point(11.0F, 0.4F, 1.0F)};
  });
  expectConstant(DeepFrame(scene), 1, 0.2F);
  expectConstant(DeepFrame(scene), 4, 0.25F);
}

TEST(DeepDefocus, backMode_isNotDimmedByTheFront) {
  LiteralScene flat = flatScene(8.0F, grey);
  flat.settings.focusOutput = 2;
  const LiteralDeepScene scene = deepScene(flat, [](int, int) {
    return LiteralDeepPixel{point(8.0F, 0.8F, 0.25F), point(11.0F, 0.4F, 1.0F)};
  });
  expectConstant(DeepFrame(scene), 1, 0.4F);
  expectConstant(DeepFrame(scene), 4, 1.0F);
}

TEST(DeepDefocus, channelOfTheFlatPictureAlone_isSplattedUnderTheSampleWeights) {
  LiteralScene flat = flatScene(8.0F, grey);
  flat.channels = {1, extra};
  flat.settings.bokehChannels = {1, extra};
  flat.image.planes[extra] = constantPlane(flat.image.box, 3.0F);
  const LiteralDeepScene scene = deepScene(flat, [](int, int) {
    return LiteralDeepPixel{point(8.0F, 0.8F, 0.25F), point(9.0F, 0.8F, 0.5F)};
  });
  expectConstant(DeepFrame(scene), extra, 3.0F * 0.625F);
}

TEST(DeepDefocus, zeroAlphaSample_spreadsNoInfinity) {
  LiteralDeepScene scene = deepScene(flatScene(8.0F, grey), [](int, int) {
    LiteralDeepPixel pixel{point(8.0F, 0.0F, 0.0F), point(9.0F, 0.5F, 1.0F)};
    pixel[0].values[1] = 7.0F;
    return pixel;
  });
  expectConstant(DeepFrame(scene), 1, 0.5F);
}

TEST(DeepDefocus, mattesOfZero_sharpenTheSamplesButNotTheBackground) {
  LiteralScene flat = flatScene(8.0F, grey);
  flat.settings.defocusMatteChannel = 1;
  flat.mattes = flat.image;
  flat.mattes->planes[1] = constantPlane(flat.image.box, 0.0F);
  const LiteralDeepScene scene = deepScene(flat, [](int x, int) {
    return x == 20 ? LiteralDeepPixel{} : LiteralDeepPixel{point(8.0F, 0.5F, 1.0F)};
  });
  const std::vector<float> row = DeepFrame(scene).row(4, 0, width).at(1);
  // The gap's black spreads over its neighbours, whose own light stays where it is.
  EXPECT_EQ(row[20], 0.0F);
  EXPECT_LT(row[19], 0.5F - 1e-3F);
  EXPECT_GT(row[19], 0.4F);
  EXPECT_NEAR(row[5], 0.5F, tolerance);
}

TEST(DeepDefocus, regions_areThoseOfTheWholeRow) {
  const LiteralDeepScene scene = deepScene(flatScene(8.0F, grey), [](int x, int y) {
    return LiteralDeepPixel{point(8.0F, paneRed(x, y), 0.5F), point(11.0F, wallRed(x, y), 1.0F)};
  });
  const DeepFrame frame(scene);
  const std::vector<float> whole = frame.row(4, 0, width).at(1);
  const std::vector<float> part = frame.row(4, 12, 20).at(1);
  for (std::size_t i = 0; i < part.size(); ++i) {
    EXPECT_NEAR(part[i], whole[12 + i], tolerance);
  }
}

}  // namespace
}  // namespace drevin::test

#include "kernel/InputKernel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include "support/LiteralKernelBank.h"

namespace drevin {
namespace {

// An image of random values whose box starts at (left, bottom); reads outside it are counted.
struct TestImage {
  TestImage(unsigned seed, int imageLeft, int imageBottom, int imageWidth, int imageHeight)
      : left(imageLeft), bottom(imageBottom), width(imageWidth), height(imageHeight) {
    std::mt19937 generator(seed);
    std::uniform_real_distribution<float> value(-1.0F, 2.0F);
    for (int i = 0; i < width * height; ++i) {
      values.push_back(value(generator));
    }
  }

  float at(int column, int row) {
    const int x = column - left;
    const int y = row - bottom;
    if (x < 0 || x >= width || y < 0 || y >= height) {
      ++readsOutside;
      return 0.0F;
    }
    return values.data()[y * width + x];
  }

  dvKernelInput input() {
    dvKernelInput kernel;
    kernel.read = [this](int column, int row, int /*channel*/) { return at(column, row); };
    kernel.channels = {1};
    return kernel;
  }

  dvKernelSampling sampling(int side) const {
    return {left,
            bottom,
            width,
            height,
            static_cast<float>(width) / static_cast<float>(side),
            static_cast<float>(height) / static_cast<float>(side)};
  }

  int left;
  int bottom;
  int width;
  int height;
  int readsOutside = 0;
  std::vector<float> values;
};

// The cubic at one place in double, with the neighbourhood clamped to the image.
double literalSample(TestImage& image, double px, double py) {
  const int ix = static_cast<int>(px);
  const int iy = static_cast<int>(py);
  double across[4];
  for (int i = 0; i < 4; ++i) {
    double down[4];
    for (int j = 0; j < 4; ++j) {
      down[j] =
          static_cast<double>(image.at(std::clamp(ix - 1 + i, 0, image.width - 1) + image.left,
                                       std::clamp(iy - 1 + j, 0, image.height - 1) + image.bottom));
    }
    across[i] = test::literalCubic<double>(down[0], down[1], down[2], down[3], py - iy);
  }
  return test::literalCubic<double>(across[0], across[1], across[2], across[3], px - ix);
}

// One pixel of a kernel.
float sampleInputKernel(const dvKernelInput& input, const dvKernelSampling& sampling, int column,
                        int row, int channel) {
  dvInputKernelRows rows(input, sampling, column + 1, channel);
  std::vector<float> values(static_cast<std::size_t>(column) + 1);
  rows.sample(row, values.data());
  return values.back();
}

TEST(InputKernel, randomImages_agreeWithDoublePrecision) {
  for (unsigned seed = 0; seed < 40; ++seed) {
    const int width = 1 + static_cast<int>(seed * 7 % 23);
    const int height = 1 + static_cast<int>(seed * 5 % 19);
    TestImage image(seed, static_cast<int>(seed) - 20, 3 * static_cast<int>(seed) - 50, width,
                    height);
    const dvKernelInput input = image.input();
    const int side = 1 + static_cast<int>(seed % 32);
    const dvKernelSampling sampling = image.sampling(side);
    for (int i = 0; i < side * side; ++i) {
      const int column = i % side;
      const int row = i / side;
      const double px = (column + 0.5) * static_cast<double>(sampling.scaleX);
      const double py = (row + 0.5) * static_cast<double>(sampling.scaleY);
      ASSERT_NEAR(sampleInputKernel(input, sampling, column, row, 1), literalSample(image, px, py),
                  2e-4);
    }
    EXPECT_EQ(image.readsOutside, 0);
  }
}

TEST(InputKernel, rowsInAnyOrder_areTheSame) {
  TestImage image(7, -3, 5, 19, 23);
  const dvKernelInput input = image.input();
  constexpr int side = 31;
  const dvKernelSampling sampling = image.sampling(side);
  dvInputKernelRows rows(input, sampling, side, 1);
  std::mt19937 generator(2);
  std::vector<float> values(side);
  for (int i = 0; i < 200; ++i) {
    const int row = i < side ? side - 1 - i : static_cast<int>(generator() % side);
    rows.sample(row, values.data());
    for (int column = 0; column < side; ++column)
      ASSERT_EQ(values[static_cast<std::size_t>(column)],
                sampleInputKernel(input, sampling, column, row, 1));
  }
}

TEST(InputKernel, rowsOneAfterTheOther_readEachPixelOnce) {
  for (const int side : {5, 23, 60}) {
    std::map<std::pair<int, int>, int> reads;
    dvKernelInput input;
    input.read = [&](int column, int row, int) {
      return static_cast<float>(++reads[{column, row}]);
    };
    const float scale = 23.0F / static_cast<float>(side);
    dvInputKernelRows rows(input, {2, 4, 23, 23, scale, scale}, side, 1);
    std::vector<float> values(static_cast<std::size_t>(side));
    for (int row = 0; row < side; ++row)
      rows.sample(row, values.data());
    EXPECT_GE(reads.size(), 400U) << side;
    for (const auto& [pixel, times] : reads)
      EXPECT_EQ(times, 1) << side << ' ' << pixel.first << ' ' << pixel.second;
  }
}

TEST(InputKernel, constantImage_isThatConstant) {
  dvKernelInput input;
  input.read = [](int, int, int) { return 0.7F; };
  const dvKernelSampling sampling{-3, 9, 8, 5, 0.37F, 0.91F};
  for (int i = 0; i < 25; ++i) {
    EXPECT_EQ(sampleInputKernel(input, sampling, i % 5, i / 5, 1), 0.7F);
  }
}

TEST(InputKernel, scaleOne_liesHalfwayBetweenPixels) {
  dvKernelInput input;
  input.read = [](int column, int row, int) { return static_cast<float>(column + 10 * row); };
  const dvKernelSampling sampling{0, 0, 8, 8, 1.0F, 1.0F};
  EXPECT_FLOAT_EQ(sampleInputKernel(input, sampling, 3, 2, 1), 3.5F + 25.0F);
}

TEST(InputKernel, stepInTheImage_overshoots) {
  dvKernelInput input;
  input.read = [](int column, int, int) { return column == 2 || column == 3 ? 1.0F : 0.0F; };
  const dvKernelSampling sampling{0, 0, 8, 8, 1.0F, 1.0F};
  EXPECT_EQ(sampleInputKernel(input, sampling, 2, 4, 1), 1.125F);
  EXPECT_LT(sampleInputKernel(input, sampling, 4, 4, 1), 0.0F);
}

TEST(InputKernel, imageSmallerThanTheKernel_isReadFromItsBottomLeftCornerOnly) {
  int lastColumn = 0;
  int lastRow = 0;
  dvKernelInput input;
  input.read = [&](int column, int row, int) {
    lastColumn = std::max(lastColumn, column);
    lastRow = std::max(lastRow, row);
    return 0.0F;
  };
  const dvKernelSampling sampling{0, 0, 64, 64, 64.0F / 256.0F, 64.0F / 256.0F};
  for (int i = 0; i < 64 * 64; ++i) {
    sampleInputKernel(input, sampling, i % 64, i / 64, 1);
  }
  EXPECT_EQ(lastColumn, 17);  // base 15 and two more for the cubic
  EXPECT_EQ(lastRow, 17);
}

TEST(InputKernel, wantedChannelPresent_isRead) {
  dvKernelInput input;
  input.channels = {1, 4, 70};
  input.missingKernelChannel = 4;
  EXPECT_EQ(inputKernelChannel(input, 1), 1);
  EXPECT_EQ(inputKernelChannel(input, 70), 70);
}

TEST(InputKernel, wantedChannelMissing_givesWayToTheFallback) {
  dvKernelInput input;
  input.channels = {1, 4, 70};
  input.missingKernelChannel = 4;
  EXPECT_EQ(inputKernelChannel(input, 2), 4);
}

TEST(InputKernel, wantedChannelMissingWithoutFallback_isReadAllTheSame) {
  dvKernelInput input;
  input.channels = {1, 4};
  EXPECT_EQ(inputKernelChannel(input, 2), 2);
}

TEST(InputKernel, notConnected_readsZero) {
  EXPECT_EQ(sampleInputKernel({}, {0, 0, 8, 8, 1.0F, 1.0F}, 3, 3, 1), 0.0F);
}

TEST(InputKernel, emptyBox_readsZero) {
  dvKernelInput input;
  input.read = [](int, int, int) { return 1.0F; };
  EXPECT_EQ(sampleInputKernel(input, {0, 0, 0, 8, 1.0F, 1.0F}, 3, 3, 1), 0.0F);
  EXPECT_EQ(sampleInputKernel(input, {0, 0, 8, 0, 1.0F, 1.0F}, 3, 3, 1), 0.0F);
}

TEST(InputKernel, nanPixel_reachesOnlyPlacesWithinTwoPixels) {
  dvKernelInput input;
  input.read = [](int column, int row, int) {
    return column == 4 && row == 4 ? std::nanf("") : 1.0F;
  };
  const dvKernelSampling sampling{0, 0, 9, 9, 1.0F, 1.0F};
  for (int i = 0; i < 81; ++i) {
    const int column = i % 9;
    const int row = i / 9;
    const bool reached = column >= 2 && column <= 5 && row >= 2 && row <= 5;
    EXPECT_EQ(std::isnan(sampleInputKernel(input, sampling, column, row, 1)), reached) << i;
  }
}

TEST(InputKernel, scalesWithoutAPlace_stillReadInsideTheBox) {
  const float inf = std::numeric_limits<float>::infinity();
  for (const float scale : {std::nanf(""), inf, -inf, 1e30F, -5.0F, 0.0F}) {
    TestImage image(3, 2, 2, 4, 4);
    dvKernelSampling sampling = image.sampling(4);
    sampling.scaleX = sampling.scaleY = scale;
    sampleInputKernel(image.input(), sampling, 1, 1, 1);
    EXPECT_EQ(image.readsOutside, 0);
  }
}

}  // namespace
}  // namespace drevin

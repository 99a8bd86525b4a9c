#include "frames/DeepGrid.h"

#include <gtest/gtest.h>

#include "frames/FrameScenes.h"

namespace drevin::bench {
namespace {

using DD::Image::Chan_Alpha;
using DD::Image::Chan_DeepFront;

TEST(DeepGrid, pixel_hasItsSamplesNearestFirstOneUnitApart) {
  const embedded::Image flat = frameScene("uniform", 4, 2);
  const DeepGrid grid(flat, 3, true);
  const float depth = (*flat.planes.at(DD::Image::Chan_Z))[5];
  const float* sample = grid.pixel(1, 1);
  for (int i = 0; i < 3; ++i, sample += DeepGrid::sampleSize) {
    EXPECT_FLOAT_EQ(sample[4], depth + static_cast<float>(i));
    EXPECT_FLOAT_EQ(sample[5], sample[4] + 1.5F);
  }
}

TEST(DeepGrid, points_haveTheirBackAtTheirFront) {
  const DeepGrid grid(frameScene("ramp", 4, 2), 2, false);
  EXPECT_EQ(grid.pixel(3, 0)[4], grid.pixel(3, 0)[5]);
}

TEST(DeepGrid, colours_arePremultipliedByAlphaOfWhichTheFarthestIsOne) {
  const embedded::Image flat = frameScene("scene", 4, 2);
  const DeepGrid grid(flat, 2, false);
  const float red = (*flat.planes.at(DD::Image::Chan_Red))[0];
  const float* pixel = grid.pixel(0, 0);
  EXPECT_FLOAT_EQ(pixel[3], 0.5F);
  EXPECT_FLOAT_EQ(pixel[0], 0.5F * red);
  EXPECT_FLOAT_EQ(pixel[DeepGrid::sampleSize + 3], 1.0F);
  EXPECT_FLOAT_EQ(pixel[DeepGrid::sampleSize], red);
}

TEST(DeepGrid, rowOfSomeChannels_hasTheseAlone) {
  DeepGrid grid(frameScene("scene", 4, 2), 2, false);
  DD::Image::ChannelSet channels(Chan_Alpha);
  channels += Chan_DeepFront;
  embedded::DeepRow row;
  grid.readRow(1, 2, 4, channels, row);
  EXPECT_EQ(row.counts, (std::vector<std::uint32_t>{2, 2}));
  const float* pixel = grid.pixel(2, 1);
  ASSERT_EQ(row.values.size(), 8U);
  EXPECT_EQ(row.values[0], pixel[3]);
  EXPECT_EQ(row.values[1], pixel[4]);
  EXPECT_EQ(row.values[2], pixel[DeepGrid::sampleSize + 3]);
  EXPECT_EQ(row.values[3], pixel[DeepGrid::sampleSize + 4]);
}

}  // namespace
}  // namespace drevin::bench

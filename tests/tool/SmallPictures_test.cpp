#include "inspect/SmallPictures.h"

#include <gtest/gtest.h>

#include "DeepExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

TEST(SmallPictures, stride_leavesEnoughPixelsAndNotTooManySamples) {
  EXPECT_EQ(strideFor(0), 1);
  EXPECT_EQ(strideFor(150 * 100), 1);
  EXPECT_EQ(strideFor(1000 * 1000), 3);
  EXPECT_EQ(strideFor(3840 * 2160), 9);
  EXPECT_EQ(strideFor(150 * 100, 900000), 1);
  EXPECT_EQ(strideFor(150 * 100, 25000000), 5);
}

TEST(SmallPictures, everyNthPixel_hasItsValueAndTheWindowsAreSmaller) {
  Picture picture;
  picture.width = 10;
  picture.height = 7;
  picture.box = {2, -3, 9, 4};
  auto values = std::make_shared<std::vector<float>>();
  for (int i = 0; i < 49; ++i)
    values->push_back(static_cast<float>(i));
  picture.channels.push_back({"Z", "depth.Z", FloatSamples(values)});
  const Picture small = everyNth(picture, 3);
  EXPECT_EQ(small.width, 3);
  EXPECT_EQ(small.height, 2);
  EXPECT_EQ(small.box.width(), 3U);
  EXPECT_EQ(small.box.height(), 3U);
  EXPECT_EQ(*std::get<FloatSamples>(small.channels.front().samples),
            (std::vector<float>{0, 3, 6, 21, 24, 27, 42, 45, 48}));
}

TEST(SmallPictures, everyNthDeepPixel_hasAllItsSamples) {
  const ScratchFolder folder;
  DeepPartFixture part = opaqueDeepPart(7, 5, 0.0);
  part.samples = [](int x, int y) {
    DeepPixelFixture samples;
    for (int i = 0; i < x; ++i)
      samples.push_back({1.0, 0.25, 0.5, 0.75, 1.0 + i + 10.0 * (4 - y)});
    return samples;
  };
  writeDeepFixture(folder.file("deep.exr"), {part});
  DeepExrSource deep(folder.file("deep.exr"), "", "");
  const auto small = everyNth(deep, 2);
  EXPECT_EQ(small->box().w(), 4);
  EXPECT_EQ(small->box().h(), 3);
  const DD::Image::ChannelSet front(DD::Image::Chan_DeepFront);
  embedded::DeepRow row;
  for (int y = 0; y < 3; ++y) {
    small->readRow(y, 0, 4, front, row);
    EXPECT_EQ(row.counts, (std::vector<std::uint32_t>{0, 2, 4, 6}));
    const float below = 20.0F * static_cast<float>(y);
    ASSERT_EQ(row.values.size(), 12U);
    EXPECT_EQ(row.values.front(), 1.0F + below);
    EXPECT_EQ(row.values.back(), 6.0F + below);
  }
}

}  // namespace
}  // namespace drevintool::testing

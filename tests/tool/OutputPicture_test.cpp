#include "picture/OutputPicture.h"

#include <gtest/gtest.h>

namespace drevintool {
namespace {

// 2 x 2 at (1, 1): bottom row 1 2, top row 3 4.
Picture smallPicture(Samples samples) {
  Picture picture;
  picture.box = {1, 1, 3, 3};
  picture.channels.push_back({"mask", "other.mask", std::move(samples)});
  return picture;
}

TEST(CutSamples, insideTheBox_takesTheBits) {
  const Picture picture = smallPicture(
      std::make_shared<std::vector<std::uint16_t>>(std::vector<std::uint16_t>{1, 2, 3, 0x7C01}));
  const Samples cut = cutSamples(picture, picture.channels[0], {2, 1, 3, 3});
  EXPECT_EQ(*std::get<HalfSamples>(cut), (std::vector<std::uint16_t>{2, 0x7C01}));
}

TEST(CutSamples, outsideTheBox_repeatsTheNearestEdgePixel) {
  const Picture picture =
      smallPicture(std::make_shared<std::vector<float>>(std::vector<float>{1, 2, 3, 4}));
  const Samples cut = cutSamples(picture, picture.channels[0], {0, 0, 4, 4});
  EXPECT_EQ(*std::get<FloatSamples>(cut),
            (std::vector<float>{1, 1, 2, 2, 1, 1, 2, 2, 3, 3, 4, 4, 3, 3, 4, 4}));
}

TEST(CutSamples, objectNumbersOutsideTheBox_areZero) {
  const Picture picture = smallPicture(
      std::make_shared<std::vector<std::uint32_t>>(std::vector<std::uint32_t>{1, 2, 3, 4}));
  const Samples cut = cutSamples(picture, picture.channels[0], {0, 1, 3, 2});
  EXPECT_EQ(*std::get<UintSamples>(cut), (std::vector<std::uint32_t>{0, 1, 2}));
}

TEST(CutSamples, pictureWithoutPixels_isZero) {
  Picture picture;
  picture.channels.push_back({"R", "rgba.red", std::make_shared<std::vector<float>>()});
  const Samples cut = cutSamples(picture, picture.channels[0], {0, 0, 2, 1});
  EXPECT_EQ(*std::get<FloatSamples>(cut), (std::vector<float>{0, 0}));
}

}  // namespace
}  // namespace drevintool

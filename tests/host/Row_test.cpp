#include "DDImage/Row.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "host/HostBench.h"

using DD::Image::Box;
using DD::Image::Chan_Blue;
using DD::Image::Chan_Green;
using DD::Image::Chan_Red;
using DD::Image::Chan_Z;
using DD::Image::Channel;
using DD::Image::ChannelSet;
using DD::Image::Row;
using smooth::markedValue;

namespace {

const Box kBox(-3, 2, 5, 6);

/// A picture that makes its rows instead of showing its memory, and counts them.
class MadePicture : public DD::Image::Iop {
 public:
  MadePicture() : Iop(nullptr) { inputs(0); }
  const char* Class() const override { return "HostTestMade"; }
  const char* node_help() const override { return ""; }
  void engine(int y, int x, int r, DD::Image::ChannelMask channels, Row& row) override {
    left = x;
    right = r;
    ++rows;
    if (failing) error("no rows today");
    for (const Channel z : channels) {
      float* out = row.writable(z);
      for (int i = x; i < r; ++i)
        out[i] = markedValue(i, y, z);
    }
  }

  int left = 0;
  int right = 0;
  int rows = 0;
  int opened = 0;
  bool failing = false;

 protected:
  void _validate(bool /*for_real*/) override {
    info_.set(kBox);
    info_.channels(DD::Image::Mask_RGB);
  }
  void _open() override { ++opened; }
};

/// What the edge rule says of a picture of marked values in kBox.
float expectedAt(int x, int y, Channel z) {
  return markedValue(kBox.clampx(x), kBox.clampy(y), z);
}

template <class Source>
void expectEdgeRule(Source& source) {
  source.validate(true);
  const std::pair<int, int> spans[] = {{-3, 5}, {-9, 9}, {0, 2},  {-9, -5},
                                       {7, 9},  {4, 8},  {-5, -2}};
  for (const auto& [x, r] : spans) {
    for (int y = -2; y < 9; ++y) {
      Row row(x, r);
      row.get(source, y, x, r, DD::Image::Mask_Red | DD::Image::Mask_Blue);
      for (int i = x; i < r; ++i) {
        ASSERT_EQ(row[Chan_Red][i], expectedAt(i, y, Chan_Red)) << i << " " << y;
        ASSERT_EQ(row[Chan_Blue][i], expectedAt(i, y, Chan_Blue)) << i << " " << y;
        ASSERT_EQ(source.at(i, y, Chan_Red), expectedAt(i, y, Chan_Red)) << i << " " << y;
      }
    }
  }
}

}  // namespace

TEST(Row, neverWritten_readsZero) {
  const Row row(-4, 3);
  for (int x = -4; x < 3; ++x)
    EXPECT_EQ(row[Chan_Red][x], 0.0F);
  EXPECT_TRUE(row.is_zero(Chan_Red));
  EXPECT_EQ(row.getLeft(), -4);
  EXPECT_EQ(row.getRight(), 3);
}

TEST(Row, pointers_areBiasedToTheAbsoluteColumn) {
  Row row(100, 103);
  float* out = row.writable(Chan_Green);
  out[100] = 1.0F;
  out[102] = 3.0F;
  EXPECT_EQ(row[Chan_Green][100], 1.0F);
  EXPECT_EQ(row[Chan_Green] + 100, out + 100);
  EXPECT_EQ(row[Chan_Green][102], 3.0F);
  EXPECT_FALSE(row.is_zero(Chan_Green));
}

TEST(Row, erased_readsZeroAgain) {
  Row row(0, 2);
  row.writable(Chan_Red)[1] = 5.0F;
  row.writable(Chan_Blue)[1] = 6.0F;
  row.erase(ChannelSet(Chan_Red));
  EXPECT_EQ(row[Chan_Red][1], 0.0F);
  EXPECT_TRUE(row.is_zero(Chan_Red));
  EXPECT_EQ(row[Chan_Blue][1], 6.0F);
  row.erase(Chan_Blue);
  EXPECT_TRUE(row.is_zero(Chan_Blue));
  row.erase(static_cast<Channel>(1000));
}

TEST(Row, copy_takesOneSpanOfChannels) {
  Row from(0, 4);
  for (const Channel z : {Chan_Red, Chan_Green}) {
    float* out = from.writable(z);
    for (int x = 0; x < 4; ++x)
      out[x] = markedValue(x, 0, z);
  }
  Row to(0, 4);
  std::fill_n(to.writable(Chan_Red), 4, -1.0F);
  to.copy(from, ChannelSet(DD::Image::Mask_RGB), 1, 3);
  EXPECT_EQ(to[Chan_Red][0], -1.0F);
  EXPECT_EQ(to[Chan_Red][1], markedValue(1, 0, Chan_Red));
  EXPECT_EQ(to[Chan_Red][2], markedValue(2, 0, Chan_Red));
  EXPECT_EQ(to[Chan_Red][3], -1.0F);
  EXPECT_EQ(to[Chan_Green][2], markedValue(2, 0, Chan_Green));
  EXPECT_EQ(to[Chan_Blue][1], 0.0F) << "never written in the source";
  to.copy(Chan_Z, from, Chan_Green, 0, 4);
  EXPECT_EQ(to[Chan_Z][3], markedValue(3, 0, Chan_Green));
  to.copy(from, Chan_Green, 0, 1);
  EXPECT_EQ(to[Chan_Green][0], markedValue(0, 0, Chan_Green));
}

TEST(Row, copyWithinItself_keepsTheValues) {
  Row row(0, 2);
  row.writable(Chan_Red)[1] = 4.0F;
  row.copy(row, Chan_Red, 0, 2);
  EXPECT_EQ(row[Chan_Red][1], 4.0F);
}

TEST(RowGet, insideAPicture_pointsAtItsMemory) {
  embedded::ImageInput picture(smooth::markedImage(kBox));
  picture.validate(true);
  Row row(-2, 4);
  row.get(picture, 3, -2, 4, ChannelSet(Chan_Red));
  const embedded::Plane& plane = *picture.image().planes.at(Chan_Red);
  EXPECT_EQ(row[Chan_Red] - 2, plane.data() + kBox.w() + 1);
}

TEST(RowGet, writableAfterGet_leavesThePictureAlone) {
  embedded::ImageInput picture(smooth::markedImage(kBox));
  picture.validate(true);
  Row row(-3, 5);
  row.get(picture, 3, -3, 5, ChannelSet(Chan_Red));
  std::fill_n(row.writable(Chan_Red) - 3, 8, 0.0F);
  EXPECT_EQ(picture.at(0, 3, Chan_Red), markedValue(0, 3, Chan_Red));
}

TEST(RowGet, outsideThePicture_repeatsTheNearestEdgePixel) {
  embedded::ImageInput picture(smooth::markedImage(kBox));
  expectEdgeRule(picture);
}

TEST(RowGet, outsideAMadePicture_repeatsTheNearestEdgePixel) {
  MadePicture picture;
  expectEdgeRule(picture);
  EXPECT_EQ(picture.opened, 1) << "opened before its first row, once";
}

TEST(RowGet, madePicture_isAskedWithinItsBoxOnly) {
  MadePicture picture;
  picture.validate(true);
  Row row(-9, 9);
  row.get(picture, 4, -9, 9, ChannelSet(Chan_Red));
  EXPECT_EQ(picture.left, -3);
  EXPECT_EQ(picture.right, 5);
  EXPECT_EQ(picture.rows, 1);
  row.get(picture, 4, 7, 9, ChannelSet(Chan_Red));
  EXPECT_EQ(picture.left, 4);
  EXPECT_EQ(picture.right, 5);
}

TEST(RowGet, rowPastTheTop_isTheLastRow) {
  embedded::ImageInput picture(smooth::markedImage(kBox));
  picture.validate(true);
  Row row(0, 1);
  row.get(picture, kBox.t(), 0, 1, ChannelSet(Chan_Red));
  EXPECT_EQ(row[Chan_Red][0], markedValue(0, kBox.t() - 1, Chan_Red));
}

TEST(RowGet, missingChannel_readsZeroAlsoOverOldValues) {
  embedded::ImageInput picture(smooth::markedImage(kBox));
  picture.validate(true);
  Row row(0, 2);
  std::fill_n(row.writable(Chan_Z), 2, 9.0F);
  row.get(picture, 3, 0, 2, ChannelSet(Chan_Z));
  EXPECT_EQ(row[Chan_Z][0], 0.0F);
  EXPECT_EQ(picture.at(0, 3, Chan_Z), 0.0F);
}

TEST(RowGet, emptyBox_readsZero) {
  embedded::Image image;
  image.format = DD::Image::Format(4, 4);
  image.planes[Chan_Red] = std::make_shared<embedded::Plane>();
  embedded::ImageInput picture(image);
  picture.validate(true);
  Row row(0, 4);
  std::fill_n(row.writable(Chan_Red), 4, 9.0F);
  row.get(picture, 0, 0, 4, ChannelSet(Chan_Red));
  EXPECT_EQ(row[Chan_Red][2], 0.0F);
  EXPECT_EQ(picture.at(1, 1, Chan_Red), 0.0F);
}

TEST(RowGet, operatorInError_readsZero) {
  MadePicture picture;
  picture.validate(true);
  picture.failing = true;
  Row row(0, 2);
  row.get(picture, 3, 0, 2, ChannelSet(Chan_Red));
  EXPECT_EQ(row[Chan_Red][0], 0.0F) << "the row in which it failed";
  row.get(picture, 4, 0, 2, ChannelSet(Chan_Red));
  EXPECT_EQ(picture.rows, 1) << "no further row is made";
  EXPECT_EQ(picture.at(0, 3, Chan_Red), 0.0F);
}

TEST(RowGet, emptySpan_doesNothing) {
  MadePicture picture;
  picture.validate(true);
  Row row(0, 2);
  row.get(picture, 3, 1, 1, ChannelSet(Chan_Red));
  EXPECT_EQ(picture.rows, 0);
}

TEST(RowGet, partsOfARow_standSideBySide) {
  embedded::ImageInput picture(smooth::markedImage(kBox));
  picture.validate(true);
  Row row(-6, 8);
  row.get(picture, 3, -6, 1, ChannelSet(Chan_Red));
  row.get(picture, 3, 1, 8, ChannelSet(Chan_Red));
  for (int x = -6; x < 8; ++x)
    EXPECT_EQ(row[Chan_Red][x], expectedAt(x, 3, Chan_Red)) << x;
}

TEST(RowGet, specialValues_passUnchanged) {
  embedded::Image image = smooth::markedImage(Box(0, 0, 3, 1), DD::Image::Mask_Red);
  image.planes[Chan_Red] = std::make_shared<embedded::Plane>(embedded::Plane{
      std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), -0.0F});
  embedded::ImageInput picture(image);
  picture.validate(true);
  Row row(-1, 4);
  row.get(picture, 0, -1, 4, ChannelSet(Chan_Red));
  EXPECT_TRUE(std::isnan(row[Chan_Red][-1]));
  EXPECT_TRUE(std::isinf(row[Chan_Red][1]));
  EXPECT_TRUE(std::signbit(row[Chan_Red][3]));
}

TEST(Iop, atOnAMadePicture_opensItOnce) {
  MadePicture picture;
  picture.validate(true);
  EXPECT_EQ(picture.at(1, 3, Chan_Red), markedValue(1, 3, Chan_Red));
  EXPECT_EQ(picture.at(-50, 50, Chan_Red), markedValue(-3, 5, Chan_Red));
  EXPECT_EQ(picture.opened, 1);
}

TEST(ImageInput, planeThatDoesNotFillTheBox_isRefused) {
  embedded::Image image = smooth::markedImage(kBox);
  image.planes[Chan_Red] = std::make_shared<embedded::Plane>(3);
  EXPECT_THROW(embedded::ImageInput{image}, std::invalid_argument);
  image.planes[Chan_Red] = nullptr;
  EXPECT_THROW(embedded::ImageInput{image}, std::invalid_argument);
}

TEST(ImageInput, info_isFormatBoxAndChannels) {
  embedded::ImageInput picture(smooth::markedImage(kBox));
  picture.validate(true);
  EXPECT_EQ(Box(picture.info()), kBox) << "the box is apart from the format";
  EXPECT_EQ(picture.format().width(), 8);
  EXPECT_EQ(picture.full_size_format().height(), 6);
  EXPECT_EQ(picture.channels(), ChannelSet(DD::Image::Mask_RGBA));
  EXPECT_FALSE(picture.black_outside());
}

#include "picture/PngWriter.h"

#include <gtest/gtest.h>
#include <png.h>

#include <limits>

#include "ScratchFolder.h"

namespace drevintool {
namespace {

using testing::ScratchFolder;

struct Decoded {
  unsigned width = 0;
  unsigned height = 0;
  bool alpha = false;
  std::vector<std::uint8_t> bytes;
};

Decoded decode(const std::string& path) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  Decoded result;
  if (png_image_begin_read_from_file(&image, path.c_str()) == 0) return result;
  result.alpha = (image.format & PNG_FORMAT_FLAG_ALPHA) != 0;
  image.format = result.alpha ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB;
  result.width = image.width;
  result.height = image.height;
  result.bytes.resize(PNG_IMAGE_SIZE(image));
  png_image_finish_read(&image, nullptr, result.bytes.data(), 0, nullptr);
  return result;
}

Samples floats(std::vector<float> values) {
  return std::make_shared<std::vector<float>>(std::move(values));
}

OutputPicture column(bool alpha) {
  OutputPicture picture;
  picture.box = {0, 0, 1, 2};
  picture.display = {0, 0, 0, 1};
  picture.channels = {{"R", "rgba.red", floats({0.0F, 1.0F})},
                      {"B", "rgba.blue", floats({0.5F, 0.0F})}};
  if (alpha) picture.channels.push_back({"A", "rgba.alpha", floats({1.0F, 0.5F})});
  return picture;
}

TEST(SrgbCode, knownPointsOfTheCurve) {
  EXPECT_EQ(srgbCode(0.0F), 0);
  EXPECT_EQ(srgbCode(1.0F), 255);
  EXPECT_EQ(srgbCode(0.5F), 188);
  EXPECT_EQ(srgbCode(0.18F), 118);
  EXPECT_EQ(srgbCode(0.0031308F), 10);
}

TEST(SrgbCode, outsideValuesAreClampedAndNanIsZero) {
  EXPECT_EQ(srgbCode(-1.0F), 0);
  EXPECT_EQ(srgbCode(1e30F), 255);
  EXPECT_EQ(srgbCode(std::numeric_limits<float>::infinity()), 255);
  EXPECT_EQ(srgbCode(-std::numeric_limits<float>::infinity()), 0);
  EXPECT_EQ(srgbCode(std::numeric_limits<float>::quiet_NaN()), 0);
}

TEST(PngWriter, topRowComesFirst_andALackingColourIsBlack) {
  const ScratchFolder folder;
  writePng(column(false), folder.file("a.png"));
  const Decoded picture = decode(folder.file("a.png"));
  ASSERT_EQ(picture.width, 1U);
  ASSERT_EQ(picture.height, 2U);
  EXPECT_FALSE(picture.alpha);
  EXPECT_EQ(picture.bytes, (std::vector<std::uint8_t>{255, 0, 0, 0, 0, 188}));
}

TEST(PngWriter, alpha_isStoredLinearly) {
  const ScratchFolder folder;
  writePng(column(true), folder.file("a.png"));
  const Decoded picture = decode(folder.file("a.png"));
  ASSERT_TRUE(picture.alpha);
  EXPECT_EQ(picture.bytes, (std::vector<std::uint8_t>{255, 0, 0, 128, 0, 0, 188, 255}));
}

TEST(PngWriter, halfSamples_areTaken) {
  const ScratchFolder folder;
  OutputPicture picture = column(false);
  picture.channels[0].samples =
      std::make_shared<std::vector<std::uint16_t>>(std::vector<std::uint16_t>{0x3C00, 0});
  writePng(picture, folder.file("a.png"));
  EXPECT_EQ(decode(folder.file("a.png")).bytes[3], 255);
}

}  // namespace
}  // namespace drevintool

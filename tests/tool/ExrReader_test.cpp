#include "picture/ExrReader.h"

#include <gtest/gtest.h>

#include "ExrFixture.h"
#include "ScratchFolder.h"
#include "picture/ChannelNames.h"
#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

using testing::PartFixture;
using testing::ScratchFolder;

double position(int x, int y) {
  return x + 100.0 * y;
}

PartFixture floatPart(const Imath::Box2i& display, const Imath::Box2i& data,
                      const std::vector<std::string>& names) {
  PartFixture part;
  part.display = display;
  part.data = data;
  for (const std::string& name : names)
    part.channels.push_back({name, Imf::FLOAT, position});
  return part;
}

float sampleAt(const Picture& picture, const std::string& name, int x, int y) {
  const PictureChannel* channel = findChannel(picture, name);
  const auto row = static_cast<std::size_t>(y - picture.box.y);
  return std::get<FloatSamples>(channel->samples)
      ->at(row * picture.box.width() + static_cast<std::size_t>(x - picture.box.x));
}

std::string failureOf(const std::string& path) {
  try {
    readExr(path);
  } catch (const ToolError& error) {
    EXPECT_EQ(error.code(), ExitCode::InputUnreadable);
    return error.what();
  }
  return {};
}

TEST(ExrReader, rowZero_isTheBottomRowOfTheDisplayWindow) {
  const ScratchFolder folder;
  const Imath::Box2i display({10, 20}, {13, 22});
  testing::writeExrFixture(folder.file("a.exr"), floatPart(display, display, {"Z"}));
  const Picture picture = readExr(folder.file("a.exr"));
  EXPECT_EQ(picture.width, 4);
  EXPECT_EQ(picture.height, 3);
  EXPECT_EQ(sampleAt(picture, "Z", 0, 0), 10 + 100 * 22);
  EXPECT_EQ(sampleAt(picture, "Z", 3, 2), 13 + 100 * 20);
}

TEST(ExrReader, dataWindow_becomesTheBox) {
  const ScratchFolder folder;
  testing::writeExrFixture(folder.file("a.exr"),
                           floatPart({{0, 0}, {9, 9}}, {{-2, 5}, {3, 12}}, {"Z"}));
  const Picture picture = readExr(folder.file("a.exr"));
  EXPECT_EQ(picture.box.x, -2);
  EXPECT_EQ(picture.box.r, 4);
  EXPECT_EQ(picture.box.y, -3);
  EXPECT_EQ(picture.box.t, 5);
  EXPECT_EQ(sampleAt(picture, "Z", -2, -3), -2 + 100 * 12);
}

// Pictures are read some hundred rows at a time.
TEST(ExrReader, tallParts_haveEveryRowInItsPlaceAndZerosAround) {
  const ScratchFolder folder;
  PartFixture first = floatPart({{0, 0}, {4, 899}}, {{0, 100}, {4, 869}}, {"A"});
  PartFixture second = floatPart({{0, 0}, {4, 899}}, {{1, 3}, {6, 620}}, {"Z"});
  first.name = "one";
  second.name = "two";
  testing::writeMultiPartFixture(folder.file("a.exr"), {first, second});
  const Picture picture = readExr(folder.file("a.exr"));
  EXPECT_EQ(picture.box.area(), 7U * 867U);
  for (int y = picture.box.y; y < picture.box.t; ++y) {
    const int row = 899 - y;
    for (int x = 0; x < 7; ++x) {
      const bool inFirst = x < 5 && row >= 100 && row <= 869;
      const bool inSecond = x > 0 && row >= 3 && row <= 620;
      ASSERT_EQ(sampleAt(picture, "A", x, y), inFirst ? position(x, row) : 0.0) << x << "," << y;
      ASSERT_EQ(sampleAt(picture, "Z", x, y), inSecond ? position(x, row) : 0.0) << x << "," << y;
    }
  }
}

TEST(ExrReader, tiledFile_readsAsTheScanlineOne) {
  const ScratchFolder folder;
  PartFixture part = floatPart({{0, 0}, {40, 30}}, {{0, 0}, {40, 30}}, {"Z"});
  part.tileSize = 16;
  testing::writeExrFixture(folder.file("tiled.exr"), part);
  const Picture picture = readExr(folder.file("tiled.exr"));
  EXPECT_EQ(sampleAt(picture, "Z", 40, 0), 40 + 100 * 30);
  EXPECT_EQ(sampleAt(picture, "Z", 17, 30), 17);
}

TEST(ExrReader, mipMappedFile_readsTheFullLevel) {
  const ScratchFolder folder;
  PartFixture part = floatPart({{0, 0}, {40, 30}}, {{0, 0}, {40, 30}}, {"Z"});
  part.tileSize = 16;
  part.mipMaps = true;
  testing::writeExrFixture(folder.file("mip.exr"), part);
  EXPECT_EQ(sampleAt(readExr(folder.file("mip.exr")), "Z", 20, 10), 20 + 100 * 20);
}

TEST(ExrReader, parts_mergeAsLayersOverTheUnionOfTheirWindows) {
  const ScratchFolder folder;
  PartFixture first = floatPart({{0, 0}, {9, 9}}, {{0, 0}, {4, 4}}, {"R"});
  PartFixture second = floatPart({{0, 0}, {9, 9}}, {{3, 3}, {9, 9}}, {"Z"});
  first.name = "colour";
  second.name = "depth";
  testing::writeMultiPartFixture(folder.file("a.exr"), {first, second});
  const Picture picture = readExr(folder.file("a.exr"));
  EXPECT_EQ(picture.box.width(), 10U);
  EXPECT_EQ(picture.box.height(), 10U);
  EXPECT_EQ(sampleAt(picture, "R", 4, 5), 4 + 100 * 4);
  EXPECT_EQ(sampleAt(picture, "R", 9, 0), 0.0F) << "outside the part's window";
  EXPECT_EQ(sampleAt(picture, "Z", 9, 0), 9 + 100 * 9);
}

TEST(ExrReader, nameTakenByAnEarlierPart_getsThePartsName) {
  const ScratchFolder folder;
  PartFixture first = floatPart({{0, 0}, {1, 1}}, {{0, 0}, {1, 1}}, {"R", "Z"});
  PartFixture second = first;
  first.name = "right";
  second.name = "left";
  testing::writeMultiPartFixture(folder.file("a.exr"), {first, second});
  const Picture picture = readExr(folder.file("a.exr"));
  EXPECT_EQ(channelList(picture), "R, Z, left.R, left.Z");
  EXPECT_EQ(picture.channels[3].hostName, "left.Z");
}

TEST(ExrReader, twoNamesOfOneHostChannel_bothStay) {
  const ScratchFolder folder;
  testing::writeExrFixture(folder.file("a.exr"),
                           floatPart({{0, 0}, {1, 1}}, {{0, 0}, {1, 1}}, {"Z", "depth.Z", "mask"}));
  const Picture picture = readExr(folder.file("a.exr"));
  ASSERT_EQ(picture.channels.size(), 3U);
  EXPECT_NE(picture.channels[0].hostName, picture.channels[1].hostName);
}

TEST(ExrReader, unsignedIntegers_keepTheirBits) {
  const ScratchFolder folder;
  PartFixture part = floatPart({{0, 0}, {0, 0}}, {{0, 0}, {0, 0}}, {});
  part.channels.push_back({"id", Imf::UINT, [](int, int) { return 4294967295.0; }});
  testing::writeExrFixture(folder.file("a.exr"), part);
  const Picture picture = readExr(folder.file("a.exr"));
  ASSERT_TRUE(picture.channels[0].isUint());
  EXPECT_EQ(std::get<UintSamples>(picture.channels[0].samples)->at(0), 4294967295U);
}

TEST(ExrReader, missingEmptyDirectoryAndOtherFiles_areNamed) {
  const ScratchFolder folder;
  testing::writeBytes(folder.file("empty.exr"), "");
  testing::writeBytes(folder.file("text.exr"), "this is no picture at all");
  EXPECT_NE(failureOf(folder.file("none.exr")).find("No such file"), std::string::npos);
  EXPECT_NE(failureOf(folder.file("empty.exr")).find("empty"), std::string::npos);
  EXPECT_NE(failureOf(folder.path()).find("directory"), std::string::npos);
  EXPECT_NE(failureOf(folder.file("text.exr")).find("not an OpenEXR"), std::string::npos);
}

TEST(ExrReader, truncatedAtAnyPlace_isRefused) {
  const ScratchFolder folder;
  testing::writeExrFixture(folder.file("whole.exr"), testing::rgbazPart(40, 30, 5.0));
  const std::string whole = testing::bytesOfFile(folder.file("whole.exr"));
  for (const std::size_t length :
       {std::size_t{10}, std::size_t{100}, whole.size() / 2, whole.size() - 1}) {
    testing::writeBytes(folder.file("cut.exr"), whole.substr(0, length));
    EXPECT_NE(failureOf(folder.file("cut.exr")), "") << length << " of " << whole.size();
  }
}

// Replaces the data window of a file in place.
void setDataWindow(std::string& bytes, const std::vector<std::int32_t>& corners) {
  const std::string key("dataWindow\0box2i\0", 17);
  const std::size_t at = bytes.find(key) + key.size() + 4;
  bytes.replace(at, 16, std::string(reinterpret_cast<const char*>(corners.data()), 16));
}

TEST(ExrReader, windowsThatLie_areRefusedBeforeAllocating) {
  const ScratchFolder folder;
  testing::writeExrFixture(folder.file("whole.exr"), testing::rgbazPart(4, 3, 5.0));
  const std::vector<std::vector<std::int32_t>> windows = {
      {0, 0, 2147483646, 2147483646},
      {-2147483647, -2147483647, 2147483647, 2147483647},
      {3, 0, 0, 2},
      {0, 0, 3, 100000},
      {0, 0, 131071, 15},
      {1000000000, 0, 1000000003, 2}};
  for (const std::vector<std::int32_t>& window : windows) {
    std::string bytes = testing::bytesOfFile(folder.file("whole.exr"));
    setDataWindow(bytes, window);
    testing::writeBytes(folder.file("lie.exr"), bytes);
    EXPECT_NE(failureOf(folder.file("lie.exr")), "") << window[2] << " " << window[3];
  }
}

TEST(ExrReader, subsampledChannels_areRefused) {
  const ScratchFolder folder;
  testing::writeExrFixture(folder.file("a.exr"), testing::rgbazPart(4, 4, 1.0));
  std::string bytes = testing::bytesOfFile(folder.file("a.exr"));
  const std::size_t at = bytes.find(std::string("A\0\1\0\0\0", 6)) + 10;
  bytes[at] = 2;  // x sampling of A
  testing::writeBytes(folder.file("a.exr"), bytes);
  EXPECT_NE(failureOf(folder.file("a.exr")).find("subsampled"), std::string::npos);
}

}  // namespace
}  // namespace drevintool

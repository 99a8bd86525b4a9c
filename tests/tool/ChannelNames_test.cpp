#include "picture/ChannelNames.h"

#include <gtest/gtest.h>

namespace drevintool {
namespace {

PictureChannel channelOf(const std::string& fileName) {
  return {fileName, hostChannelName(fileName), std::make_shared<std::vector<float>>()};
}

Picture pictureOf(const std::vector<std::string>& names) {
  Picture picture;
  for (const std::string& name : names)
    picture.channels.push_back(channelOf(name));
  return picture;
}

TEST(HostChannelName, colourLetters_areTheRgbaLayer) {
  EXPECT_EQ(hostChannelName("R"), "rgba.red");
  EXPECT_EQ(hostChannelName("green"), "rgba.green");
  EXPECT_EQ(hostChannelName("BLUE"), "rgba.blue");
  EXPECT_EQ(hostChannelName("rgba.A"), "rgba.alpha");
  EXPECT_EQ(hostChannelName("rgba.red"), "rgba.red");
}

TEST(HostChannelName, depth_isDepthZ) {
  EXPECT_EQ(hostChannelName("Z"), "depth.Z");
  EXPECT_EQ(hostChannelName("depth.Z"), "depth.Z");
}

TEST(HostChannelName, layers_stayAsTheyAre) {
  EXPECT_EQ(hostChannelName("left.R"), "left.R");
  EXPECT_EQ(hostChannelName("forward.left.u"), "forward.left.u");
}

TEST(HostChannelName, otherNamesWithoutLayer_goToOther) {
  EXPECT_EQ(hostChannelName("mask"), "other.mask");
  EXPECT_EQ(hostChannelName("ZBack"), "other.ZBack");
}

TEST(FindChannel, hostNameBeatsFileNameBeatsShorthand) {
  const Picture picture = pictureOf({"R", "Z", "left.Z"});
  EXPECT_EQ(findChannel(picture, "rgba.red")->fileName, "R");
  EXPECT_EQ(findChannel(picture, "left.Z")->fileName, "left.Z");
  EXPECT_EQ(findChannel(picture, "red")->fileName, "R");
  EXPECT_EQ(findChannel(picture, "depth.Z")->fileName, "Z");
  EXPECT_EQ(findChannel(picture, "A"), nullptr);
}

TEST(ChannelList, namesAreJoinedAndCleaned) {
  EXPECT_EQ(channelList(pictureOf({"A", "bad\nname"})), "A, bad name");
  EXPECT_EQ(channelList(pictureOf({})), "no channels");
}

TEST(ChannelList, veryManyChannels_areCutWithTheirCount) {
  const Picture picture = pictureOf(std::vector<std::string>(2000, "layer.channel"));
  const std::string list = channelList(picture);
  EXPECT_LT(list.size(), 2200U);
  EXPECT_NE(list.find("(2000 channels)"), std::string::npos);
}

TEST(SplitList, blanksAroundPiecesAreDropped) {
  EXPECT_EQ(splitList("a, b ,c"), (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(splitList("a,,"), (std::vector<std::string>{"a", "", ""}));
  EXPECT_TRUE(splitList("").empty());
}

}  // namespace
}  // namespace drevintool

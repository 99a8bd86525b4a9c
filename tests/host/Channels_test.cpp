#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "DDImage/ChannelSet.h"
#include "DDImage/Hash.h"

using DD::Image::Channel;
using DD::Image::ChannelSet;
using DD::Image::findChannel;
using DD::Image::getChannel;
using DD::Image::getLayerName;
using DD::Image::getName;

TEST(ChannelNames, reservedNumbers_haveTheirNames) {
  EXPECT_STREQ(getName(DD::Image::Chan_Black), "none");
  EXPECT_STREQ(getName(DD::Image::Chan_Red), "rgba.red");
  EXPECT_STREQ(getName(DD::Image::Chan_Alpha), "rgba.alpha");
  EXPECT_STREQ(getName(DD::Image::Chan_Z), "depth.Z");
  EXPECT_STREQ(getName(DD::Image::Chan_DeepFront), "deep.front");
  EXPECT_STREQ(getName(DD::Image::Chan_DeepBack), "deep.back");
  EXPECT_EQ(getChannel("depth.Z"), DD::Image::Chan_Z);
}

TEST(ChannelNames, newName_getsANumberThatLasts) {
  EXPECT_EQ(findChannel("channels.fresh"), DD::Image::Chan_Black);
  const Channel made = getChannel("channels.fresh");
  EXPECT_GT(made, DD::Image::Chan_DeepBack);
  EXPECT_EQ(getChannel("channels.fresh"), made);
  EXPECT_EQ(findChannel("channels.fresh"), made);
  EXPECT_STREQ(getName(made), "channels.fresh");
}

TEST(ChannelNames, layer_isAllBeforeTheLastDot) {
  EXPECT_STREQ(getLayerName(DD::Image::Chan_Red), "rgba");
  EXPECT_STREQ(getLayerName(getChannel("a.b.c")), "a.b");
  EXPECT_STREQ(getLayerName(getChannel("channelsNoLayer")), "");
}

TEST(ChannelNames, noneEmptyAndUnknown_areBlack) {
  EXPECT_EQ(getChannel("none"), DD::Image::Chan_Black);
  EXPECT_EQ(getChannel(""), DD::Image::Chan_Black);
  EXPECT_EQ(getChannel(nullptr), DD::Image::Chan_Black);
  EXPECT_EQ(findChannel(nullptr), DD::Image::Chan_Black);
  EXPECT_STREQ(getName(DD::Image::Chan_Last), "none");
}

TEST(ChannelNames, fromManyThreads_oneNumberForEachName) {
  constexpr int kThreads = 4;
  std::vector<std::vector<Channel>> seen(kThreads);
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < 20; ++i)
        seen[static_cast<std::size_t>(t)].push_back(
            getChannel(("threads.c" + std::to_string(i)).c_str()));
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  for (const auto& numbers : seen)
    EXPECT_EQ(numbers, seen.front());
}

TEST(ChannelSet, black_isNeverInASet) {
  ChannelSet set;
  set += DD::Image::Chan_Black;
  EXPECT_TRUE(set.empty());
  EXPECT_FALSE(ChannelSet(DD::Image::Mask_All).contains(DD::Image::Chan_Black));
}

TEST(ChannelSet, foreach_visitsAscendingAndNeverBlack) {
  ChannelSet set;
  set += static_cast<Channel>(DD::Image::Chan_Last);
  set += DD::Image::Chan_Blue;
  set += static_cast<Channel>(64);
  set += static_cast<Channel>(63);
  set += DD::Image::Chan_Red;
  std::vector<int> byMacro;
  foreach (z, set) {
    byMacro.push_back(z);
  }
  std::vector<int> byRange;
  for (const Channel z : set)
    byRange.push_back(z);
  EXPECT_EQ(byMacro, (std::vector<int>{1, 3, 63, 64, 1023}));
  EXPECT_EQ(byRange, byMacro);
  EXPECT_EQ(set.size(), 5U);
}

TEST(ChannelSet, masks_areTheNamedChannels) {
  const ChannelSet rgba(DD::Image::Mask_RGBA);
  EXPECT_EQ(rgba.size(), 4U);
  EXPECT_TRUE(rgba.contains(DD::Image::Chan_Red));
  EXPECT_TRUE(rgba.contains(DD::Image::Chan_Alpha));
  EXPECT_FALSE(rgba.contains(DD::Image::Chan_Z));
  EXPECT_EQ(ChannelSet(DD::Image::Mask_RGB | DD::Image::Mask_Alpha), rgba);
  EXPECT_TRUE(ChannelSet(DD::Image::Mask_None).empty());
  EXPECT_EQ(ChannelSet(DD::Image::Mask_Deep).first(), DD::Image::Chan_DeepFront);
}

TEST(ChannelSet, all_holdsChannelsNamedLater) {
  const ChannelSet all(DD::Image::Mask_All);
  EXPECT_TRUE(all.all());
  EXPECT_TRUE(all.contains(getChannel("channels.later")));
  EXPECT_EQ(all.size(), 1023U);
  ChannelSet without(all);
  without -= DD::Image::Chan_Red;
  EXPECT_FALSE(without.all());
}

TEST(ChannelSet, arithmetic_isThatOfSets) {
  ChannelSet set(DD::Image::Mask_RGB);
  set += DD::Image::Mask_Z;
  EXPECT_EQ(set.size(), 4U);
  set -= DD::Image::Chan_Green;
  set &= DD::Image::Mask_RGB;
  EXPECT_EQ(set, DD::Image::Mask_Red | DD::Image::Mask_Blue);
  EXPECT_TRUE(ChannelSet(DD::Image::Mask_RGB).contains(set));
  EXPECT_FALSE(set.contains(ChannelSet(DD::Image::Mask_RGB)));
  EXPECT_TRUE(set & DD::Image::Chan_Red);
  EXPECT_EQ(set - ChannelSet(DD::Image::Chan_Red), ChannelSet(DD::Image::Chan_Blue));
  EXPECT_EQ(set + ChannelSet(DD::Image::Chan_Green), ChannelSet(DD::Image::Mask_RGB));
  set &= DD::Image::Chan_Blue;
  EXPECT_EQ(set, ChannelSet(DD::Image::Chan_Blue));
}

TEST(ChannelSet, fromList_holdsThem) {
  const Channel list[] = {DD::Image::Chan_Blue, DD::Image::Chan_Black, DD::Image::Chan_Red};
  EXPECT_EQ(ChannelSet(list, 3), DD::Image::Mask_Red | DD::Image::Mask_Blue);
}

TEST(ChannelSet, hash_tellsSetsApart) {
  const auto hashOf = [](const ChannelSet& set) {
    DD::Image::Hash hash;
    set.append(hash);
    return hash;
  };
  EXPECT_EQ(hashOf(DD::Image::Mask_RGB), hashOf(DD::Image::Mask_RGB));
  EXPECT_NE(hashOf(DD::Image::Mask_RGB), hashOf(DD::Image::Mask_RGBA));
  EXPECT_NE(hashOf(DD::Image::Mask_RGB), hashOf(static_cast<Channel>(900)));
}

#include <gtest/gtest.h>

#include "DDImage/ChannelMap.h"

using namespace DD::Image;

TEST(ChannelMap, places_areInAscendingOrderOfTheChannels) {
  const ChannelMap map(ChannelSet(Mask_Deep | Mask_Alpha | Mask_Green));
  EXPECT_EQ(map.size(), 4U);
  EXPECT_EQ(map.chanNo(Chan_Green), 0);
  EXPECT_EQ(map.chanNo(Chan_Alpha), 1);
  EXPECT_EQ(map.chanNo(Chan_DeepFront), 2);
  EXPECT_EQ(map.chanNo(Chan_DeepBack), 3);
}

TEST(ChannelMap, otherChannels_haveNoPlace) {
  const ChannelMap map(ChannelSet(Mask_Deep | Mask_Alpha));
  EXPECT_EQ(map.chanNo(Chan_Red), -1);
  EXPECT_EQ(map.chanNo(Chan_Black), -1);
  EXPECT_EQ(map.chanNo(Chan_Last), -1);
  EXPECT_FALSE(map.contains(Chan_Red));
  EXPECT_FALSE(map.containsAll(Mask_RGBA));
  EXPECT_TRUE(map.containsAll(Mask_Deep));
}

TEST(ChannelMap, convertsToItsSet) {
  const ChannelSet channels(Mask_RGBA | Mask_Z);
  const ChannelMap map(channels);
  EXPECT_EQ(static_cast<const ChannelSet&>(map), channels);
}

TEST(ChannelMap, channelsNamedAtRunTime_comeLast) {
  const Channel named = getChannel("beauty.specular");
  const ChannelMap map(ChannelSet(named) + ChannelSet(Mask_Deep));
  EXPECT_EQ(map.chanNo(named), 2);
}

TEST(ChannelMap, everyChannel_hasItsPlace) {
  const ChannelMap map{ChannelSet(Mask_All)};
  EXPECT_EQ(map.size(), static_cast<std::size_t>(Chan_Last));
  EXPECT_EQ(map.chanNo(Chan_Red), 0);
  EXPECT_EQ(map.chanNo(Chan_Last), Chan_Last - 1);
}

TEST(ChannelMap, ofNothing_isEmpty) {
  EXPECT_TRUE(ChannelMap().empty());
  EXPECT_EQ(ChannelMap().size(), 0U);
  EXPECT_EQ(ChannelMap().chanNo(Chan_DeepFront), -1);
}

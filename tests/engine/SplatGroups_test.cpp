#include "engine/SplatGroups.h"

#include <gtest/gtest.h>

#include "defocus/SplatBench.h"

namespace drevin::test {
namespace {

using Places = std::vector<std::size_t>;

/// A bank in which all channels have the planes of channel 1.
dvKernelBank equalPlanes(const std::vector<int>& channels) {
  dvKernelBank bank = countingBank(8, channels);
  for (dvChannelFloatBuffer& entry : bank) {
    for (const int channel : channels)
      entry.channels[static_cast<std::size_t>(channel)] =
          entry.channels[static_cast<std::size_t>(channels.front())];
  }
  return bank;
}

dvChromaticAberration aberration(float amount) {
  dvChromaticAberration chromatic;
  chromatic.amount = amount;
  return chromatic;
}

TEST(SplatGroups, noChannels_giveNoGroups) {
  EXPECT_TRUE(splatGroups(equalPlanes({1}), {}, {}).empty());
}

TEST(SplatGroups, equalPlanes_shareAGroup) {
  const std::vector<int> channels{1, 2, 3, 4, 9};
  const auto groups = splatGroups(equalPlanes(channels), {}, channels);
  ASSERT_EQ(groups.size(), 1U);
  EXPECT_EQ(groups[0].places, (Places{0, 1, 2, 3, 4}));
  EXPECT_EQ(groups[0].shift, 0.0F);
}

TEST(SplatGroups, colouredKernel_separatesItsChannels) {
  const std::vector<int> channels{1, 2, 3, 4};
  const auto groups = splatGroups(countingBank(8, channels), {}, channels);
  ASSERT_EQ(groups.size(), 4U);
  for (std::size_t i = 0; i < 4; ++i)
    EXPECT_EQ(groups[i].places, Places{i});
}

TEST(SplatGroups, oneValueOfOneEntry_separatesAChannel) {
  const std::vector<int> channels{1, 2, 3};
  dvKernelBank bank = equalPlanes(channels);
  bank.back().plane(2)[3] += 0.5F;
  const auto groups = splatGroups(bank, {}, channels);
  ASSERT_EQ(groups.size(), 2U);
  EXPECT_EQ(groups[0].places, (Places{0, 2}));
  EXPECT_EQ(groups[1].places, Places{1});
}

TEST(SplatGroups, groups_areInTheOrderOfTheirFirstChannels) {
  const std::vector<int> channels{1, 2, 3, 4, 9};
  dvKernelBank bank = equalPlanes(channels);
  for (dvChannelFloatBuffer& entry : bank) {
    for (const int channel : {2, 4})
      entry.plane(channel)[0] = 7.0F;
    entry.plane(9)[0] = 8.0F;
  }
  const auto groups = splatGroups(bank, {}, channels);
  ASSERT_EQ(groups.size(), 3U);
  EXPECT_EQ(groups[0].places, (Places{0, 2}));
  EXPECT_EQ(groups[1].places, (Places{1, 3}));
  EXPECT_EQ(groups[2].places, Places{4});
}

TEST(SplatGroups, zerosOfBothSigns_areDifferentBits) {
  const std::vector<int> channels{1, 2};
  dvKernelBank bank = equalPlanes(channels);
  bank.back().plane(1)[0] = 0.0F;
  bank.back().plane(2)[0] = -0.0F;
  EXPECT_EQ(splatGroups(bank, {}, channels).size(), 2U);
}

TEST(SplatGroups, shift_separatesTheChannelsThatMove) {
  const std::vector<int> channels{1, 2, 3, 4};
  const dvKernelBank bank = equalPlanes(channels);
  // Red's offset 0.6 and the others' 1 less a half, times 2.
  const auto groups = splatGroups(bank, aberration(2.0F), channels);
  ASSERT_EQ(groups.size(), 3U);
  EXPECT_EQ(groups[0].places, Places{0});
  EXPECT_FLOAT_EQ(groups[0].shift, 0.2F);
  EXPECT_EQ(groups[1].places, Places{1});
  EXPECT_FLOAT_EQ(groups[1].shift, 1.0F);
  EXPECT_EQ(groups[2].places, (Places{2, 3}));
  EXPECT_EQ(groups[2].shift, 0.0F);
}

TEST(SplatGroups, groupsOfEqualKernels_shareATable) {
  const std::vector<int> channels{1, 2, 3, 4};
  dvKernelBank bank = equalPlanes(channels);
  for (dvChannelFloatBuffer& entry : bank)
    entry.plane(4)[0] = 7.0F;
  const auto groups = splatGroups(bank, aberration(2.0F), channels);
  ASSERT_EQ(groups.size(), 4U);
  EXPECT_EQ(groups[1].kernels, groups[0].kernels);
  EXPECT_EQ(groups[2].kernels, groups[0].kernels);
  EXPECT_NE(groups[3].kernels, groups[0].kernels);
}

TEST(SplatGroups, negativeAmount_movesBlueInPlaceOfGreen) {
  const std::vector<int> channels{1, 2, 3, 4};
  const auto groups = splatGroups(equalPlanes(channels), aberration(-2.0F), channels);
  ASSERT_EQ(groups.size(), 3U);
  EXPECT_EQ(groups[0].places, Places{0});
  EXPECT_EQ(groups[1].places, (Places{1, 3}));
  EXPECT_EQ(groups[2].places, Places{2});
  EXPECT_FLOAT_EQ(groups[2].shift, 1.0F);
}

TEST(SplatGroups, equalShifts_shareAGroup) {
  const std::vector<int> channels{1, 2, 3};
  dvChromaticAberration same = aberration(2.0F);
  same.offset[0] = same.offset[1] = 1.5F;
  const auto groups = splatGroups(equalPlanes(channels), same, channels);
  ASSERT_EQ(groups.size(), 2U);
  EXPECT_EQ(groups[0].places, (Places{0, 1}));
  EXPECT_EQ(groups[1].places, Places{2});
}

TEST(SplatGroups, shiftOfNothing_sharesWithTheUnmoved) {
  const std::vector<int> channels{1, 2, 3};
  dvChromaticAberration half = aberration(2.0F);
  half.offset[0] = half.offset[1] = 0.5F;
  EXPECT_EQ(splatGroups(equalPlanes(channels), half, channels).size(), 1U);
}

TEST(SplatGroups, equalShiftWithOtherKernels_isAnotherGroup) {
  const std::vector<int> channels{1, 2};
  dvChromaticAberration same = aberration(2.0F);
  same.offset[0] = same.offset[1] = 1.5F;
  EXPECT_EQ(splatGroups(countingBank(8, channels), same, channels).size(), 2U);
}

TEST(SplatGroups, kernels_areThoseOfTheGroupsChannels) {
  const std::vector<int> channels{1, 4};
  const dvKernelBank bank = countingBank(8, channels);
  const auto groups = splatGroups(bank, {}, channels);
  for (std::size_t g = 0; g < groups.size(); ++g) {
    EXPECT_EQ(groups[g].kernels->largestRadius(), 3);
    EXPECT_TRUE(*groups[g].kernels == dvKernelTable(bank, channels[g]));
  }
  EXPECT_FALSE(*groups[0].kernels == *groups[1].kernels);
}

}  // namespace
}  // namespace drevin::test

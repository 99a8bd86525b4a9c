#include "kernel/KernelBank.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <thread>
#include <vector>

#include "kernel/ApertureShape.h"
#include "kernel/HeroKernel.h"
#include "support/LiteralKernelBank.h"
#include "support/RandomHero.h"

namespace drevin {
namespace {

const std::vector<int> rgba{1, 2, 3, 4};

dvChannelFloatBuffer flatHero(int side, const std::vector<int>& channels, float value) {
  return test::randomHero(0, side, channels, value, value);
}

dvChannelFloatBuffer discHero(int side, float softness) {
  dvApertureShape shape;
  shape.softness = softness;
  dvHeroSizing sizing;
  sizing.side = side;
  dvChannelFloatBuffer hero;
  makeHeroKernel(hero, shape, sizing, rgba, {});
  return hero;
}

dvChannelFloatBuffer entry(int index, const dvChannelFloatBuffer& hero,
                           const std::vector<int>& channels) {
  dvChannelFloatBuffer kernel;
  initializeBankEntry(kernel, index, hero, channels);
  return kernel;
}

double sum(const dvChannelFloatBuffer& kernel, int channel) {
  const std::vector<float>& plane = kernel.channels[static_cast<std::size_t>(channel)];
  return std::accumulate(plane.begin(), plane.end(), 0.0);
}

TEST(KernelBank, kernelSizeZero_hasFiveEntriesOfSidesOneOneOneThreeThree) {
  ASSERT_EQ(bankSize(0), 5);
  const dvChannelFloatBuffer hero = discHero(16, 0.1F);
  const int sides[] = {1, 1, 1, 3, 3};
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(entry(i, hero, rgba).width, sides[i]);
    EXPECT_EQ(kernelSide(i), sides[i]);
  }
}

TEST(KernelBank, anyIndex_hasAnOddSideAndAWholeCentre) {
  const dvChannelFloatBuffer hero = discHero(16, 0.1F);
  for (int i = 0; i < 40; ++i) {
    const dvChannelFloatBuffer kernel = entry(i, hero, rgba);
    EXPECT_EQ(kernel.width % 2, 1);
    EXPECT_EQ(kernel.height, kernel.width);
    EXPECT_EQ(kernel.centre, (kernel.width - 1) / 2);
    EXPECT_LE(kernel.width, std::max(i, 1));
    EXPECT_GE(kernel.width, i - 1);
    EXPECT_EQ(kernel.count, kernel.width * kernel.height);
    EXPECT_EQ(kernel.channels.size(), 1024U);
  }
}

TEST(KernelBank, sizesNoBankCanHave_areHeld) {
  EXPECT_EQ(bankSize(256), 261);
  EXPECT_EQ(bankSize(std::numeric_limits<int>::max()), std::numeric_limits<int>::max());
  EXPECT_EQ(bankSize(-9), 0);
  EXPECT_EQ(kernelSide(-5), 1);
}

TEST(KernelBank, allZeroHero_leavesEveryEntryZero) {
  const dvChannelFloatBuffer hero = flatHero(32, rgba, 0.0F);
  for (int i = 0; i < 37; ++i) {
    const dvChannelFloatBuffer kernel = entry(i, hero, rgba);
    for (const int channel : rgba) {
      for (const float value : kernel.channels[static_cast<std::size_t>(channel)]) {
        ASSERT_EQ(value, 0.0F);
      }
    }
  }
}

TEST(KernelBank, channelOfNegativeSum_keepsItsValuesWhileOthersAreScaled) {
  dvChannelFloatBuffer hero = test::randomHero(7, 40, {1, 2, 3}, 0.5F, 1.5F);
  for (float& value : hero.channels[2]) {
    value = -value;
  }
  const dvChannelFloatBuffer kernel = entry(9, hero, {1, 2, 3});
  dvChannelFloatBuffer unscaled;
  unscaled.resize(9, {2});
  buildKernel(unscaled, 9, hero, 2);
  EXPECT_EQ(kernel.channels[2], unscaled.channels[2]);
  EXPECT_LT(sum(kernel, 2), -9.0);
  EXPECT_NEAR(std::max(sum(kernel, 1), sum(kernel, 3)), 1.0, 1e-6);
}

TEST(KernelBank, everyChannelOfNegativeSum_isLeftAsBuilt) {
  const dvChannelFloatBuffer hero = flatHero(20, {1, 2}, -0.5F);
  const dvChannelFloatBuffer kernel = entry(5, hero, {1, 2});
  EXPECT_EQ(kernel.plane(1)[12], -0.5F);
  EXPECT_EQ(kernel.plane(2)[12], -0.5F);
}

TEST(KernelBank, firstThreeEntries_areTheSameSampleOfTheHerosMiddle) {
  for (const int side : {6, 7}) {
    const dvChannelFloatBuffer hero = test::randomHero(11, side, rgba, 0.2F, 1.0F);
    const int base = side / 2;
    const float t = side % 2 == 0 ? 0.0F : 0.5F;
    float strongest = 0.0F;
    std::vector<float> samples;
    for (const int channel : rgba) {
      float across[4];
      for (int i = 0; i < 4; ++i) {
        const float* p = hero.plane(channel) + (base - 1) * side + base - 1 + i;
        across[i] = test::literalCubic(p[0], p[side], p[2 * side], p[3 * side], t);
      }
      samples.push_back(test::literalCubic(across[0], across[1], across[2], across[3], t));
      strongest = std::max(strongest, samples.back());
    }
    for (int index = 0; index < 3; ++index) {
      const dvChannelFloatBuffer kernel = entry(index, hero, rgba);
      for (std::size_t c = 0; c < rgba.size(); ++c) {
        ASSERT_EQ(kernel.channels[c + 1].size(), 1U);
        EXPECT_NEAR(*kernel.plane(rgba[c]), samples[c] / strongest, 1e-6F);
      }
    }
  }
}

TEST(KernelBank, kernelAsLargeAsTheHero_hasAZeroFirstRowAndColumnOnly) {
  const dvChannelFloatBuffer hero = flatHero(255, {1}, 1.0F);
  const dvChannelFloatBuffer kernel = entry(255, hero, {1});
  ASSERT_EQ(kernel.width, 255);
  for (int i = 0; i < 255; ++i) {
    ASSERT_EQ(kernel.plane(1)[i], 0.0F);
    ASSERT_EQ(kernel.plane(1)[i * 255], 0.0F);
  }
  for (int i = 1; i < 255; ++i) {
    ASSERT_GT(kernel.plane(1)[254 * 255 + i], 0.0F);
    ASSERT_GT(kernel.plane(1)[i * 255 + 254], 0.0F);
  }
}

TEST(KernelBank, heroReducedByTwoOrMore_hasNoZeroBorder) {
  const dvChannelFloatBuffer hero = flatHero(62, {1}, 1.0F);
  const dvChannelFloatBuffer half = entry(31, hero, {1});
  for (const float value : half.channels[1]) {
    ASSERT_GT(value, 0.0F);
  }
  const dvChannelFloatBuffer lessThanTwo = entry(33, hero, {1});
  for (int i = 0; i < 33; ++i) {
    ASSERT_EQ(lessThanTwo.plane(1)[i], 0.0F);
    ASSERT_EQ(lessThanTwo.plane(1)[i * 33], 0.0F);
  }
}

TEST(KernelBank, strongestChannel_sumsToOneInEveryEntry) {
  for (const float softness : {0.0F, 0.1F, 1.0F}) {
    const dvChannelFloatBuffer hero = discHero(128, softness);
    for (int i = 0; i < bankSize(128); ++i) {
      ASSERT_NEAR(sum(entry(i, hero, rgba), 1), 1.0, 2e-6) << i;
    }
  }
}

TEST(KernelBank, colouredHero_keepsItsColour) {
  dvChannelFloatBuffer hero = discHero(64, 0.5F);
  for (float& value : hero.channels[2]) {
    value *= 0.5F;
  }
  for (float& value : hero.channels[3]) {
    value = 0.0F;
  }
  const dvChannelFloatBuffer kernel = entry(21, hero, rgba);
  EXPECT_NEAR(sum(kernel, 1), 1.0, 1e-5);
  EXPECT_NEAR(sum(kernel, 2), 0.5, 1e-5);
  EXPECT_EQ(sum(kernel, 3), 0.0);
}

TEST(KernelBank, channelsThatShareTheHero_shareEachKernel) {
  dvChannelFloatBuffer hero = test::randomHero(5, 40, {1, 3}, 0.1F, 1.0F);
  hero.share(2, 1);
  hero.share(4, 3);
  for (const int index : {1, 8, 21, 60}) {
    const dvChannelFloatBuffer kernel = entry(index, hero, rgba);
    EXPECT_EQ(kernel.plane(2), kernel.plane(1));
    EXPECT_EQ(kernel.plane(4), kernel.plane(3));
    EXPECT_NE(kernel.plane(3), kernel.plane(1));
    const auto plain = test::literalBankEntry<float>(kernelSide(index), hero, rgba);
    for (std::size_t c = 0; c < rgba.size(); ++c) {
      EXPECT_EQ(kernel.channels[c + 1], plain[c]) << index;
    }
  }
}

TEST(KernelBank, channelsThatTheHeroLacks_haveZerosOfTheirOwn) {
  const dvChannelFloatBuffer hero = test::randomHero(5, 40, {1}, 0.1F, 1.0F);
  const dvChannelFloatBuffer kernel = entry(9, hero, {1, 2, 3});
  EXPECT_EQ(kernel.channels[2], std::vector<float>(81, 0.0F));
  EXPECT_EQ(kernel.channels[3], std::vector<float>(81, 0.0F));
}

TEST(KernelBank, randomHeroes_areBitForBitThePlainBuild) {
  std::mt19937 generator(3);
  for (unsigned seed = 0; seed < 60; ++seed) {
    const int heroSide = 1 + static_cast<int>(generator() % 70);
    const int index = static_cast<int>(generator() % 75);
    const dvChannelFloatBuffer hero = test::randomHero(seed, heroSide, rgba, -0.3F, 1.0F);
    const dvChannelFloatBuffer kernel = entry(index, hero, rgba);
    const auto plain = test::literalBankEntry<float>(kernelSide(index), hero, rgba);
    for (std::size_t c = 0; c < rgba.size(); ++c) {
      ASSERT_EQ(kernel.channels[c + 1], plain[c]) << heroSide << " to " << index;
    }
  }
}

TEST(KernelBank, randomHeroes_agreeWithDoublePrecision) {
  std::mt19937 generator(4);
  for (unsigned seed = 0; seed < 60; ++seed) {
    const int heroSide = 4 + static_cast<int>(generator() % 70);
    const int index = static_cast<int>(generator() % 75);
    const dvChannelFloatBuffer hero = test::randomHero(seed, heroSide, rgba, 0.1F, 1.0F);
    const dvChannelFloatBuffer kernel = entry(index, hero, rgba);
    const auto plain = test::literalBankEntry<double>(kernelSide(index), hero, rgba);
    for (std::size_t c = 0; c < rgba.size(); ++c) {
      for (std::size_t i = 0; i < plain[c].size(); ++i) {
        ASSERT_NEAR(kernel.channels[c + 1][i], plain[c][i], 1e-6 + 1e-4 * std::abs(plain[c][i]));
      }
    }
  }
}

TEST(KernelBank, roundRobinThreads_buildWhatOneThreadBuilds) {
  const dvChannelFloatBuffer hero = discHero(96, 0.2F);
  dvKernelBank alone(static_cast<std::size_t>(bankSize(96)));
  for (std::size_t i = 0; i < alone.size(); ++i) {
    initializeBankEntry(alone[i], static_cast<int>(i), hero, rgba);
  }
  dvKernelBank shared(alone.size());
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < 3; ++t) {
    threads.emplace_back([&, t] {
      for (std::size_t i = t; i < shared.size(); i += 3) {
        initializeBankEntry(shared[i], static_cast<int>(i), hero, rgba);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (std::size_t i = 0; i < alone.size(); ++i) {
    ASSERT_EQ(shared[i].channels, alone[i].channels) << i;
  }
}

TEST(KernelBank, channelWithNaN_isLeftAsBuiltAndOthersAreScaled) {
  dvChannelFloatBuffer hero = flatHero(20, {1, 2}, 1.0F);
  hero.channels[2][210] = std::nanf("");
  const dvChannelFloatBuffer kernel = entry(9, hero, {1, 2});
  EXPECT_NEAR(sum(kernel, 1), 1.0, 1e-6);
  EXPECT_EQ(kernel.plane(2)[80], 1.0F);
  EXPECT_TRUE(std::isnan(sum(kernel, 2)));
}

TEST(KernelBank, sumBeyondTheLargestFloat_leavesNothingOfTheOthers) {
  dvChannelFloatBuffer hero = flatHero(20, {1, 2}, 1.0F);
  for (float& value : hero.channels[2]) {
    value = 0.1F * std::numeric_limits<float>::max();
  }
  const dvChannelFloatBuffer kernel = entry(9, hero, {1, 2});
  for (const float value : kernel.channels[1]) {
    EXPECT_EQ(value, 0.0F);  // 1 / infinity
  }
}

TEST(KernelBank, emptyHero_leavesZeros) {
  dvChannelFloatBuffer hero;
  EXPECT_EQ(entry(5, hero, {1}).channels[1], std::vector<float>(25, 0.0F));
  hero.resize(0, {1});
  EXPECT_EQ(entry(5, hero, {1}).channels[1], std::vector<float>(25, 0.0F));
}

TEST(BuildKernel, sizeBelowOneOrMissingPlane_changesNothing) {
  const dvChannelFloatBuffer hero = flatHero(8, {1}, 1.0F);
  dvChannelFloatBuffer kernel;
  kernel.resize(3, {1, 2});
  buildKernel(kernel, 0, hero, 1);
  buildKernel(kernel, -3, hero, 1);
  buildKernel(kernel, 3, hero, 2);
  buildKernel(kernel, 3, hero, 9);
  EXPECT_EQ(kernel.channels[1], std::vector<float>(9, 0.0F));
  EXPECT_EQ(kernel.channels[2], std::vector<float>(9, 0.0F));
}

}  // namespace
}  // namespace drevin

#include "TidySamples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "host/LiteralTidy.h"

using embedded::DeepExtent;
using embedded::limited;
using embedded::SampleList;
using embedded::shareOfDepth;
using embedded::tidied;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();
/// Of double arithmetic over some dozen samples.
constexpr double tolerance = 1e-12;

/// Samples of one colour.
struct One {
  double front;
  double back;
  double alpha;
  double colour;
};

SampleList listOf(const std::vector<One>& samples) {
  SampleList list(1);
  for (const One& sample : samples) {
    list.extents.push_back({sample.front, sample.back, sample.alpha});
    list.colours.push_back(sample.colour);
  }
  return list;
}

SampleList listOf(const std::vector<deep::LiteralSample>& samples) {
  SampleList list(2);
  for (const deep::LiteralSample& sample : samples) {
    list.extents.push_back({sample.front, sample.back, sample.alpha});
    list.colours.insert(list.colours.end(), {sample.red, sample.green});
  }
  return list;
}

void expectSamples(const SampleList& found, const std::vector<One>& expected) {
  ASSERT_EQ(found.extents.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(found.extents[i].front, expected[i].front) << "sample " << i;
    EXPECT_EQ(found.extents[i].back, expected[i].back) << "sample " << i;
    EXPECT_NEAR(found.extents[i].alpha, expected[i].alpha, tolerance) << "sample " << i;
    EXPECT_NEAR(found.colours[i], expected[i].colour, tolerance) << "sample " << i;
  }
}

double transmittance(const SampleList& samples) {
  double through = 1.0;
  for (const DeepExtent& extent : samples.extents)
    through *= 1.0 - extent.alpha;
  return through;
}

/// The first colour of a tidy pixel seen from the front.
double composited(const SampleList& tidy) {
  double colour = 0.0;
  double seen = 1.0;
  for (std::size_t i = 0; i < tidy.extents.size(); ++i) {
    colour += seen * tidy.coloursOf(i)[0];
    seen *= 1.0 - tidy.extents[i].alpha;
  }
  return colour;
}

bool isTidy(const SampleList& samples) {
  for (std::size_t i = 0; i < samples.extents.size(); ++i) {
    const DeepExtent& extent = samples.extents[i];
    if (extent.back < extent.front) return false;
    if (i == 0) continue;
    const DeepExtent& before = samples.extents[i - 1];
    if (extent.front < before.back) return false;
    if (extent.front == before.front && extent.back == before.back) return false;
  }
  return true;
}

/// Runs `check` on 300 random pixels, always the same.
template <class Check>
void forRandomPixels(const Check& check) {
  std::mt19937 random(20);
  for (int i = 0; i < 300; ++i) {
    const std::vector<deep::LiteralSample> samples = deep::randomSamples(random, 24);
    SCOPED_TRACE(i);
    check(samples, random);
  }
}

}  // namespace

TEST(TidySamples, noSamples_areTidy) {
  EXPECT_TRUE(tidied(SampleList(3)).extents.empty());
  EXPECT_TRUE(tidied(SampleList(3)).colours.empty());
}

TEST(TidySamples, separateSamples_areSortedNearestFirst) {
  expectSamples(tidied(listOf(std::vector<One>{{5, 7, 0.5, 1}, {1, 1, 0.25, 2}, {-3, 1, 0.75, 3}})),
                {{-3, 1, 0.75, 3}, {1, 1, 0.25, 2}, {5, 7, 0.5, 1}});
}

TEST(TidySamples, volumesThatTouch_areNotCut) {
  expectSamples(tidied(listOf(std::vector<One>{{1, 2, 0.5, 1}, {2, 4, 0.25, 2}})),
                {{1, 2, 0.5, 1}, {2, 4, 0.25, 2}});
}

TEST(TidySamples, volumesThatOverlap_areCutAtEachOthersEnds) {
  const double a = 1.0 - std::sqrt(0.5);  // half of the first
  const double b = 1.0 - std::sqrt(0.2);  // half of the second
  const double shared = 1.0 - std::sqrt(0.5) * std::sqrt(0.2);
  const double u = -0.5 * std::log(0.5);
  const double v = -0.5 * std::log(0.2);
  const double colour = (3.0 * u / 0.5 + 7.0 * v / 0.8) * shared / (u + v);
  expectSamples(tidied(listOf(std::vector<One>{{1, 3, 0.5, 3}, {2, 4, 0.8, 7}})),
                {{1, 2, a, 3 * a / 0.5}, {2, 3, shared, colour}, {3, 4, b, 7 * b / 0.8}});
}

TEST(TidySamples, volumeInsideAnother_leavesTwoEndsOfIt) {
  const SampleList tidy = tidied(listOf(std::vector<One>{{0, 8, 0.75, 1}, {2, 4, 0.5, 2}}));
  ASSERT_EQ(tidy.extents.size(), 3U);
  EXPECT_NEAR(tidy.extents[0].alpha, 1.0 - std::pow(0.25, 0.25), tolerance);
  EXPECT_NEAR(tidy.extents[1].alpha, 1.0 - 0.5 * std::pow(0.25, 0.25), tolerance);
  EXPECT_NEAR(tidy.extents[2].alpha, 0.5, tolerance);
}

TEST(TidySamples, pointInsideAVolume_splitsIt) {
  const double half = 1.0 - std::sqrt(0.25);
  expectSamples(tidied(listOf(std::vector<One>{{0, 8, 0.75, 6}, {4, 4, 0.25, 2}})),
                {{0, 4, half, 4}, {4, 4, 0.25, 2}, {4, 8, half, 4}});
}

TEST(TidySamples, pointAtTheEndOfAVolume_doesNotSplitIt) {
  expectSamples(tidied(listOf(std::vector<One>{{2, 8, 0.75, 6}, {8, 8, 0.5, 2}, {2, 2, 0.25, 1}})),
                {{2, 2, 0.25, 1}, {2, 8, 0.75, 6}, {8, 8, 0.5, 2}});
}

TEST(TidySamples, coincidentVolumes_mixByTheirOpticalDepths) {
  const double u = -std::log(0.5);
  const double v = -std::log(0.1);
  expectSamples(tidied(listOf(std::vector<One>{{1, 2, 0.5, 1}, {1, 2, 0.9, 0}})),
                {{1, 2, 0.95, 1.0 * u / 0.5 * 0.95 / (u + v)}});
}

TEST(TidySamples, coincidentVolumesWithoutAlpha_add) {
  expectSamples(tidied(listOf(std::vector<One>{{1, 2, 0, 3}, {1, 2, 0, 4}})), {{1, 2, 0, 7}});
}

TEST(TidySamples, coincidentVolumesOfAlmostNoAlpha_almostAdd) {
  const SampleList tidy = tidied(listOf(std::vector<One>{{1, 2, 1e-300, 3}, {1, 2, 1e-300, 4}}));
  EXPECT_NEAR(tidy.extents[0].alpha, 2e-300, 1e-312);
  EXPECT_NEAR(tidy.colours[0], 7.0, tolerance);
}

TEST(TidySamples, volumeWithoutAlphaInAMedium_isHiddenAsIfItShone) {
  const double u = -std::log(0.5);
  expectSamples(tidied(listOf(std::vector<One>{{1, 2, 0, 3}, {1, 2, 0.5, 0}})),
                {{1, 2, 0.5, 3.0 * 0.5 / u}});
}

TEST(TidySamples, piecesWithoutAlpha_shareTheColourByLength) {
  expectSamples(tidied(listOf(std::vector<One>{{0, 4, 0, 8}, {1, 1, 0.5, 1}})),
                {{0, 1, 0, 2}, {1, 1, 0.5, 1}, {1, 4, 0, 6}});
}

TEST(TidySamples, piecesOfAnOpaqueVolume_areOpaqueWithItsColour) {
  expectSamples(tidied(listOf(std::vector<One>{{0, 4, 1, 8}, {1, 1, 0.5, 1}})),
                {{0, 1, 1, 8}, {1, 1, 0.5, 1}, {1, 4, 1, 8}});
}

TEST(TidySamples, opaqueVolume_hidesWhatSharesItsSpace) {
  expectSamples(tidied(listOf(std::vector<One>{{1, 2, 0.9, 3}, {1, 2, 1, 5}, {1, 2, 0, 9}})),
                {{1, 2, 1, 5}});
}

TEST(TidySamples, opaqueVolumesInOneSpace_giveTheMean) {
  expectSamples(
      tidied(listOf(std::vector<One>{{1, 2, 1, 3}, {1, 2, 0.5, 100}, {1, 2, 1, 5}, {1, 2, 1, 10}})),
      {{1, 2, 1, 6}});
}

TEST(TidySamples, pointsAtOneDepth_areCompositedAsTheyStand) {
  expectSamples(tidied(listOf(std::vector<One>{{2, 2, 0.5, 1}, {2, 2, 0.25, 4}})),
                {{2, 2, 0.625, 3}});
  expectSamples(tidied(listOf(std::vector<One>{{2, 2, 0.25, 4}, {2, 2, 0.5, 1}})),
                {{2, 2, 0.625, 4.75}});
}

TEST(TidySamples, pointsBehindAnOpaquePoint_areHidden) {
  expectSamples(tidied(listOf(std::vector<One>{{2, 2, 1, 1}, {2, 2, 0.25, infinite}})),
                {{2, 2, 1, 1}});
}

TEST(TidySamples, pointOfTinyAlpha_keepsIt) {
  const SampleList tidy = tidied(listOf(std::vector<One>{{2, 2, 1e-30, 1}, {2, 2, 1e-30, 4}}));
  EXPECT_NEAR(tidy.extents[0].alpha, 2e-30, 1e-42);
}

TEST(TidySamples, pointWithoutAlpha_isKeptAndSplits) {
  EXPECT_EQ(tidied(listOf(std::vector<One>{{0, 2, 0.5, 1}, {1, 1, 0, 0}})).extents.size(), 3U);
}

TEST(TidySamples, samplesWithoutColours_areMadeTidyToo) {
  SampleList samples(0);
  samples.extents = {{0, 2, 0.5}, {1, 1, 0.5}};
  const SampleList tidy = tidied(samples);
  EXPECT_EQ(tidy.extents.size(), 3U);
  EXPECT_TRUE(tidy.colours.empty());
}

TEST(TidySamples, infiniteColourOfAnEmptyShare_addsNothing) {
  const SampleList tidy =
      tidied(listOf(std::vector<One>{{0, infinite, 0.5, infinite}, {1, 1, 0.5, 1}}));
  ASSERT_EQ(tidy.extents.size(), 3U);
  EXPECT_EQ(tidy.colours[0], 0.0);
  EXPECT_EQ(tidy.colours[2], infinite);
}

TEST(TidySamples, volumeWithoutEnd_keepsItsAlphaForTheEnd) {
  expectSamples(tidied(listOf(std::vector<One>{{0, infinite, 0.5, 3}, {1, 1, 0.25, 1}})),
                {{0, 1, 0, 0}, {1, 1, 0.25, 1}, {1, infinite, 0.5, 3}});
  expectSamples(tidied(listOf(std::vector<One>{{-infinite, 9, 0.5, 3}, {1, 1, 0.25, 1}})),
                {{-infinite, 1, 0.5, 3}, {1, 1, 0.25, 1}, {1, 9, 0, 0}});
}

TEST(TidySamples, volumeWithoutEitherEnd_keepsHalfForEach) {
  expectSamples(tidied(listOf(std::vector<One>{{-infinite, infinite, 0.75, 6}, {1, 2, 0, 0}})),
                {{-infinite, 1, 0.5, 4}, {1, 2, 0, 0}, {2, infinite, 0.5, 4}});
}

TEST(TidySamples, opaqueVolumeWithoutEnd_isOpaqueFromItsFront) {
  expectSamples(tidied(listOf(std::vector<One>{{0, infinite, 1, 3}, {1, 1, 0.25, 1}})),
                {{0, 1, 1, 3}, {1, 1, 0.25, 1}, {1, infinite, 1, 3}});
}

TEST(TidySamples, samplesAtInfinity_arePoints) {
  expectSamples(
      tidied(listOf(std::vector<One>{
          {infinite, infinite, 0.5, 1}, {-infinite, -infinite, 0.25, 2}, {notANumber, 4, 0.5, 4}})),
      {{-infinite, -infinite, 0.25, 2}, {infinite, infinite, 0.75, 3}});
}

TEST(TidySamples, colourThatIsNaN_staysInItsSample) {
  const SampleList tidy = tidied(listOf(std::vector<One>{{0, 2, 0.5, notANumber}, {3, 4, 0.5, 1}}));
  EXPECT_TRUE(std::isnan(tidy.colours[0]));
  EXPECT_NEAR(tidy.colours[1], 1.0, tolerance);
}

TEST(TidySamples, pixelsOfManySamples_areLikeSmallOnes) {
  SampleList points(1);
  for (int i = 0; i < 5000; ++i) {
    points.extents.push_back({i % 2500 * 1.0, i % 2500 * 1.0, 0.5});
    points.colours.push_back(1.0);
  }
  const SampleList tidy = tidied(points);
  ASSERT_EQ(tidy.extents.size(), 2500U);
  EXPECT_EQ(tidy.extents[7].alpha, 0.75);
  SampleList volumes(1);
  for (int i = 0; i < 227; ++i) {
    volumes.extents.push_back({i * 1.0, i + 1000.0, 0.1});
    volumes.colours.push_back(1.0);
  }
  EXPECT_EQ(tidied(volumes).extents.size(), 453U);
  EXPECT_NEAR(transmittance(tidied(volumes)), std::pow(0.9, 227), tolerance);
}

TEST(TidySamples, transmittance_isThatOfAllSamples) {
  forRandomPixels([](const std::vector<deep::LiteralSample>& samples, std::mt19937&) {
    const SampleList list = listOf(samples);
    EXPECT_NEAR(transmittance(tidied(list)), transmittance(list), tolerance);
  });
}

TEST(TidySamples, colourOfAVolumeCutToPieces_isThatOfTheWhole) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> depth(0.0, 10.0);
  for (const double alpha : {0.0, 1e-9, 0.3, 0.999, 1.0}) {
    std::vector<One> samples = {{0, 10, alpha, 5}};
    for (int i = 0; i < 40; ++i) {
      const double front = depth(random);
      samples.push_back({front, i % 2 == 0 ? front : std::min(10.0, front + 1.0), 0, 0});
    }
    EXPECT_NEAR(composited(tidied(listOf(samples))), 5.0, tolerance) << alpha;
  }
}

TEST(TidySamples, tidySamples_stayAsTheyAre) {
  forRandomPixels([](const std::vector<deep::LiteralSample>& samples, std::mt19937&) {
    const SampleList once = tidied(listOf(samples));
    const SampleList twice = tidied(once);
    ASSERT_EQ(twice.extents.size(), once.extents.size());
    for (std::size_t i = 0; i < once.extents.size(); ++i) {
      EXPECT_EQ(twice.extents[i].front, once.extents[i].front);
      EXPECT_EQ(twice.extents[i].back, once.extents[i].back);
      EXPECT_NEAR(twice.extents[i].alpha, once.extents[i].alpha, tolerance);
      for (std::size_t c = 0; c < 2; ++c)
        EXPECT_NEAR(twice.coloursOf(i)[c], once.coloursOf(i)[c], tolerance);
    }
  });
}

TEST(TidySamples, output_doesNotOverlapAndIsNearestFirst) {
  forRandomPixels([](const std::vector<deep::LiteralSample>& samples, std::mt19937&) {
    EXPECT_TRUE(isTidy(tidied(listOf(samples))));
  });
}

TEST(TidySamples, orderOfSamplesAtDistinctDepths_changesNothing) {
  forRandomPixels([](std::vector<deep::LiteralSample> samples, std::mt19937& random) {
    const auto place = [](const deep::LiteralSample& s) { return std::pair(s.front, s.back); };
    std::sort(samples.begin(), samples.end(),
              [&](const auto& a, const auto& b) { return place(a) < place(b); });
    samples.erase(std::unique(samples.begin(), samples.end(),
                              [&](const auto& a, const auto& b) { return place(a) == place(b); }),
                  samples.end());
    const SampleList sorted = tidied(listOf(samples));
    std::shuffle(samples.begin(), samples.end(), random);
    const SampleList shuffled = tidied(listOf(samples));
    EXPECT_EQ(shuffled.colours, sorted.colours);
    ASSERT_EQ(shuffled.extents.size(), sorted.extents.size());
    for (std::size_t i = 0; i < sorted.extents.size(); ++i)
      EXPECT_EQ(shuffled.extents[i].alpha, sorted.extents[i].alpha);
  });
}

TEST(LimitedExtent, soundOne_isUnchanged) {
  const DeepExtent extent = limited({-3.0, 4.0, 0.5});
  EXPECT_EQ(extent.front, -3.0);
  EXPECT_EQ(extent.back, 4.0);
  EXPECT_EQ(extent.alpha, 0.5);
}

TEST(LimitedExtent, backBeforeTheFront_isTheFront) {
  EXPECT_EQ(limited({5.0, 3.0, 0.5}).back, 5.0);
  EXPECT_EQ(limited({5.0, -infinite, 0.5}).back, 5.0);
}

TEST(LimitedExtent, NaNDepths_areInfinitelyFar) {
  EXPECT_EQ(limited({notANumber, 3.0, 0.5}).front, infinite);
  EXPECT_EQ(limited({notANumber, 3.0, 0.5}).back, infinite);
  EXPECT_EQ(limited({1.0, notANumber, 0.5}).front, 1.0);
  EXPECT_EQ(limited({1.0, notANumber, 0.5}).back, infinite);
}

TEST(LimitedExtent, alpha_isFrom0To1) {
  EXPECT_EQ(limited({0, 0, -0.5}).alpha, 0.0);
  EXPECT_EQ(limited({0, 0, 1.5}).alpha, 1.0);
  EXPECT_EQ(limited({0, 0, infinite}).alpha, 1.0);
  EXPECT_EQ(limited({0, 0, notANumber}).alpha, 0.0);
}

TEST(ShareOfDepth, boundedVolume_isByLength) {
  EXPECT_EQ(shareOfDepth({2.0, 10.0, 0.0}, 4.0, 6.0), 0.25);
  EXPECT_EQ(shareOfDepth({2.0, 10.0, 0.0}, 2.0, 10.0), 1.0);
}

TEST(ShareOfDepth, volumeWithoutEnd_isAllAtTheEnd) {
  EXPECT_EQ(shareOfDepth({2.0, infinite, 0.0}, 2.0, 3.0), 0.0);
  EXPECT_EQ(shareOfDepth({2.0, infinite, 0.0}, 3.0, infinite), 1.0);
  EXPECT_EQ(shareOfDepth({-infinite, infinite, 0.0}, -infinite, 3.0), 0.5);
  EXPECT_EQ(shareOfDepth({-infinite, infinite, 0.0}, -infinite, infinite), 1.0);
}

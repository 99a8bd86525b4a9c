#include <gtest/gtest.h>

#include <cmath>

#include "DepthPlaneFixture.h"
#include "OddNumbers.h"
#include "RealPictures.h"
#include "depth/BackgroundFinding.h"
#include "depth/DepthCodes.h"
#include "depth/StyleGuess.h"
#include "depth/UnitGuess.h"
#include "picture/ChannelNames.h"
#include "picture/ExrReader.h"

namespace drevintool::testing {
namespace {

TEST(DepthCodes, valuesThatAreNoDistances_areBackground) {
  const DepthCodes real{DepthStyle::Real, false};
  for (const float code :
       {0.0F, -0.0F, kNanFloat, kInfinityFloat, -kInfinityFloat, 1e10F, 1e30F, -1e10F})
    EXPECT_TRUE(real.isBackground(code)) << code;
  for (const float depth : {1e-30F, -5.0F, 100.0F, 65504.0F, 9.9e9F})
    EXPECT_FALSE(real.isBackground(depth)) << depth;
}

TEST(DepthCodes, zeroIn1OverZ_isInfinitelyFarAndBackground) {
  const DepthCodes reciprocal{DepthStyle::Reciprocal, false};
  EXPECT_TRUE(reciprocal.isBackground(0.0F));
  EXPECT_TRUE(reciprocal.isBackground(1e-40F));  // its distance is beyond all floats
  EXPECT_FALSE(reciprocal.isBackground(1e-30F));
  EXPECT_TRUE(std::isinf(reciprocal.distance(0.0F)));
  EXPECT_FLOAT_EQ(reciprocal.distance(0.25F), 4.0F);
}

TEST(DepthCodes, largestHalf_isBackgroundInHalvesOnly) {
  EXPECT_TRUE((DepthCodes{DepthStyle::Real, true}.isBackground(65504.0F)));
  EXPECT_FALSE((DepthCodes{DepthStyle::Real, false}.isBackground(65504.0F)));
}

// A floor that runs away from the camera: 1/z falls in a straight line towards the horizon.
float floorReciprocal(int x, int y) {
  return 0.02F + 0.001F * static_cast<float>(y) + 0.0003F * static_cast<float>(x);
}

TEST(StyleGuess, floorInDistances_isReal) {
  const auto plane = planeOf(120, 90, [](int x, int y) { return 1.0F / floorReciprocal(x, y); });
  const SlopeVotes votes = slopeVotes(plane);
  EXPECT_GT(votes.distances, 9 * votes.reciprocals);
  EXPECT_EQ(guessStyle(plane).style, DepthStyle::Real);
}

TEST(StyleGuess, floorIn1OverZ_isReciprocalEvenPartlyAboveOne) {
  for (const float unit : {1.0F, 30.0F}) {
    const auto plane =
        planeOf(120, 90, [unit](int x, int y) { return unit * floorReciprocal(x, y); });
    EXPECT_EQ(guessStyle(plane).style, DepthStyle::Reciprocal) << unit;
  }
}

// A hollow shape in distances has the slopes of 1/z.
TEST(StyleGuess, valuesAllAboveOne_areRealWhateverTheSlopes) {
  const auto plane = planeOf(120, 90, [](int x, int y) {
    return x < 9 ? 0.0F : x < 12 ? 1e10F : 100.0F * floorReciprocal(x, y);
  });
  const SlopeVotes votes = slopeVotes(plane);
  EXPECT_GT(votes.reciprocals, 2 * votes.distances);
  const StyleGuess guess = guessStyle(plane);
  EXPECT_EQ(guess.style, DepthStyle::Real);
  EXPECT_NE(guess.why.find("above 1"), std::string::npos) << guess.why;
}

TEST(StyleGuess, valuesBelowZero_areRealWhateverTheSlopes) {
  const auto plane =
      planeOf(120, 90, [](int x, int y) { return x == 3 ? -0.5F : floorReciprocal(x, y); });
  EXPECT_GT(slopeVotes(plane).reciprocals, 500U);
  const StyleGuess guess = guessStyle(plane);
  EXPECT_EQ(guess.style, DepthStyle::Real);
  EXPECT_NE(guess.why.find("below 0"), std::string::npos) << guess.why;
}

TEST(StyleGuess, normalisedDistancesOfAFloor_areReal) {
  const auto plane = planeOf(120, 90, [](int x, int y) { return 0.02F / floorReciprocal(x, y); });
  EXPECT_EQ(guessStyle(plane).style, DepthStyle::Real);
}

TEST(StyleGuess, withoutSlopes_rangeDecides) {
  EXPECT_EQ(guessStyle(rowOf({5, 5, 9, 9})).style, DepthStyle::Real);
  EXPECT_EQ(guessStyle(rowOf({-0.5F, 0, 0.5F})).style, DepthStyle::Real);
  EXPECT_EQ(guessStyle(rowOf({0, 0.1F, 0.1F, 0.5F})).style, DepthStyle::Reciprocal);
  EXPECT_EQ(guessStyle(rowOf({0.1F, 0.1F, 1.0F})).style, DepthStyle::Real);
}

// The other way round there are no such pictures: they are made of those in distances.
TEST(StyleGuess, realPicturesTurnedInto1OverZ_areReciprocal) {
  SKIP_WITHOUT_PICTURES();
  for (const char* name : {"courtyard.exr", "beachball.singlepart.0001.exr"}) {
    const Picture picture = readExr(pictureFolder() + "/flat/" + name);
    const DepthPlane depth = depthPlane(picture, *findChannel(picture, "Z"));
    const PixelBox& box = depth.box;
    const auto reciprocal = planeOf(box.r - box.x, box.t - box.y, [&](int x, int y) {
      const float z = depth.at(box.x + x, box.y + y);
      return z == 0.0F || z >= kFarCode ? 0.0F : 1.0F / z;
    });
    EXPECT_EQ(guessStyle(depth).style, DepthStyle::Real) << name;
    EXPECT_EQ(guessStyle(reciprocal).style, DepthStyle::Reciprocal) << name;
  }
}

TEST(StyleGuess, codesAlone_areRealWithoutAFault) {
  EXPECT_EQ(guessStyle(rowOf({kNanFloat, kInfinityFloat, 1e10F})).style, DepthStyle::Real);
  EXPECT_EQ(guessStyle(rowOf({})).style, DepthStyle::Real);
}

BackgroundFinding foundIn(const DepthPlane& depth, const DepthPlane* alpha = nullptr,
                          DepthStyle style = DepthStyle::Real) {
  return findBackground(depth, alpha, style);
}

TEST(BackgroundFinding, depthOfPixelsWithoutAlpha_isIt) {
  const DepthPlane alpha = rowOf({0, 0, 0, 0.5F, 1, 1});
  const BackgroundFinding zero = foundIn(rowOf({0, 0, 0, 9, 9.5F, 10}), &alpha);
  EXPECT_EQ(zero.value, 0.0F);
  EXPECT_EQ(zero.pixels, 3U);
  EXPECT_FALSE(zero.isOrdinary());
  const BackgroundFinding behind = foundIn(rowOf({11, 11, 11, 9, 9.5F, 10}), &alpha);
  EXPECT_EQ(behind.value, 11.0F);
  EXPECT_TRUE(behind.isOrdinary());
  EXPECT_TRUE(behind.contains(11.0F));
  EXPECT_FALSE(behind.contains(10.0F));
}

TEST(BackgroundFinding, depthOfPixelsWithoutAlphaAmongTheOthers_isNot) {
  const DepthPlane alpha = rowOf({0, 0, 1, 1, 1, 1});
  EXPECT_FALSE(foundIn(rowOf({9.5F, 9.5F, 9, 9.5F, 10, 10}), &alpha).value);
}

TEST(BackgroundFinding, mostFrequentCode_isItAndOthersAreCounted) {
  const BackgroundFinding found = foundIn(rowOf({1e10F, kInfinityFloat, kInfinityFloat, 3, 4, 5}));
  EXPECT_EQ(found.value, kInfinityFloat);
  EXPECT_EQ(found.pixels, 2U);
  EXPECT_EQ(found.others, 1U);
  EXPECT_TRUE(found.contains(1e10F));
}

TEST(BackgroundFinding, nan_isFoundAsOneValue) {
  const BackgroundFinding found = foundIn(rowOf({kNanFloat, -kNanFloat, 3, 4, 5}));
  ASSERT_TRUE(found.value);
  EXPECT_TRUE(std::isnan(*found.value));
  EXPECT_EQ(found.pixels, 2U);
  EXPECT_EQ(found.others, 0U);
}

TEST(BackgroundFinding, planeFarBehindAllThings_isItBeforeFewerCodes) {
  EXPECT_EQ(foundIn(rowOf({5, 20, 10000, 10000})).value, 10000.0F);
  const BackgroundFinding few = foundIn(rowOf({5, 20, kNanFloat, 10000, 10000}));
  EXPECT_EQ(few.value, 10000.0F);
  EXPECT_EQ(few.others, 1U);
  const BackgroundFinding many =
      foundIn(rowOf({5, 20, kInfinityFloat, kInfinityFloat, 10000, 10000}));
  EXPECT_EQ(many.value, kInfinityFloat) << "with codes for the sky the plane is a thing";
  EXPECT_FALSE(many.contains(10000.0F));
}

TEST(BackgroundFinding, planeFarBehindAllThingsIn1OverZ_isTheSmallest) {
  const DepthPlane plane = rowOf({0.2F, 0.05F, 0.0001F, 0.0001F});
  EXPECT_EQ(foundIn(plane, nullptr, DepthStyle::Reciprocal).value, 0.0001F);
  EXPECT_FALSE(foundIn(plane).value);
}

TEST(BackgroundFinding, ordinaryDepths_haveNone) {
  for (const DepthPlane& plane : {rowOf({5, 6, 7, 20}), rowOf({5, 5, 5}), rowOf({})}) {
    const BackgroundFinding found = foundIn(plane);
    EXPECT_FALSE(found.value);
    EXPECT_FALSE(found.isOrdinary());
    EXPECT_TRUE(found.contains(kNanFloat));
    EXPECT_FALSE(found.contains(5.0F));
  }
}

TEST(UnitGuess, medianDistance_namesTheUnit) {
  EXPECT_EQ(guessUnit(4.4F), "m");
  EXPECT_EQ(guessUnit(400.0F), "cm");
  EXPECT_EQ(guessUnit(4000.0F), "mm");
  for (const float unknown : {0.0F, 0.1F, -4.0F, 1e6F, kNanFloat, kInfinityFloat})
    EXPECT_EQ(guessUnit(unknown), "") << unknown;
}

}  // namespace
}  // namespace drevintool::testing

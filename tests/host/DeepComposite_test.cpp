#include "DDImage/DeepComposite.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "host/DeepOrderGuard.h"
#include "host/LiteralTidy.h"

using namespace DD::Image;
using deep::LiteralPiece;
using deep::LiteralSample;

namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();

/// Of red, green, alpha, front and back.
const ChannelMap map(ChannelSet(Mask_Red | Mask_Green | Mask_Alpha | Mask_Deep));

std::vector<float> valuesOf(const std::vector<LiteralSample>& samples) {
  std::vector<float> values;
  for (const LiteralSample& s : samples)
    values.insert(values.end(), {s.red, s.green, s.alpha, s.front, s.back});
  return values;
}

std::vector<float> valuesOf(const DeepOutPixel& pixel) {
  return {pixel.data(), pixel.data() + pixel.size()};
}

/// The tidy values of a pixel with channels of `channels`.
std::vector<float> combined(const ChannelMap& channels, const std::vector<float>& values,
                            DeepPixel::Ordering ordering = DeepPixel::eUnordered) {
  DeepOutPixel out;
  CombineOverlappingSamples(channels, DeepPixel(channels, values.data(), values.size(), ordering),
                            out);
  return valuesOf(out);
}

/// Within a rounding to float, and 1e-12 for the literal's cancellation in very thin pieces.
void expectClose(float found, long double expected) {
  EXPECT_NEAR(static_cast<double>(found), static_cast<double>(expected),
              static_cast<double>(6.1e-8L * std::abs(expected) + 1e-12L));
}

void expectPieces(const std::vector<float>& found, const std::vector<LiteralPiece>& expected) {
  ASSERT_EQ(found.size(), expected.size() * map.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    SCOPED_TRACE(i);
    const float* sample = found.data() + i * map.size();
    expectClose(sample[0], expected[i].red);
    expectClose(sample[1], expected[i].green);
    expectClose(sample[2], expected[i].alpha);
    EXPECT_EQ(sample[3], static_cast<float>(expected[i].front));
    EXPECT_EQ(sample[4], static_cast<float>(expected[i].back));
  }
}

class CombineSamplesOrder : public deep::InBothOrders {};
INSTANTIATE_TEST_SUITE_P(Order, CombineSamplesOrder, deep::bothOrders(), deep::orderName);

}  // namespace

TEST_P(CombineSamplesOrder, randomPixels_areAsTheRulesWrittenOut) {
  std::mt19937 random(11);
  std::size_t pieces = 0;
  for (int i = 0; i < 600; ++i) {
    SCOPED_TRACE(i);
    const std::vector<LiteralSample> samples = deep::randomSamples(random, i < 500 ? 8 : 40);
    const std::vector<LiteralPiece> expected = deep::literalTidy(samples);
    pieces += expected.size();
    expectPieces(combined(map, valuesOf(samples)), expected);
  }
  EXPECT_GT(pieces, 5000U) << "the pixels were not trivial";
}

TEST_P(CombineSamplesOrder, tidyPixel_isUnchangedToTheBit) {
  std::mt19937 random(12);
  for (int i = 0; i < 300; ++i) {
    SCOPED_TRACE(i);
    const std::vector<float> once = combined(map, valuesOf(deep::randomSamples(random, 16)));
    EXPECT_EQ(combined(map, once), once);
    EXPECT_EQ(combined(map, once, DeepPixel::eZAscending), once);
  }
}

TEST_P(CombineSamplesOrder, statedOrder_changesNothing) {
  std::vector<LiteralSample> samples = {
      {1, 4, 0.5F, 1, 2}, {2, 2, 0.25F, 1, 1}, {3, 6, 0.5F, 1, 0}};
  const std::vector<float> expected = combined(map, valuesOf(samples));
  EXPECT_EQ(combined(map, valuesOf(samples), DeepPixel::eZAscending), expected);
  std::reverse(samples.begin(), samples.end());
  EXPECT_EQ(combined(map, valuesOf(samples), DeepPixel::eZDescending), expected);
}

TEST_P(CombineSamplesOrder, pointsAtOneDepth_areCompositedAsStored) {
  const std::vector<float> values = {8, 0, 1, 9, 9, 1, 0, 0.5F, 2, 2, 4, 0, 0.25F, 2, 2};
  const std::vector<float> expected = {3, 0, 0.625F, 2, 2, 8, 0, 1, 9, 9};
  EXPECT_EQ(combined(map, values), expected);
  EXPECT_EQ(combined(map, values, DeepPixel::eZDescending), expected);
}

TEST(CombineSamples, flatDepth_isTheFront) {
  const ChannelMap withZ(ChannelSet(Mask_Alpha | Mask_Z | Mask_Deep));
  const std::vector<float> found = combined(withZ, {0.75F, 77, 0, 4, 0, 77, 2, 2});
  ASSERT_EQ(found.size(), 12U);
  EXPECT_EQ(found[1], 0.0F);
  EXPECT_EQ(found[5], 2.0F);
  EXPECT_EQ(found[9], 2.0F);
  EXPECT_EQ(found[11], 4.0F);
}

TEST(CombineSamples, channelsNamedAtRunTime_areColours) {
  const ChannelMap named(ChannelSet(getChannel("beauty.diffuse")) + ChannelSet(Mask_Alpha) +
                         ChannelSet(Mask_Deep));
  const std::vector<float> found = combined(named, {1, 0, 4, 8, 0.5F, 1, 1, 0});
  ASSERT_EQ(found.size(), 12U);
  EXPECT_EQ(found[3], 8.0F) << "all of it in front of the opaque sample, too";
  EXPECT_EQ(found[0], 1.0F);
  EXPECT_EQ(found[7], 0.0F);
}

TEST(CombineSamples, coloursOnBothSidesOfTheDepths_stayApartFromThem) {
  const ChannelMap wide(ChannelSet(getChannel("beauty.diffuse")) +
                        ChannelSet(Mask_RGBA | Mask_Z | Mask_Deep));
  const std::vector<float> sample = {1, 2, 3, 0.5F, 6, 6, 7, 8};
  EXPECT_EQ(combined(wide, sample), sample);
}

TEST(CombineSamples, alphaOutOfRange_isLimited) {
  EXPECT_EQ(combined(map, {1, 2, 1.5F, 3, 3}), std::vector<float>({1, 2, 1, 3, 3}));
  EXPECT_EQ(combined(map, {1, 2, -0.5F, 3, 3}), std::vector<float>({1, 2, 0, 3, 3}));
  EXPECT_EQ(combined(map, {1, 2, notANumber, 3, 3}), std::vector<float>({1, 2, 0, 3, 3}));
}

TEST(CombineSamples, backBeforeTheFront_isTheFront) {
  EXPECT_EQ(combined(map, {1, 2, 0.5F, 3, -7}), std::vector<float>({1, 2, 0.5F, 3, 3}));
}

TEST(CombineSamples, NaNDepths_areInfinitelyFar) {
  EXPECT_EQ(combined(map, {1, 2, 0.5F, notANumber, notANumber, 3, 4, 0.25F, 9, 9}),
            std::vector<float>({3, 4, 0.25F, 9, 9, 1, 2, 0.5F, infinite, infinite}));
  EXPECT_EQ(combined(map, {1, 2, 0.5F, 5, notANumber}),
            std::vector<float>({1, 2, 0.5F, 5, infinite}));
}

TEST(CombineSamples, infiniteDepths_areEnds) {
  EXPECT_EQ(combined(map, {1, 2, 0.5F, 0, infinite, 0, 0, 0.25F, 9, 9}),
            std::vector<float>({0, 0, 0, 0, 9, 0, 0, 0.25F, 9, 9, 1, 2, 0.5F, 9, infinite}));
}

TEST(CombineSamples, farthestFloats_doNotOverflow) {
  constexpr float most = std::numeric_limits<float>::max();
  const std::vector<float> found = combined(map, {1, 2, 0.75F, -most, most, 0, 0, 0, 0, 0});
  ASSERT_EQ(found.size(), 15U);
  EXPECT_EQ(found[2], 0.5F);
  EXPECT_EQ(found[12], 0.5F);
}

TEST(CombineSamples, noSamples_stayNone) {
  EXPECT_TRUE(combined(map, {}).empty());
}

TEST(CombineSamples, output_isAppended) {
  DeepOutPixel out;
  out.push_back(42.0F);
  const std::vector<float> values = {1, 2, 0.5F, 3, 3};
  CombineOverlappingSamples(
      map, DeepPixel(map, values.data(), values.size(), DeepPixel::eUnordered), out);
  EXPECT_EQ(valuesOf(out), std::vector<float>({42, 1, 2, 0.5F, 3, 3}));
}

TEST(CombineSamples, otherChannelsThanTheInput_areReadFromItOr0) {
  const ChannelMap fewer(ChannelSet(Mask_Green | Mask_Blue | Mask_DeepBack));
  const std::vector<float> values = {1, 8, 1, 0, 4, 3, 5, 0.5F, 2, 2};
  DeepOutPixel out;
  CombineOverlappingSamples(
      fewer, DeepPixel(map, values.data(), values.size(), DeepPixel::eUnordered), out);
  EXPECT_EQ(valuesOf(out), std::vector<float>({8, 0, 2, 5, 0, 2, 8, 0, 4}));
}

TEST_P(CombineSamplesOrder, withoutBack_allArePoints) {
  const ChannelMap flat(ChannelSet(Mask_Red | Mask_Alpha | Mask_DeepFront));
  EXPECT_EQ(combined(flat, {7, 0.25F, 9, 1, 0.5F, -3, 4, 0.25F, -3}),
            std::vector<float>({3, 0.625F, -3, 7, 0.25F, 9}));
}

TEST_P(CombineSamplesOrder, withoutAlpha_areCopiedNearestFirst) {
  const ChannelMap depths(ChannelSet(Mask_Red | Mask_Deep));
  EXPECT_EQ(combined(depths, {1, 5, 9, 2, 3, 8, 3, 3, 4, 5, 3, 8}),
            std::vector<float>({3, 3, 4, 2, 3, 8, 5, 3, 8, 1, 5, 9}));
}

TEST_P(CombineSamplesOrder, withoutAlpha_NaNDepthsAreCopiedAsTheFarthest) {
  const ChannelMap depths(ChannelSet(Mask_Red | Mask_Deep));
  const std::vector<float> found = combined(depths, {4, notANumber, 1, 1, 5, 9});
  ASSERT_EQ(found.size(), 6U);
  EXPECT_EQ(found[0], 1.0F);
  EXPECT_EQ(found[3], 4.0F);
  EXPECT_TRUE(std::isnan(found[4]));
  EXPECT_EQ(found[5], 1.0F);
}

TEST_P(CombineSamplesOrder, withoutAlpha_manyTiesAreCopiedAsStored) {
  const ChannelMap depths(ChannelSet(Mask_Red | Mask_Deep));
  std::vector<float> values;
  for (int i = 0; i < 100; ++i)
    values.insert(values.end(), {static_cast<float>(i), 3, 4});
  EXPECT_EQ(combined(depths, values), values);
}

TEST_P(CombineSamplesOrder, withoutFront_areCopiedByTheBackThatThereIs) {
  const ChannelMap backs(ChannelSet(Mask_Alpha | Mask_DeepBack));
  EXPECT_EQ(combined(backs, {0.1F, 9, 0.2F, 3, 0.3F, 9}),
            std::vector<float>({0.2F, 3, 0.1F, 9, 0.3F, 9}));
}

TEST_P(CombineSamplesOrder, withoutDepths_areCopiedAsStored) {
  const ChannelMap flat(ChannelSet(Mask_Red | Mask_Alpha));
  EXPECT_EQ(combined(flat, {3, 2, 1, 2}), std::vector<float>({3, 2, 1, 2}));
}

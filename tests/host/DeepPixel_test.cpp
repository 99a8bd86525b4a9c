#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "DDImage/DeepPixel.h"
#include "host/DeepOrderGuard.h"

using namespace DD::Image;

namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();

/// A sample of a mark in alpha, between two depths.
struct Marked {
  float mark;
  float front;
  float back;
};

class DeepPixelOrder : public deep::InBothOrders {
 protected:
  /// The marks in the host's depth order.
  std::vector<float> marks(const std::vector<Marked>& samples, DeepPixel::Ordering ordering) {
    values_.clear();
    for (const Marked& sample : samples)
      values_.insert(values_.end(), {sample.mark, sample.front, sample.back});
    const DeepPixel pixel(map_, values_.data(), values_.size(), ordering);
    std::vector<float> found;
    for (std::size_t i = 0; i < pixel.getSampleCount(); ++i)
      found.push_back(pixel.getOrderedSample(i, Chan_Alpha));
    return found;
  }

  ChannelMap map_{ChannelSet(Mask_Alpha | Mask_Deep)};
  std::vector<float> values_;
};

INSTANTIATE_TEST_SUITE_P(Order, DeepPixelOrder, deep::bothOrders(), deep::orderName);

}  // namespace

TEST_P(DeepPixelOrder, samplesStoredNearestFirst_areServedFromTheHostsEnd) {
  const std::vector<float> found = marks({{1, 5, 5}, {2, 6, 9}, {3, 7, 8}}, DeepPixel::eZAscending);
  EXPECT_EQ(found, farFirst() ? std::vector<float>({3, 2, 1}) : std::vector<float>({1, 2, 3}));
}

TEST_P(DeepPixelOrder, samplesStoredFarthestFirst_areServedFromTheHostsEnd) {
  const std::vector<float> found =
      marks({{3, 7, 8}, {2, 6, 9}, {1, 5, 5}}, DeepPixel::eZDescending);
  EXPECT_EQ(found, farFirst() ? std::vector<float>({3, 2, 1}) : std::vector<float>({1, 2, 3}));
}

TEST_P(DeepPixelOrder, statedOrder_isBelieved) {
  const std::vector<float> found = marks({{1, 9, 9}, {2, 5, 5}}, DeepPixel::eZAscending);
  EXPECT_EQ(found, farFirst() ? std::vector<float>({2, 1}) : std::vector<float>({1, 2}));
}

TEST_P(DeepPixelOrder, unorderedSamples_areSortedByTheFront) {
  const std::vector<float> found =
      marks({{2, 6, 9}, {4, 8, 8}, {1, -5, 20}, {3, 7, 8}}, DeepPixel::eUnordered);
  EXPECT_EQ(found,
            farFirst() ? std::vector<float>({4, 3, 2, 1}) : std::vector<float>({1, 2, 3, 4}));
}

TEST_P(DeepPixelOrder, unorderedSamplesOfOneFront_areSortedByTheBack) {
  const std::vector<float> found = marks({{3, 6, 9}, {1, 6, 6}, {2, 6, 7}}, DeepPixel::eUnordered);
  EXPECT_EQ(found, farFirst() ? std::vector<float>({3, 2, 1}) : std::vector<float>({1, 2, 3}));
}

TEST_P(DeepPixelOrder, unorderedTies_stayAsStored) {
  const std::vector<float> found =
      marks({{1, 6, 6}, {2, 6, 6}, {9, 5, 5}, {3, 6, 6}}, DeepPixel::eUnordered);
  EXPECT_EQ(found,
            farFirst() ? std::vector<float>({1, 2, 3, 9}) : std::vector<float>({9, 1, 2, 3}));
}

TEST_P(DeepPixelOrder, manyUnorderedTies_stayAsStored) {
  std::vector<Marked> samples;
  std::vector<float> expected;
  for (int i = 0; i < 100; ++i) {
    expected.push_back(static_cast<float>(i));
    samples.push_back({expected.back(), 6, 6});
  }
  EXPECT_EQ(marks(samples, DeepPixel::eUnordered), expected);
}

TEST_P(DeepPixelOrder, unorderedNaNDepths_areInfinitelyFar) {
  const std::vector<float> found = marks(
      {{4, notANumber, notANumber}, {3, infinite, infinite}, {2, 6, notANumber}, {1, 6, 1e30F}},
      DeepPixel::eUnordered);
  EXPECT_EQ(found,
            farFirst() ? std::vector<float>({4, 3, 2, 1}) : std::vector<float>({1, 2, 4, 3}));
}

TEST_P(DeepPixelOrder, unorderedSample_isAsStored) {
  const ChannelMap map(ChannelSet(Mask_Alpha | Mask_Deep));
  const std::vector<float> values = {0.5F, 9.0F, 9.5F, 0.25F, 3.0F, 4.0F};
  const DeepPixel pixel(map, values.data(), values.size(), DeepPixel::eUnordered);
  EXPECT_EQ(pixel.getUnorderedSample(0, Chan_DeepFront), 9.0F);
  EXPECT_EQ(pixel.getUnorderedSample(1, Chan_DeepBack), 4.0F);
  EXPECT_EQ(pixel.getUnorderedSample(1), values.data() + 3);
  EXPECT_EQ(pixel.data(), values.data()) << "a view, not a copy";
}

TEST_P(DeepPixelOrder, absentChannel_reads0) {
  const ChannelMap map(ChannelSet(Mask_Alpha | Mask_DeepFront));
  const std::vector<float> values = {0.5F, 9.0F, 0.25F, 3.0F};
  const DeepPixel pixel(map, values.data(), values.size(), DeepPixel::eUnordered);
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(pixel.getUnorderedSample(i, Chan_Red), 0.0F);
    EXPECT_EQ(pixel.getOrderedSample(i, Chan_DeepBack), 0.0F);
    EXPECT_EQ(pixel.getOrderedSample(i, Chan_Black), 0.0F);
  }
}

TEST_P(DeepPixelOrder, unorderedSamplesWithoutBack_areSortedByTheFront) {
  const ChannelMap map{ChannelSet(Mask_DeepFront)};
  const std::vector<float> values = {9.0F, -3.0F, 4.0F};
  const DeepPixel pixel(map, values.data(), values.size(), DeepPixel::eUnordered);
  EXPECT_EQ(pixel.getOrderedSample(0, Chan_DeepFront), farFirst() ? 9.0F : -3.0F);
  EXPECT_EQ(pixel.getOrderedSample(1, Chan_DeepFront), 4.0F);
}

TEST_P(DeepPixelOrder, copy_servesTheSameSamples) {
  const ChannelMap map{ChannelSet(Mask_DeepFront)};
  const std::vector<float> values = {9.0F, -3.0F, 4.0F};
  std::vector<DeepPixel> pixels;
  pixels.emplace_back(map, values.data(), values.size(), DeepPixel::eUnordered);
  pixels.push_back(pixels.front());
  pixels.erase(pixels.begin());
  EXPECT_EQ(pixels[0].getOrderedSample(1, Chan_DeepFront), 4.0F);
}

TEST(DeepPixel, sampleCount_isTheNumberOfWholeSamples) {
  const ChannelMap map(ChannelSet(Mask_Alpha | Mask_Deep));
  const std::vector<float> values(7, 1.0F);
  EXPECT_EQ(DeepPixel(map, values.data(), 6, DeepPixel::eUnordered).getSampleCount(), 2U);
  EXPECT_EQ(DeepPixel(map, values.data(), 7, DeepPixel::eUnordered).getSampleCount(), 2U);
  EXPECT_EQ(DeepPixel(map, values.data(), 7, DeepPixel::eUnordered).getDataCount(), 7U);
  EXPECT_EQ(DeepPixel(map, nullptr, 0, DeepPixel::eUnordered).getSampleCount(), 0U);
}

TEST(DeepPixel, withoutChannels_hasNoSamples) {
  const ChannelMap none;
  EXPECT_EQ(DeepPixel(none, nullptr, 0, DeepPixel::eZAscending).getSampleCount(), 0U);
}

TEST(DeepPixel, map_isTheOneGiven) {
  const ChannelMap map{ChannelSet(Mask_Deep)};
  const DeepPixel pixel(map, nullptr, 0, DeepPixel::eZDescending);
  EXPECT_EQ(&pixel.channels(), &map);
  EXPECT_EQ(pixel.ordering(), DeepPixel::eZDescending);
}

TEST(DeepOutPixel, pixel_isAViewOfWhatWasPushed) {
  const ChannelMap map{ChannelSet(Mask_Deep)};
  DeepOutPixel out;
  EXPECT_TRUE(out.empty());
  out.reserve(4);
  for (const float value : {1.0F, 2.0F, 3.0F, 4.0F})
    out.push_back(value);
  EXPECT_EQ(out.size(), 4U);
  EXPECT_EQ(out[2], 3.0F);
  const DeepPixel pixel = out.getPixel(map, DeepPixel::eZAscending);
  EXPECT_EQ(pixel.getSampleCount(), 2U);
  EXPECT_EQ(pixel.data(), out.data());
  EXPECT_EQ(pixel.getUnorderedSample(1, Chan_DeepBack), 4.0F);
  out.clear();
  EXPECT_EQ(out.size(), 0U);
}

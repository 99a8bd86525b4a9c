#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "DDImage/Hash.h"
#include "EmbeddedHost/DeepInput.h"

using namespace DD::Image;
using embedded::DeepImage;
using embedded::DeepRow;

namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();

const ChannelSet alphaAndDepths(Mask_Alpha | Mask_Deep);

/// 3 x 2 pixels beside the origin.
DeepImage smallImage() {
  return {Format(8, 6), Box(-1, 4, 2, 6), alphaAndDepths};
}

DeepRow readRow(DeepImage& image, int y, int x, int r,
                const ChannelSet& channels = alphaAndDepths) {
  DeepRow row;
  image.readRow(y, x, r, channels, row);
  return row;
}

std::string refusal(const std::vector<float>& samples, int x, int y) {
  DeepImage image = smallImage();
  try {
    image.setPixel(x, y, samples);
  } catch (const std::invalid_argument& exception) {
    return exception.what();
  }
  return "";
}

std::uint64_t hashOf(const DeepImage& image) {
  Hash hash;
  image.append(hash);
  return hash.value();
}

}  // namespace

TEST(DeepImage, unsetPixels_haveNoSamples) {
  DeepImage image = smallImage();
  const DeepRow row = readRow(image, 4, -1, 2);
  EXPECT_EQ(row.counts, std::vector<std::uint32_t>({0, 0, 0}));
  EXPECT_TRUE(row.values.empty());
}

TEST(DeepImage, samples_areSortedNearestFirst) {
  DeepImage image = smallImage();
  image.setPixel(0, 5, {0.1F, 9, 9, 0.2F, 2, 8, 0.3F, 2, 4});
  EXPECT_EQ(readRow(image, 5, 0, 1).values,
            std::vector<float>({0.3F, 2, 4, 0.2F, 2, 8, 0.1F, 9, 9}));
}

TEST(DeepImage, samplesAtTheSameDepths_keepTheirOrder) {
  DeepImage image = smallImage();
  image.setPixel(0, 5, {0.1F, 3, 3, 0.2F, 3, 3, 0.3F, 1, 1, 0.4F, 3, 3});
  EXPECT_EQ(readRow(image, 5, 0, 1).values,
            std::vector<float>({0.3F, 1, 1, 0.1F, 3, 3, 0.2F, 3, 3, 0.4F, 3, 3}));
}

TEST(DeepImage, samplesAtNaN_areTheFarthest) {
  DeepImage image = smallImage();
  image.setPixel(
      0, 5,
      {0.1F, notANumber, notANumber, 0.2F, infinite, infinite, 0.3F, 7, notANumber, 0.4F, 7, 8});
  const std::vector<float> values = readRow(image, 5, 0, 1).values;
  ASSERT_EQ(values.size(), 12U);
  EXPECT_EQ(values[0], 0.4F);
  EXPECT_EQ(values[3], 0.3F) << "its back is NaN";
  EXPECT_EQ(values[6], 0.1F) << "NaN and infinity are as far as each other";
  EXPECT_EQ(values[9], 0.2F);
}

TEST(DeepImage, row_hasThePixelsFromTheLeft) {
  DeepImage image = smallImage();
  image.setPixel(-1, 4, {0.1F, 1, 1});
  image.setPixel(1, 4, {0.2F, 2, 2, 0.3F, 3, 3});
  image.setPixel(0, 5, {0.9F, 9, 9});
  const DeepRow row = readRow(image, 4, -1, 2);
  EXPECT_EQ(row.counts, std::vector<std::uint32_t>({1, 0, 2}));
  EXPECT_EQ(row.values, std::vector<float>({0.1F, 1, 1, 0.2F, 2, 2, 0.3F, 3, 3}));
  EXPECT_EQ(readRow(image, 4, 1, 2).counts, std::vector<std::uint32_t>({2})) << "some columns";
}

TEST(DeepImage, row_replacesWhatWasThere) {
  DeepImage image = smallImage();
  image.setPixel(0, 5, {0.9F, 9, 9});
  DeepRow row = readRow(image, 5, -1, 2);
  image.readRow(5, 0, 1, alphaAndDepths, row);
  EXPECT_EQ(row.counts, std::vector<std::uint32_t>({1}));
  EXPECT_EQ(row.values.size(), 3U);
}

TEST(DeepImage, fewerChannels_areReadInAscendingOrder) {
  DeepImage image(Format(1, 1), Box(0, 0, 1, 1), Mask_RGBA | Mask_Deep);
  image.setPixel(0, 0, {1, 2, 3, 4, 6, 7});
  EXPECT_EQ(readRow(image, 0, 0, 1, Mask_DeepBack | Mask_Green).values, std::vector<float>({2, 7}));
}

TEST(DeepImage, pixelSetAgain_isReplaced) {
  DeepImage image = smallImage();
  image.setPixel(0, 5, {0.9F, 9, 9, 0.8F, 8, 8});
  image.setPixel(0, 5, {});
  EXPECT_EQ(readRow(image, 5, 0, 1).counts, std::vector<std::uint32_t>({0}));
}

TEST(DeepImage, withoutFrontOrBack_isRefused) {
  EXPECT_THROW(DeepImage(Format(1, 1), Box(0, 0, 1, 1), Mask_RGBA), std::invalid_argument);
  EXPECT_THROW(DeepImage(Format(1, 1), Box(0, 0, 1, 1), Mask_Alpha | Mask_DeepFront),
               std::invalid_argument);
  EXPECT_THROW(DeepImage(Format(1, 1), Box(0, 0, 1, 1), Mask_Alpha | Mask_DeepBack),
               std::invalid_argument);
}

TEST(DeepImage, unevenSamples_areRefusedAndChangeNothing) {
  EXPECT_EQ(refusal({0.5F, 1}, 0, 5), "a deep sample has one value for each channel");
  DeepImage image = smallImage();
  image.setPixel(0, 5, {0.9F, 9, 9});
  EXPECT_THROW(image.setPixel(0, 5, {1, 2, 3, 4}), std::invalid_argument);
  EXPECT_EQ(readRow(image, 5, 0, 1).values, std::vector<float>({0.9F, 9, 9}));
}

TEST(DeepImage, pixelsOutside_areRefusedByTheirPlace) {
  const std::vector<float> sample = {0.5F, 1, 1};
  EXPECT_EQ(refusal(sample, 2, 5), "pixel 2,5 is outside the deep picture");
  EXPECT_EQ(refusal(sample, 0, 6), "pixel 0,6 is outside the deep picture");
  EXPECT_EQ(refusal(sample, -2, 4), "pixel -2,4 is outside the deep picture");
  EXPECT_EQ(refusal(sample, 0, 3), "pixel 0,3 is outside the deep picture");
  EXPECT_EQ(refusal(sample, std::numeric_limits<int>::max(), 4),
            "pixel 2147483647,4 is outside the deep picture");
  EXPECT_EQ(refusal(sample, -1, 4), "");
}

TEST(DeepImage, emptyBox_hasNoPixel) {
  DeepImage image(Format(4, 4), Box(), alphaAndDepths);
  EXPECT_THROW(image.setPixel(0, 0, {}), std::invalid_argument);
}

TEST(DeepImage, eachPart_changesItsHash) {
  const std::uint64_t plain = hashOf(smallImage());
  EXPECT_EQ(plain, hashOf(smallImage()));
  EXPECT_NE(plain, hashOf(DeepImage(Format(9, 6), Box(-1, 4, 2, 6), alphaAndDepths)));
  EXPECT_NE(plain, hashOf(DeepImage(Format(8, 6), Box(0, 4, 3, 6), alphaAndDepths)));
  EXPECT_NE(plain, hashOf(DeepImage(Format(8, 6), Box(-1, 4, 2, 6), Mask_Red | Mask_Deep)));
  DeepImage set = smallImage();
  set.setPixel(0, 5, {0.9F, 9, 9});
  DeepImage beside = smallImage();
  beside.setPixel(1, 5, {0.9F, 9, 9});
  EXPECT_NE(plain, hashOf(set));
  EXPECT_NE(hashOf(set), hashOf(beside)) << "the same samples in another pixel";
}

TEST(NearestFirst, sortedSamples_areLeftAlone) {
  std::vector<float> values = {1, 1, 10, 1, 1, 20, 2, 2, 30};
  const std::vector<float> before = values;
  embedded::sortNearestFirst(values.data(), 3, 3, 0, 1);
  EXPECT_EQ(values, before);
}

TEST(NearestFirst, placesOfTheDepths_areAsGiven) {
  std::vector<float> values = {5, 10, 4, 3, 20, 2, 5, 30, 2};
  embedded::sortNearestFirst(values.data(), 3, 3, 2, 0);
  EXPECT_EQ(values, std::vector<float>({3, 20, 2, 5, 30, 2, 5, 10, 4}));
}

TEST(NearestFirst, manyTies_stayAsTheyStand) {
  std::vector<float> values = {7, 7, -1};
  std::vector<float> sorted;
  for (int i = 0; i < 100; ++i)
    sorted.insert(sorted.end(), {2, 3, static_cast<float>(i)});
  values.insert(values.end(), sorted.begin(), sorted.end());
  sorted.insert(sorted.end(), {7, 7, -1});
  embedded::sortNearestFirst(values.data(), 101, 3, 0, 1);
  EXPECT_EQ(values, sorted);
}

TEST(NearestFirst, valuesBeyondTheCount_areLeftAlone) {
  std::vector<float> values = {5, 5, 4, 4, 3, 3};
  embedded::sortNearestFirst(values.data(), 0, 2, 0, 1);
  EXPECT_EQ(values[0], 5.0F);
  embedded::sortNearestFirst(values.data(), 2, 2, 0, 1);
  EXPECT_EQ(values, std::vector<float>({4, 4, 5, 5, 3, 3}));
}

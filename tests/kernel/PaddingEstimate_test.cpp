#include "kernel/PaddingEstimate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "defocus/FlatEstimate.h"
#include "kernel/KernelBank.h"

namespace drevin {
namespace {

constexpr float inf = std::numeric_limits<float>::infinity();
constexpr float most = std::numeric_limits<float>::max();
const float nan = std::nanf("");

// Blur is the depth itself.
auto plainEstimate(float scale = 1.0F) {
  const auto same = [](float value) { return value; };
  return dvPaddingEstimate(same, same, scale);
}

template <typename Estimate>
void addDepth(Estimate& estimate, float depth) {
  estimate.addRow(&depth, 1);
}

// As the node makes it for flat images.
dvPaddingResult resultOf(const dvLens& lens, const std::vector<float>& depths, int maxKernelSize) {
  dvPaddingResult result;
  withFixedModes(lens, [&](const auto& fixed) {
    auto estimate = flatEstimate(fixed);
    estimate.addRow(depths.data(), static_cast<int>(depths.size()));
    result = paddingResult(estimate.largest(), maxKernelSize);
  });
  return result;
}

int largestOf(const dvLens& lens, const std::vector<float>& depths) {
  return resultOf(lens, depths, 256).largest;
}

// Blur grows to `multiplier` px at 2 units from a focal plane at 10.
dvLens artisticLens(float multiplier) {
  dvLens lens;
  lens.focalPlane = 10.0F;
  lens.focusNear = 8.0F;
  lens.focusFar = 12.0F;
  lens.invHalfFocusRegion = 0.5F;
  lens.multiplier = multiplier;
  return lens;
}

dvLens thinLens() {
  dvLens lens = artisticLens(1.0F);
  lens.realWorldLens = true;
  lens.unit = 1000.0F;
  lens.lensCoefficient = 50.0F / (10000.0F - 50.0F) * 50.0F / 1.4F;
  lens.filmBackScale = 50.0F;
  return lens;
}

TEST(PaddingEstimate, partsInAnyOrder_addUpToTheLargest) {
  const float depths[] = {3.0F, nan, 7.5F, -2.0F};
  auto whole = plainEstimate();
  whole.addRow(depths, 4);
  for (const int cut : {0, 1, 2, 3, 4}) {
    auto first = plainEstimate();
    auto second = plainEstimate();
    first.addRow(depths, cut);
    second.addRow(depths + cut, 4 - cut);
    auto other = second;
    other.add(first);
    first.add(second);
    EXPECT_EQ(first.largest(), whole.largest()) << cut;
    EXPECT_EQ(other.largest(), whole.largest()) << cut;
  }
  EXPECT_EQ(whole.largest(), 8);
}

TEST(PaddingEstimate, frameAtTheInfinityMarker_givesABankOfFiveAndAPaddingOfTwo) {
  const dvPaddingResult result = resultOf(thinLens(), std::vector<float>(512, most), 256);
  EXPECT_EQ(result.kernelSize, 0);
  EXPECT_EQ(bankSize(result.kernelSize), 5);
  EXPECT_EQ(result.padding, 2);
  EXPECT_FALSE(result.exceeded);
}

TEST(PaddingEstimate, largestDiameter7_hasPadding5) {
  EXPECT_EQ(paddingResult(7, 256).padding, 5);
}

TEST(PaddingEstimate, largestDiameter8_hasPadding6) {
  EXPECT_EQ(paddingResult(8, 256).padding, 6);
}

TEST(PaddingEstimate, largestAboveTheMaximum_namesTheDiameterFoundAndIsHeld) {
  const dvPaddingResult result = resultOf(artisticLens(72.5F), {10.0F, 11.0F, 500.0F}, 50);
  EXPECT_TRUE(result.exceeded);
  EXPECT_EQ(result.largest, 73);
  EXPECT_EQ(result.kernelSize, 50);
  EXPECT_EQ(bankSize(result.kernelSize), 55);
  EXPECT_EQ(result.padding, 27);
}

TEST(PaddingEstimate, largestAtTheMaximum_isNotExceeded) {
  const dvPaddingResult result = paddingResult(50, 50);
  EXPECT_FALSE(result.exceeded);
  EXPECT_EQ(result.kernelSize, 50);
}

TEST(PaddingEstimate, nonFiniteReciprocalDepth_countsAsAlmostAtTheLens) {
  dvLens artistic = artisticLens(20.0F);
  artistic.depthStyle = dvDepthStyle::Reciprocal;
  artistic.frontMultiplier = 1.5F;
  dvLens thin = thinLens();
  thin.depthStyle = dvDepthStyle::Reciprocal;
  const float atLens = 0x1p-128F;
  const float thinBlur = unscaledCoc(atLens, dvFocusRegion::Front, thin);
  for (const float depth : {nan, inf, -inf}) {
    EXPECT_EQ(largestOf(artistic, {depth}), 30);  // the near edge of the region, in front
    EXPECT_EQ(largestOf(thin, {depth}), static_cast<int>(std::ceil(std::min(thinBlur, 2e9F))));
  }
}

TEST(PaddingEstimate, nonFiniteRealDepth_raisesNothing) {
  for (const float depth : {nan, inf, -inf}) {
    EXPECT_EQ(largestOf(artisticLens(20.0F), {depth}), 0);
    EXPECT_EQ(largestOf(thinLens(), {depth}), 0);
  }
}

TEST(PaddingEstimate, reciprocalDepthOfZeroOrLess_raisesNothing) {
  dvLens lens = artisticLens(20.0F);
  lens.depthStyle = dvDepthStyle::Reciprocal;
  EXPECT_EQ(largestOf(lens, {0.0F, -0.0F, -1.0F}), 0);
}

TEST(PaddingEstimate, infinityTest_comesBeforeTheFocusRegionClamp) {
  EXPECT_EQ(largestOf(artisticLens(20.0F), {inf}), 0);
  EXPECT_EQ(largestOf(artisticLens(20.0F), {0.5F * most}), 20);
}

TEST(PaddingEstimate, infinitelyFarPixels_doNotScaleTheMaximumAgain) {
  auto estimate = plainEstimate(2.0F);
  const float depths[] = {5.0F, most, most, most};
  estimate.addRow(depths, 4);
  EXPECT_EQ(estimate.largest(), 10);
}

TEST(PaddingEstimate, fractionalDiameter_isRoundedUp) {
  auto estimate = plainEstimate();
  addDepth(estimate, 6.0F);
  EXPECT_EQ(estimate.largest(), 6);
  addDepth(estimate, 6.0001F);
  EXPECT_EQ(estimate.largest(), 7);
}

TEST(PaddingEstimate, finalScale_multipliesEveryBlurBeforeRounding) {
  auto estimate = plainEstimate(0.5F);
  addDepth(estimate, 6.2F);
  EXPECT_EQ(estimate.largest(), 4);
}

TEST(PaddingEstimate, nanBlur_raisesNothing) {
  dvLens lens = artisticLens(20.0F);  // a focus region of size 0
  lens.focusNear = lens.focusFar = 10.0F;
  lens.invHalfFocusRegion = inf;
  EXPECT_EQ(largestOf(lens, {3.0F, 10.0F, 90.0F}), 0);
  auto estimate = plainEstimate();
  const float depths[] = {nan, 3.0F, nan};
  estimate.addRow(depths, 3);
  EXPECT_EQ(estimate.largest(), 3);
}

TEST(PaddingEstimate, negativeBlur_raisesNothing) {
  EXPECT_EQ(largestOf(artisticLens(-20.0F), {0.0F, 100.0F}), 0);
}

TEST(PaddingEstimate, blurNoIntegerHolds_countsAsTheLargestInteger) {
  for (const float blur : {0x1p31F, 1e30F, inf}) {
    auto estimate = plainEstimate();
    addDepth(estimate, blur);
    EXPECT_EQ(estimate.largest(), std::numeric_limits<int>::max());
    const dvPaddingResult result = paddingResult(estimate.largest(), 256);
    EXPECT_TRUE(result.exceeded);
    EXPECT_EQ(result.kernelSize, 256);
    EXPECT_EQ(result.padding, 130);
  }
  auto below = plainEstimate();
  addDepth(below, 0x1.fffffep30F);
  EXPECT_EQ(below.largest(), 2147483520);
}

TEST(PaddingEstimate, noDepths_giveZero) {
  auto estimate = plainEstimate();
  estimate.addRow(nullptr, 0);
  estimate.addRow(nullptr, -3);
  EXPECT_EQ(estimate.largest(), 0);
}

TEST(PaddingEstimate, largestDepth_countsAtEveryPlaceOfARow) {
  for (int count = 1; count < 70; ++count) {
    for (int place = 0; place < count; ++place) {
      std::vector<float> row(static_cast<std::size_t>(count), 2.0F);
      row[static_cast<std::size_t>(place)] = 9.5F;
      row[static_cast<std::size_t>((place + 1) % count)] = count > 1 ? nan : 9.5F;
      auto estimate = plainEstimate();
      estimate.addRow(row.data(), count);
      ASSERT_EQ(estimate.largest(), 10) << place << " of " << count;
    }
  }
}

TEST(PaddingEstimate, depthsBeyondTheRow_doNotCount) {
  const std::vector<float> row(100, 9.5F);
  for (int count = 0; count < 70; ++count) {
    std::vector<float> depths(static_cast<std::size_t>(count), 2.0F);
    depths.insert(depths.end(), row.begin(), row.end());
    auto estimate = plainEstimate();
    estimate.addRow(depths.data(), count);
    ASSERT_EQ(estimate.largest(), count == 0 ? 0 : 2) << count;
  }
}

// Pixel by pixel, each rounded on its own.
int literalLargest(const dvLens& lens, const std::vector<float>& depths) {
  int largest = 0;
  for (const float raw : depths) {
    const float depth = normaliseDepth(raw, lens.depthStyle);
    if (std::fabs(depth - most) < 1e-5F) {
      continue;
    }
    const float z = clampToFocusRegion(depth, lens);
    const double blur = std::ceil(
        static_cast<double>(unscaledCoc(z, focusRegion(z, lens), lens) * lens.uiContextScale));
    if (blur >= 2147483647.0) {
      largest = std::numeric_limits<int>::max();
    } else if (!std::isnan(blur)) {
      largest = std::max(largest, static_cast<int>(std::max(blur, 0.0)));
    }
  }
  return largest;
}

TEST(PaddingEstimate, randomFrames_agreeWithPixelByPixelRounding) {
  std::mt19937 generator(5);
  std::uniform_real_distribution<float> unit(0.0F, 1.0F);
  for (int i = 0; i < 400; ++i) {
    dvLens lens = i % 2 == 0 ? artisticLens(100.0F * unit(generator)) : thinLens();
    lens.depthStyle = i % 3 == 0 ? dvDepthStyle::Reciprocal : dvDepthStyle::Real;
    lens.falloff = i % 5 == 0 ? dvFalloff::Quadratic : dvFalloff::Linear;
    lens.frontMultiplier = 2.0F * unit(generator);
    lens.backMultiplier = 2.0F * unit(generator);
    lens.uiContextScale = 0.25F + unit(generator);
    std::vector<float> depths{nan, inf, -inf, 0.0F, -4.0F, most};
    for (int p = 0; p < i; ++p) {
      depths.push_back(static_cast<float>(i % 7) * 4.0F * unit(generator));
    }
    std::shuffle(depths.begin(), depths.end(), generator);
    ASSERT_EQ(largestOf(lens, depths), literalLargest(lens, depths)) << "case " << i;
  }
}

TEST(PaddingEstimate, modesThatHaveNoName_countAsInTheRows) {
  const std::vector<float> depths{8.5F, 9.0F, 10.5F, 11.5F};
  dvLens lens = artisticLens(40.0F);
  lens.falloff = static_cast<dvFalloff>(2);
  lens.depthStyle = static_cast<dvDepthStyle>(2);
  EXPECT_EQ(largestOf(lens, depths), literalLargest(lens, depths));
  EXPECT_EQ(largestOf(lens, depths), 30);
}

TEST(ValidationPadding, anyMaximum_isHalfOfItRoundedDown) {
  EXPECT_EQ(validationPadding(256), 128);
  EXPECT_EQ(validationPadding(255), 127);
  EXPECT_EQ(validationPadding(1), 0);
  EXPECT_EQ(validationPadding(2), 1);
  EXPECT_EQ(validationPadding(std::numeric_limits<int>::max()), 1073741823);
}

}  // namespace
}  // namespace drevin

#include "sheet/AreaFilter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>

namespace drevintool {
namespace {

std::vector<float> ramp(const PixelSize& size) {
  std::vector<float> samples(static_cast<std::size_t>(size.width * size.height));
  std::iota(samples.begin(), samples.end(), 0.0F);
  return samples;
}

double meanOf(const std::vector<float>& samples) {
  return std::accumulate(samples.begin(), samples.end(), 0.0) / static_cast<double>(samples.size());
}

TEST(AreaFilter, wholeFactor_isTheMeanOfEachBlock) {
  const std::vector<float> result = areaFiltered({0, 1, 2, 3, 4, 5, 6, 7}, {4, 2}, {2, 1});
  EXPECT_EQ(result, (std::vector<float>{2.5F, 4.5F}));
}

TEST(AreaFilter, partlyCoveredSamples_countByTheirShare) {
  const std::vector<float> result = areaFiltered({0, 3, 6}, {3, 1}, {2, 1});
  // (0 + 3 / 2) / 1.5 and (3 / 2 + 6) / 1.5
  EXPECT_FLOAT_EQ(result[0], 1.0F);
  EXPECT_FLOAT_EQ(result[1], 5.0F);
}

TEST(AreaFilter, sameSize_keepsBits) {
  std::vector<float> samples = ramp({5, 3});
  samples[4] = std::numeric_limits<float>::denorm_min();
  EXPECT_EQ(areaFiltered(samples, {5, 3}, {5, 3}), samples);
}

TEST(AreaFilter, constantPicture_staysConstant) {
  const std::vector<float> samples(97 * 61, 0.18F);
  for (const float value : areaFiltered(samples, {97, 61}, {31, 7}))
    EXPECT_FLOAT_EQ(value, 0.18F);
}

TEST(AreaFilter, meanOfThePicture_isKeptForAnyFactor) {
  const PixelSize from{101, 67};
  const std::vector<float> samples = ramp(from);
  for (const PixelSize to : {PixelSize{1, 1}, PixelSize{7, 5}, PixelSize{100, 66}}) {
    EXPECT_NEAR(meanOf(areaFiltered(samples, from, to)), meanOf(samples), 1e-3)
        << to.width << " x " << to.height;
  }
}

TEST(AreaFilter, valueThatIsNotFinite_spoilsOnlyWhatCoversIt) {
  std::vector<float> samples(300, 1.0F);
  samples[100] = std::numeric_limits<float>::quiet_NaN();
  const std::vector<float> result = areaFiltered(samples, {300, 1}, {3, 1});
  EXPECT_EQ(result[0], 1.0F);
  EXPECT_TRUE(std::isnan(result[1])) << "sample 100 begins where result 1 does";
  EXPECT_EQ(result[2], 1.0F);
}

}  // namespace
}  // namespace drevintool

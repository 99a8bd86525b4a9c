#include "deep/DeepBandPlan.h"

#include <gtest/gtest.h>

#include "terminal/ExitCode.h"
#include "terminal/SizeText.h"

namespace drevintool {
namespace {

MemoryBudget budgetOf(std::uint64_t bytes) {
  return {bytes, "the " + sizeText(bytes), "give it more", 0};
}

const MemoryBudget kPlenty = budgetOf(std::uint64_t{1} << 40);

ExrPartFacts scanlinePart(int width, int top, int height) {
  ExrPartFacts part;
  part.deep = true;
  part.dataWindow = {0, top, width - 1, top + height - 1};
  return part;
}

ExrPartFacts tiledPart(int width, int height, std::uint32_t tileWidth, std::uint32_t tileHeight) {
  ExrPartFacts part = scanlinePart(width, 0, height);
  part.tiled = true;
  part.tileWidth = tileWidth;
  part.tileHeight = tileHeight;
  return part;
}

// Every row is in one band, the bands lie in order without gaps, and no sample is lost.
void expectWholePart(const DeepBandPlan& plan, const ExrPartFacts& part,
                     const std::vector<std::uint64_t>& samples) {
  std::uint64_t planned = 0;
  int next = part.dataWindow.minY;
  for (std::size_t band = 0; band < plan.size(); ++band) {
    EXPECT_EQ(plan[band].first, next);
    ASSERT_GE(plan[band].last, plan[band].first);
    for (int row = plan[band].first; row <= plan[band].last; ++row)
      ASSERT_EQ(plan.bandOf(row), band);
    next = plan[band].last + 1;
    planned += plan[band].samples;
  }
  EXPECT_EQ(next, part.dataWindow.maxY + 1);
  std::uint64_t announced = 0;
  for (const std::uint64_t count : samples)
    announced += count;
  EXPECT_EQ(planned, announced);
}

std::string failureOf(const ExrPartFacts& part, const std::vector<std::uint64_t>& samples,
                      const MemoryBudget& budget) {
  try {
    const DeepBandPlan plan(part, samples, 6, "smoke.exr", budget);
  } catch (const ToolError& error) {
    EXPECT_EQ(error.code(), ExitCode::InputUnreadable);
    return error.what();
  }
  return {};
}

TEST(DeepBandPlan, scanlinesWithFewSamples_comeBy64) {
  const ExrPartFacts part = scanlinePart(10, -7, 150);
  const std::vector<std::uint64_t> samples(150, 12);
  const DeepBandPlan plan(part, samples, 6, "smoke.exr", kPlenty);
  expectWholePart(plan, part, samples);
  ASSERT_EQ(plan.size(), 3U);
  EXPECT_EQ(plan[0].last, 56);
  EXPECT_EQ(plan[2].samples, 22U * 12U);
}

TEST(DeepBandPlan, scanlinesWithManySamples_areSplit) {
  const ExrPartFacts part = scanlinePart(4096, 0, 40);
  std::vector<std::uint64_t> samples(40, 400000);
  samples[11] = 9000000;
  const DeepBandPlan plan(part, samples, 6, "smoke.exr", kPlenty);
  expectWholePart(plan, part, samples);
  for (std::size_t band = 0; band < plan.size(); ++band)
    EXPECT_TRUE(plan[band].samples <= 1U << 20 || plan[band].first == plan[band].last);
}

TEST(DeepBandPlan, tiles_comeByTheirRows) {
  const ExrPartFacts part = tiledPart(70, 50, 32, 16);
  const std::vector<std::uint64_t> samples = {1, 2, 3, 10, 20, 30, 100, 200, 300, 7, 8, 9};
  const DeepBandPlan plan(part, samples, 6, "smoke.exr", kPlenty);
  expectWholePart(plan, part, samples);
  ASSERT_EQ(plan.size(), 4U);
  EXPECT_EQ(plan[1].samples, 60U);
  EXPECT_EQ(plan[3].first, 48);
  EXPECT_EQ(plan[3].last, 49);
}

TEST(DeepBandPlan, oneTileOverAll_isOneBand) {
  const ExrPartFacts part = tiledPart(7, 5, 512, 512);
  const DeepBandPlan plan(part, {35}, 6, "smoke.exr", kPlenty);
  expectWholePart(plan, part, {35});
  EXPECT_EQ(plan.size(), 1U);
}

TEST(DeepBandPlan, rowWithTooManySamples_isNamed) {
  const std::string line = failureOf(scanlinePart(4096, 30, 2), {5, kMostBandSamples + 1}, kPlenty);
  EXPECT_NE(line.find("smoke.exr: row 31 holds 67108865 samples"), std::string::npos) << line;
  EXPECT_EQ(failureOf(scanlinePart(4096, 30, 2), {5, kMostBandSamples}, kPlenty), "");
}

TEST(DeepBandPlan, bandBeyondTheMemory_isNamedWithBothFigures) {
  const std::uint64_t mebibyte = std::uint64_t{1} << 20;
  // 1000000 samples of 6 floats are 22.9 MiB, and rows have some of their own.
  const std::string line = failureOf(tiledPart(64, 64, 64, 64), {1000000}, budgetOf(20 * mebibyte));
  EXPECT_NE(line.find("rows 0 to 63 hold 1000000 samples"), std::string::npos) << line;
  EXPECT_NE(line.find("needs 23.1 MiB"), std::string::npos) << line;
  EXPECT_NE(line.find("20.0 MiB"), std::string::npos) << line;
  EXPECT_EQ(failureOf(tiledPart(64, 64, 64, 64), {1000000}, budgetOf(24 * mebibyte)), "");
}

TEST(DeepBandPlan, sampleCountsOfAllScanlines_areWithinTheMemory) {
  const std::uint64_t mebibyte = std::uint64_t{1} << 20;
  const std::vector<std::uint64_t> none(4096, 0);
  EXPECT_NE(failureOf(scanlinePart(4096, 0, 4096), none, budgetOf(60 * mebibyte)), "");
  EXPECT_EQ(failureOf(scanlinePart(4096, 0, 4096), none, budgetOf(90 * mebibyte)), "");
}

}  // namespace
}  // namespace drevintool

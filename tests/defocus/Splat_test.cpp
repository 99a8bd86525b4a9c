#include "defocus/Splat.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "defocus/SplatBench.h"
#include "support/Draw.h"

namespace drevin::test {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
const float nan = std::nanf("");
const std::vector<int> red{1};
const std::vector<int> rgba{1, 2, 3, 4};
const std::vector<float> pixel{0.0F, 2.0F, 3.0F, 5.0F, 7.0F};

dvSplatSource sourceAt(int x, int y, float coc) {
  dvSplatSource source;
  source.x = source.clampedX = x;
  source.y = source.clampedY = y;
  source.coc = coc;
  return source;
}

/// Value of a kernel pixel of the counting bank.
float kernelValue(const dvKernelBank& bank, int entry, int column, int row, int channel = 1) {
  const dvChannelFloatBuffer& kernel = bank[static_cast<std::size_t>(entry)];
  return kernel.plane(channel)[row * kernel.width + column];
}

TEST(Splat, cocExactlyThree_usesEntryThreeAlone) {
  const dvKernelBank bank = countingBank(12, red);
  SplatBench bench(red, {-5, 0, 6});
  bench.splat(bank, sourceAt(0, 0, 3.0F), pixel);
  for (int x = -5; x < 6; ++x) {
    const bool inside = std::abs(x) <= 1;
    EXPECT_EQ(bench.weight(1, x), inside ? kernelValue(bank, 3, x + 1, 1) : 0.0F) << x;
  }
}

TEST(Splat, cocFour_blendsEntriesFourAndSixByHalves) {
  const dvKernelBank bank = countingBank(12, red);
  SplatBench bench(red, {-5, 0, 6});
  bench.splat(bank, sourceAt(0, 0, 4.0F), pixel);
  for (int x = -2; x <= 2; ++x) {
    const float small = std::abs(x) <= 1 ? kernelValue(bank, 4, x + 1, 1) : 0.0F;
    EXPECT_FLOAT_EQ(bench.weight(1, x), 0.5F * small + 0.5F * kernelValue(bank, 6, x + 2, 2)) << x;
  }
  EXPECT_EQ(bench.weight(1, 3), 0.0F);
}

TEST(Splat, cocBetweenKernels_hasItselfAsTheMeanSide) {
  // The bank's values are replaced by each entry's side, so that the weight is the mean side.
  dvKernelBank bank = countingBank(24, red);
  for (dvChannelFloatBuffer& entry : bank) {
    std::fill(entry.channels[1].begin(), entry.channels[1].end(), static_cast<float>(entry.width));
  }
  for (const float coc : {1.0F, 1.25F, 2.0F, 2.9F, 3.0F, 7.75F, 10.0F, 21.9F}) {
    SplatBench bench(red, {0, 0, 1});
    bench.splat(bank, sourceAt(0, 0, coc), pixel);
    EXPECT_FLOAT_EQ(bench.weight(1, 0), coc);
  }
}

TEST(Splat, cocAboveTheBank_usesTheLargestKernelWhole) {
  const dvKernelBank bank = countingBank(8, red);
  for (const float coc : {8.0F, 1000.0F, 1e30F, infinity, nan}) {
    SplatBench bench(red, {-5, 0, 6});
    bench.splat(bank, sourceAt(0, 0, coc), pixel);
    EXPECT_EQ(bench.weight(1, 0), kernelValue(bank, 7, 3, 3)) << coc;
    EXPECT_EQ(bench.weight(1, 3), kernelValue(bank, 7, 6, 3)) << coc;
  }
}

TEST(Splat, secondEntryBeyondTheBank_isHeldAtTheLast) {
  const dvKernelBank bank = countingBank(8, red);
  SplatBench bench(red, {0, 0, 1});
  bench.splat(bank, sourceAt(0, 0, 7.5F), pixel);
  EXPECT_FLOAT_EQ(bench.weight(1, 0), kernelValue(bank, 7, 3, 3));
}

TEST(Splat, cocBelowOne_takesEntryOneInPlaceOfEntryZero) {
  const dvKernelBank bank = countingBank(8, red);
  SplatBench bench(red, {0, 0, 1});
  bench.splat(bank, sourceAt(0, 0, 0.5F), pixel);
  // Share 1 - (0.5 - 1) / 2 of entry 1; the other share is negative and skipped.
  EXPECT_FLOAT_EQ(bench.weight(1, 0), 1.25F * kernelValue(bank, 1, 0, 0));
}

TEST(Splat, sourceOneRowBeyondItsReach_addsNothing) {
  const dvKernelBank bank = countingBank(12, red);
  for (const int dy : {-2, 2}) {
    SplatBench bench(red, {-5, 0, 6});
    bench.splat(bank, sourceAt(0, dy, 3.0F), pixel);
    EXPECT_EQ(bench.totalWeight(1), 0.0F);
  }
}

TEST(Splat, rowAboveTheSource_takesTheKernelRowBelowTheCentre) {
  const dvKernelBank bank = countingBank(12, red);
  SplatBench bench(red, {0, 1, 1});
  bench.splat(bank, sourceAt(0, 0, 3.0F), pixel);
  EXPECT_EQ(bench.weight(1, 0), kernelValue(bank, 3, 1, 0));
}

TEST(Splat, kernelAcrossTheSpansEnds_isClipped) {
  const dvKernelBank bank = countingBank(12, red);
  for (int x = -4; x <= 6; ++x) {
    SplatBench bench(red, {0, 0, 3});
    bench.splat(bank, sourceAt(x, 0, 5.0F), pixel);
    for (int i = 0; i < 3; ++i) {
      const int column = i - x + 2;
      const bool inside = column >= 0 && column < 5;
      EXPECT_EQ(bench.weight(1, i), inside ? kernelValue(bank, 5, column, 2) : 0.0F) << x;
    }
  }
}

TEST(Splat, colour_isKernelTimesValueTimesWeight) {
  const dvKernelBank bank = countingBank(12, rgba);
  SplatBench bench(rgba, {0, 0, 1});
  dvSplatSource source = sourceAt(0, 0, 3.0F);
  source.weight = 0.25F;
  bench.splat(bank, source, pixel);
  for (const int channel : rgba) {
    const float share = 0.25F * kernelValue(bank, 3, 1, 1, channel);
    EXPECT_FLOAT_EQ(bench.weight(channel, 0), share);
    EXPECT_FLOAT_EQ(bench.colour(channel, 0), share * pixel[static_cast<std::size_t>(channel)]);
  }
}

TEST(Splat, weightZeroOrLess_addsNothing) {
  const dvKernelBank bank = countingBank(12, red);
  for (const float weight : {0.0F, -1.0F}) {
    SplatBench bench(red, {0, 0, 1});
    dvSplatSource source = sourceAt(0, 0, 3.0F);
    source.weight = weight;
    bench.splat(bank, source, pixel);
    EXPECT_EQ(bench.weight(1, 0), 0.0F);
  }
}

TEST(Splat, slice_selectsTheAccumulator) {
  const dvKernelBank bank = countingBank(12, red);
  SplatBench bench(red, {0, 0, 1}, 3);
  dvSplatSource source = sourceAt(0, 0, 1.0F);
  source.slice = 2;
  bench.splat(bank, source, pixel);
  EXPECT_EQ(bench.weight(1, 0, 0), 0.0F);
  EXPECT_EQ(bench.weight(1, 0, 1), 0.0F);
  EXPECT_GT(bench.weight(1, 0, 2), 0.0F);
}

TEST(Splat, sliceOutOfRange_isSkipped) {
  const dvKernelBank bank = countingBank(12, red);
  SplatBench bench(red, {0, 0, 1}, 3);
  for (const std::uint64_t slice : {std::uint64_t{3}, ~std::uint64_t{0}}) {
    dvSplatSource source = sourceAt(0, 0, 1.0F);
    source.slice = slice;
    bench.splat(bank, source, pixel);
  }
  for (std::size_t slice = 0; slice < 3; ++slice) {
    EXPECT_EQ(bench.weight(1, 0, slice), 0.0F);
  }
}

TEST(Splat, emptyBank_addsNothing) {
  SplatBench bench(red, {0, 0, 1});
  bench.splat({}, sourceAt(0, 0, 1.0F), pixel);
  EXPECT_EQ(bench.weight(1, 0), 0.0F);
}

TEST(Splat, lensBloomAtOrBelowTheThreshold_splatsZeroWithTheKernelsWeight) {
  const dvKernelBank bank = countingBank(12, rgba);
  SplatBench bench(rgba, {0, 0, 1});
  bench.settings.bloom = {1.0F, 0.0F, 2.0F, 10, 10};
  bench.settings.bloomOnly = true;
  bench.splat(bank, sourceAt(0, 0, 1.0F), pixel);
  EXPECT_EQ(bench.colour(1, 0), 0.0F);
  EXPECT_EQ(bench.weight(1, 0), kernelValue(bank, 1, 0, 0, 1));
  EXPECT_FLOAT_EQ(bench.colour(2, 0), kernelValue(bank, 1, 0, 0, 2) * 1.0F);
  EXPECT_FLOAT_EQ(bench.colour(4, 0), kernelValue(bank, 1, 0, 0, 4) * 7.0F);
}

TEST(Splat, bloom_addsToColourButNotToAlpha) {
  const dvKernelBank bank = countingBank(12, rgba);
  SplatBench bench(rgba, {0, 0, 1});
  bench.settings.bloom = {0.5F, 0.0F, 1.0F, 10, 10};
  dvSplatSource source = sourceAt(0, 0, 1.0F);
  source.bloomMatte = 0.5F;
  bench.splat(bank, source, pixel);
  EXPECT_FLOAT_EQ(bench.colour(3, 0), kernelValue(bank, 1, 0, 0, 3) * (5.0F + 4.0F * 0.25F));
  EXPECT_FLOAT_EQ(bench.colour(4, 0), kernelValue(bank, 1, 0, 0, 4) * 7.0F);
}

TEST(Splat, bloom_isPlacedByTheClampedPosition) {
  const dvKernelBank bank = countingBank(12, red);
  SplatBench bench(red, {-30, 0, 1});
  bench.settings.bloom = {1.0F, 2.0F, 0.0F, 10, 10};
  dvSplatSource source = sourceAt(-30, 0, 1.0F);
  source.clampedX = 5;
  source.clampedY = 5;
  bench.splat(bank, source, pixel);
  EXPECT_FLOAT_EQ(bench.colour(1, -30), kernelValue(bank, 1, 0, 0) * 2.0F);
}

/// The only column with weight, or -99.
int columnOf(SplatBench& bench, int channel, int left, int right) {
  int found = -99;
  for (int x = left; x < right; ++x) {
    if (bench.weight(channel, x) != 0.0F) found = found == -99 ? x : -98;
  }
  return found;
}

/// A bank whose kernels are black but for their centre.
dvKernelBank pointBank(int size, const std::vector<int>& channels) {
  dvKernelBank bank = countingBank(size, channels);
  for (dvChannelFloatBuffer& entry : bank) {
    for (const int channel : channels) {
      for (int i = 0; i < entry.count; ++i) {
        entry.plane(channel)[i] = i == entry.count / 2 ? 1.0F : 0.0F;
      }
    }
  }
  return bank;
}

TEST(Splat, positiveAberration_neverShiftsBlueOrAlpha) {
  const dvKernelBank bank = pointBank(30, rgba);
  SplatBench bench(rgba, {-10, 2, 11});
  bench.settings.chromatic = {4.0F, {1.0F, 1.5F, 1.0F}};
  // s = 21 / 2 - 1 = 9.5; red moves 9.5 * 2 * 0.1 = 1.9, green 9.5 * 4 * 0.1 = 3.8, diagonally.
  bench.splat(bank, sourceAt(0, 1, 21.0F), pixel);
  EXPECT_EQ(columnOf(bench, 1, -10, 11), 1);
  EXPECT_EQ(columnOf(bench, 2, -10, 11), -99);
  EXPECT_EQ(columnOf(bench, 3, -10, 11), -99);
  SplatBench level(rgba, {-10, 1, 11});
  level.settings = bench.settings;
  level.splat(bank, sourceAt(0, 1, 21.0F), pixel);
  EXPECT_EQ(columnOf(level, 3, -10, 11), 0);
  EXPECT_EQ(columnOf(level, 4, -10, 11), 0);
}

TEST(Splat, negativeAberration_neverShiftsGreen) {
  const dvKernelBank bank = pointBank(30, rgba);
  SplatBench bench(rgba, {-10, 1, 11});
  bench.settings.chromatic = {-4.0F, {1.0F, 1.5F, 1.5F}};
  bench.splat(bank, sourceAt(0, 1, 21.0F), pixel);
  EXPECT_EQ(columnOf(bench, 2, -10, 11), 0);
  EXPECT_EQ(columnOf(bench, 3, -10, 11), -99);
}

TEST(Splat, shiftBeyondTheIntegers_addsNothing) {
  const dvKernelBank bank = countingBank(12, rgba);
  for (const float coc : {infinity, 3e38F}) {
    SplatBench bench(rgba, {-5, 0, 6});
    bench.settings.chromatic = {10.0F, {1.0F, 0.1F, 1.0F}};
    bench.splat(bank, sourceAt(0, 0, coc), pixel);
    EXPECT_EQ(bench.totalWeight(1), 0.0F);
    EXPECT_EQ(bench.totalWeight(2), 0.0F);
    EXPECT_GT(bench.totalWeight(3), 0.0F);
  }
}

TEST(Splat, infiniteValue_spreadsOverTheKernelSquareWithNaNWhereTheKernelIsZero) {
  dvKernelBank bank = countingBank(8, red);
  bank[3].channels[1].assign(9, 0.0F);
  bank[3].channels[1][4] = 1.0F;
  SplatBench bench(red, {-5, 0, 6});
  bench.splat(bank, sourceAt(0, 0, 3.0F), {0.0F, infinity});
  EXPECT_EQ(bench.colour(1, 0), infinity);
  EXPECT_TRUE(std::isnan(bench.colour(1, 1)));
  EXPECT_EQ(bench.colour(1, 2), 0.0F);
  EXPECT_EQ(bench.weight(1, 0), 1.0F);
}

dvSplatSource randomSource(Draw& draw) {
  dvSplatSource source = sourceAt(draw.whole(-12, 12), draw.whole(-12, 12), draw.real(0.5F, 20.0F));
  source.clampedX = draw.whole(0, 9);
  source.clampedY = draw.whole(0, 9);
  source.slice = static_cast<std::uint64_t>(draw.whole(0, 2));
  source.weight = draw.real(-0.1F, 1.0F);
  source.bloomMatte = draw.real(-1.0F, 2.0F);
  source.chromaticMatte = draw.real(-1.0F, 2.0F);
  return source;
}

LiteralSource literalOf(const dvSplatSource& source, const dvOutputSpan& span,
                        const std::vector<float>& values) {
  LiteralSource literal;
  literal.clampedX = source.clampedX;
  literal.clampedY = source.clampedY;
  literal.left = span.left;
  literal.y = span.y;
  literal.right = span.right;
  literal.x = source.x;
  literal.sourceY = source.y;
  literal.coc = source.coc;
  literal.slice = static_cast<int>(source.slice);
  literal.weight = source.weight;
  literal.bloomMatte = source.bloomMatte;
  literal.chromaticMatte = source.chromaticMatte;
  for (const int channel : rgba) {
    literal.pixel[channel] = values[static_cast<std::size_t>(channel)];
  }
  return literal;
}

LiteralSettings randomArtifacts(Draw& draw, dvSplatSettings& settings) {
  LiteralSettings literal;
  literal.bloom = draw.real(-0.5F, 2.0F);
  literal.bloomCurvature = draw.real(-0.5F, 4.0F);
  literal.bloomThreshold = draw.real(0.0F, 2.0F);
  literal.chromaticAberration = draw.chance(0.3) ? 0.0F : draw.real(-10.0F, 10.0F);
  literal.outputType = draw.whole(0, 1);
  settings.bloom = {literal.bloom, literal.bloomCurvature, literal.bloomThreshold, 10, 10};
  settings.chromatic.amount = literal.chromaticAberration;
  settings.bloomOnly = literal.outputType == 1;
  for (int i = 0; i < 3; ++i) {
    settings.chromatic.offset[i] = literal.chromaticOffset[i] = draw.real(-1.0F, 2.0F);
  }
  return literal;
}

TEST(Splat, randomSources_agreeWithTheLiteralSplat) {
  const dvKernelBank bank = countingBank(19, rgba);
  const std::vector<LiteralKernel> literalBank = literalBankOf(bank, rgba);
  const dvOutputSpan span{-7, 1, 8};
  Draw draw(11);
  for (int i = 0; i < 3000; ++i) {
    SplatBench bench(rgba, span, 2);
    const LiteralSettings settings = randomArtifacts(draw, bench.settings);
    const dvSplatSource source = randomSource(draw);
    bench.splat(bank, source, pixel);
    LiteralSums sums(2);
    for (auto& slice : sums) {
      for (const int channel : rgba)
        slice[channel].resize(15);
    }
    literalSplat(settings, 10, 10, literalBank, literalOf(source, span, pixel), sums);
    for (std::size_t slice = 0; slice < 2; ++slice) {
      for (const int channel : rgba) {
        for (int x = span.left; x < span.right; ++x) {
          const LiteralSum& sum = sums[slice][channel][static_cast<std::size_t>(x - span.left)];
          const double bound = 1e-6 * (1.0 + sum.absoluteColour);
          ASSERT_NEAR(static_cast<double>(bench.colour(channel, x, slice)), sum.colour, bound) << i;
          ASSERT_NEAR(static_cast<double>(bench.weight(channel, x, slice)), sum.weight, bound) << i;
        }
      }
    }
  }
}

}  // namespace
}  // namespace drevin::test

#include "deep/SampleMerge.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

#include "deep/DeepFrame.h"

namespace drevin::test {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

struct Depths {
  float front = 0.0F;
  float back = 0.0F;
};

/// Samples of those depths without values.
dvDeepSamples bare(const std::vector<Depths>& depths) {
  dvDeepSamples samples;
  for (const Depths& d : depths) {
    samples.fronts.push_back(d.front);
    samples.backs.push_back(d.back);
  }
  return samples;
}

std::vector<dvDeepPiece> merged(const dvDeepSamples& samples) {
  std::vector<dvDeepPiece> pieces;
  combineSamples(samples, pieces);
  return pieces;
}

void expectPiece(const dvDeepPiece& piece, std::size_t sample, float front, float back) {
  EXPECT_EQ(piece.sample, sample);
  EXPECT_EQ(piece.front, front);
  EXPECT_EQ(piece.back, back);
}

void expectWhole(const dvDeepPiece& piece, std::size_t sample, float front, float back) {
  expectPiece(piece, sample, front, back);
  EXPECT_TRUE(piece.whole);
}

void expectCut(const dvDeepPiece& piece, std::size_t sample, float front, float back,
               float fraction) {
  expectPiece(piece, sample, front, back);
  EXPECT_FALSE(piece.whole);
  EXPECT_FLOAT_EQ(piece.fraction, fraction);
}

TEST(SampleMerge, emptyPixel_givesNoPieces) {
  EXPECT_TRUE(merged({}).empty());
}

TEST(SampleMerge, existingPieces_areAppendedTo) {
  const dvDeepSamples samples = bare({{1.0F, 1.0F}});
  std::vector<dvDeepPiece> pieces(2);
  combineSamples(samples, pieces);
  ASSERT_EQ(pieces.size(), 3U);
  expectWhole(pieces[2], 0, 1.0F, 1.0F);
}

TEST(SampleMerge, pointSamples_comeOutUnchangedInReverseOrder) {
  const auto pieces = merged(bare({{1.0F, 1.0F}, {2.0F, 2.0F}, {3.0F, 3.0F}}));
  ASSERT_EQ(pieces.size(), 3U);
  expectWhole(pieces[0], 2, 3.0F, 3.0F);
  expectWhole(pieces[1], 1, 2.0F, 2.0F);
  expectWhole(pieces[2], 0, 1.0F, 1.0F);
}

TEST(SampleMerge, wholePiece_copiesValuesAndReplacesTheFlatDepthByTheFront) {
  const std::vector<int> channels = {1, 4, literalZ, literalFront, literalBack};
  const LiteralDeepPixel pixel = {
      {3.0F,
       5.0F,
       {{1, 0.3F}, {4, 0.7F}, {literalZ, 99.0F}, {literalFront, 3.0F}, {literalBack, 5.0F}}}};
  const dvDeepSamples samples = samplesOf(pixel, channels);
  const auto pieces = merged(samples);
  ASSERT_EQ(pieces.size(), 1U);
  const float expected[5] = {0.3F, 0.7F, 3.0F, 3.0F, 5.0F};
  for (std::size_t c = 0; c < 5; ++c) {
    EXPECT_EQ(pieceValue(layoutOf(channels), samples, pieces[0], c), expected[c]) << c;
  }
}

TEST(SampleMerge, singleThickSample_staysWhole) {
  const auto pieces = merged(bare({{1.0F, 9.0F}}));
  ASSERT_EQ(pieces.size(), 1U);
  expectWhole(pieces[0], 0, 1.0F, 9.0F);
}

TEST(SampleMerge, reachIntoTheNext_givesTheFrontPieceAndTheNextTwice) {
  const auto pieces = merged(bare({{4.0F, 8.0F}, {2.0F, 7.0F}}));
  ASSERT_EQ(pieces.size(), 3U);
  expectCut(pieces[0], 1, 2.0F, 4.0F, 0.4F);
  expectWhole(pieces[1], 0, 4.0F, 8.0F);
  expectWhole(pieces[2], 0, 4.0F, 8.0F);
}

TEST(SampleMerge, reachBeyondTheNext_leavesARemainderAfterItsFirstCopy) {
  const auto pieces = merged(bare({{4.0F, 8.0F}, {2.0F, 12.0F}}));
  ASSERT_EQ(pieces.size(), 4U);
  expectCut(pieces[0], 1, 2.0F, 4.0F, 0.2F);
  expectWhole(pieces[1], 0, 4.0F, 8.0F);
  expectCut(pieces[2], 1, 8.0F, 12.0F, 0.4F);
  expectWhole(pieces[3], 0, 4.0F, 8.0F);
}

TEST(SampleMerge, equalBacks_leaveNoRemainder) {
  EXPECT_EQ(merged(bare({{4.0F, 8.0F}, {2.0F, 8.0F}})).size(), 3U);
}

TEST(SampleMerge, touchingSamples_stayWhole) {
  const auto pieces = merged(bare({{4.0F, 8.0F}, {2.0F, 4.0F}}));
  ASSERT_EQ(pieces.size(), 2U);
  expectWhole(pieces[0], 1, 2.0F, 4.0F);
  expectWhole(pieces[1], 0, 4.0F, 8.0F);
}

TEST(SampleMerge, threeMutuallyOverlapping_emitTheFirstThriceAndTheSecondTwice) {
  const auto pieces = merged(bare({{3.0F, 9.0F}, {2.0F, 8.0F}, {1.0F, 7.0F}}));
  int copies[3] = {0, 0, 0};
  for (const dvDeepPiece& piece : pieces) {
    ++copies[piece.sample];
  }
  EXPECT_EQ(copies[0], 3);
  EXPECT_EQ(copies[1], 2);
  EXPECT_EQ(copies[2], 1);
}

TEST(SampleMerge, thicknessOfExactlyTheThreshold_isCut) {
  const auto pieces = merged(bare({{0.5e-6F, 3e-6F}, {0.0F, 1e-6F}}));
  ASSERT_EQ(pieces.size(), 3U);
  expectCut(pieces[0], 1, 0.0F, 0.5e-6F, 0.5F);
}

TEST(SampleMerge, thicknessJustUnderTheThreshold_staysWhole) {
  const float under = std::nextafter(1e-6F, 0.0F);
  const auto pieces = merged(bare({{0.5e-6F, 3e-6F}, {0.0F, under}}));
  ASSERT_EQ(pieces.size(), 2U);
  expectWhole(pieces[0], 1, 0.0F, under);
}

TEST(SampleMerge, nearestFirst_givesANegativeFractionAndARemainderOfRealWeight) {
  const auto pieces = merged(bare({{2.0F, 4.0F}, {3.0F, 7.0F}}));
  ASSERT_EQ(pieces.size(), 4U);
  expectCut(pieces[0], 1, 3.0F, 2.0F, -0.25F);
  expectWhole(pieces[1], 0, 2.0F, 4.0F);
  expectCut(pieces[2], 1, 4.0F, 7.0F, 0.75F);
}

TEST(SampleMerge, equalFronts_giveAFractionOfZero) {
  const auto pieces = merged(bare({{2.0F, 4.0F}, {2.0F, 6.0F}}));
  ASSERT_EQ(pieces.size(), 4U);
  expectCut(pieces[0], 1, 2.0F, 2.0F, 0.0F);
  expectCut(pieces[2], 1, 4.0F, 6.0F, 0.5F);
}

TEST(SampleMerge, layoutWithoutDepths_isCutAllTheSameAndTheFlatDepthIsTheFront) {
  const std::vector<int> channels = {1, literalZ};
  const LiteralDeepPixel pixel = {{4.0F, 8.0F, {{1, 1.0F}, {literalZ, 50.0F}}},
                                  {2.0F, 12.0F, {{1, 2.0F}, {literalZ, 60.0F}}}};
  const dvDeepSamples samples = samplesOf(pixel, channels);
  const auto pieces = merged(samples);
  ASSERT_EQ(pieces.size(), 4U);
  const float red[4] = {0.4F, 1.0F, 0.8F, 1.0F};
  const float depth[4] = {2.0F, 4.0F, 8.0F, 4.0F};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_FLOAT_EQ(pieceValue(layoutOf(channels), samples, pieces[i], 0), red[i]);
    EXPECT_EQ(pieceValue(layoutOf(channels), samples, pieces[i], 1), depth[i]);
  }
}

TEST(SampleMerge, chain_returnsTheBackAndLowersTheIndexByTheSamplesReached) {
  const dvDeepSamples samples = bare({{0.0F, 1.0F}, {4.0F, 8.0F}, {3.0F, 9.0F}, {2.0F, 7.0F}});
  std::vector<dvDeepPiece> pieces;
  std::size_t index = 3;
  // Sample 1 reaches past the front of sample 0 as well, because it lies behind it.
  EXPECT_EQ(addSample(samples, index, pieces), 7.0F);
  EXPECT_EQ(index, 0U);
  index = 0;
  EXPECT_EQ(addSample(samples, index, pieces), 1.0F);
  EXPECT_EQ(index, 0U);
}

TEST(SampleMerge, chainOfAHundredThousand_needsNoStack) {
  constexpr std::size_t count = 100000;
  dvDeepSamples samples;
  for (std::size_t i = 0; i < count; ++i) {
    samples.fronts.push_back(static_cast<float>(i));
    samples.backs.push_back(static_cast<float>(i) + 10.0F);
  }
  std::vector<dvDeepPiece> pieces;
  std::size_t index = count - 1;
  EXPECT_EQ(addSample(samples, index, pieces), static_cast<float>(count - 1) + 10.0F);
  EXPECT_EQ(index, 0U);
  EXPECT_EQ(pieces.size(), 2 * count - 1);
}

TEST(SampleMerge, pixelOfOneLongChain_hasAPieceForEveryChainThatReachesASample) {
  constexpr std::size_t count = 1000;
  dvDeepSamples samples;
  for (std::size_t i = 0; i < count; ++i) {
    samples.fronts.push_back(static_cast<float>(i));
    samples.backs.push_back(static_cast<float>(i) + 10.0F);
  }
  // The chain from i has a front piece and a remainder of every sample but the first.
  EXPECT_EQ(merged(samples).size(), count * count);
}

TEST(SampleMerge, notANumberDepths_compareFalse) {
  // A NaN thickness is not thin; the NaN back does not reach, so the sample stays whole.
  const auto pieces = merged(bare({{1.0F, 2.0F}, {3.0F, notANumber}}));
  ASSERT_EQ(pieces.size(), 2U);
  EXPECT_TRUE(pieces[0].whole);
  const auto first = merged(bare({{notANumber, 2.0F}, {3.0F, 5.0F}}));
  ASSERT_EQ(first.size(), 2U);
  expectWhole(first[0], 1, 3.0F, 5.0F);
}

TEST(SampleMerge, notANumberFront_reachesTheNext) {
  const auto pieces = merged(bare({{1.0F, 2.0F}, {notANumber, 3.0F}}));
  ASSERT_EQ(pieces.size(), 4U);
  EXPECT_TRUE(std::isnan(pieces[0].fraction));
}

TEST(SampleMerge, infiniteBack_givesFractionsOfZeroAndNotANumber) {
  const auto pieces = merged(bare({{4.0F, 8.0F}, {2.0F, infinity}}));
  ASSERT_EQ(pieces.size(), 4U);
  EXPECT_EQ(pieces[0].fraction, 0.0F);
  EXPECT_TRUE(std::isnan(pieces[2].fraction));
}

TEST(SampleMerge, backInFrontOfItsFront_countsAsAPoint) {
  const auto pieces = merged(bare({{1.0F, 2.0F}, {9.0F, 3.0F}}));
  ASSERT_EQ(pieces.size(), 2U);
  expectWhole(pieces[0], 1, 9.0F, 3.0F);
}

TEST(SampleMerge, readBack_isByFrontThenBackThenEmission) {
  std::vector<dvDeepPiece> pieces = {
      {0, 3.0F, 4.0F, 1.0F, true}, {1, 2.0F, 9.0F, 1.0F, true}, {2, notANumber, 0.0F, 1.0F, true},
      {3, 2.0F, 5.0F, 1.0F, true}, {4, 2.0F, 9.0F, 1.0F, true}, {5, -1.0F, 0.0F, 1.0F, true}};
  sortPieces(pieces);
  const std::size_t expected[6] = {5, 3, 1, 4, 0, 2};
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(pieces[i].sample, expected[i]);
  }
}

TEST(SampleMerge, pieces_areSortedStablyHoweverMany) {
  unsigned state = 7;
  const auto depth = [&] {
    state = state * 1103515245U + 12345U;
    const unsigned draw = (state >> 16U) % 9U;
    return draw == 8U ? notANumber : static_cast<float>(draw);
  };
  for (std::size_t count = 0; count < 70; ++count) {
    std::vector<dvDeepPiece> pieces;
    for (std::size_t i = 0; i < count; ++i)
      pieces.push_back({i, depth(), depth(), 1.0F, true});
    sortPieces(pieces);
    ASSERT_EQ(pieces.size(), count);
    const auto key = [&](std::size_t i) {
      const auto far = [](float d) { return std::isnan(d) ? infinity : d; };
      return std::make_tuple(far(pieces[i].front), far(pieces[i].back), pieces[i].sample);
    };
    for (std::size_t i = 1; i < count; ++i)
      ASSERT_LT(key(i - 1), key(i)) << count << " pieces";
  }
}

}  // namespace
}  // namespace drevin::test

#include <gtest/gtest.h>

#include "deep/DeepDepthView.h"
#include "deep/DeepFrame.h"
#include "deep/RandomDeepScene.h"
#include "support/Agreement.h"

namespace drevin::test {
namespace {

constexpr unsigned seeds = DREVIN_SANITIZED != 0 ? 100 : 400;
/// Least share of the values that must be well-conditioned enough to be compared.
constexpr double leastCompared = 0.9;

struct Tally {
  long long values = 0;
  long long compared = 0;
  long long nonZero = 0;
  long long notFinite = 0;
};

struct Span {
  int y = 0;
  int left = 0;
  int right = 0;
};

/// Rows at both ends of the format, beyond it and within it; whole rows and regions.
std::vector<Span> spansOf(unsigned seed, const LiteralPicture& image) {
  Draw draw(seed);
  const int width = image.formatWidth;
  const int left = draw.whole(0, width - 1);
  return {{0, 0, width},
          {image.formatHeight - 1, 0, width},
          {draw.whole(0, image.formatHeight - 1), left, draw.whole(left, width)},
          {draw.whole(-3, image.formatHeight + 3), -3, width + 3}};
}

void compareValue(const LiteralValue& literal, float rendered, Tally& tally,
                  const std::string& where) {
  ++tally.values;
  if (!isComparable(literal)) return;
  ++tally.compared;
  tally.nonZero += literal.value != 0.0 ? 1 : 0;
  tally.notFinite += std::isfinite(literal.value) ? 0 : 1;
  ASSERT_TRUE(agrees(rendered, literal.value))
      << rendered << " for literal " << literal.value << ", slack " << literal.slack << where;
}

void compareScene(unsigned seed, Tally& tally) {
  const LiteralDeepScene scene = randomDeepScene(seed);
  const LiteralFrame literal(scene.flat);
  const DeepFrame deep(scene);
  for (const Span& span : spansOf(seed, scene.flat.image)) {
    const LiteralRow expected = literalDeepRow(scene, literal, span.y, span.left, span.right);
    const auto rendered = deep.row(span.y, span.left, span.right);
    for (const auto& [channel, values] : expected) {
      for (std::size_t i = 0; i < values.size(); ++i) {
        std::ostringstream where;
        where << ": seed " << seed << ", row " << span.y << ", channel " << channel << ", column "
              << span.left + static_cast<int>(i);
        compareValue(values[i], rendered.at(channel)[i], tally, where.str());
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

TEST(DeepDefocus, randomScenes_agreeWithTheLiteralRows) {
  Tally tally;
  for (unsigned seed = 0; seed < seeds; ++seed) {
    compareScene(seed, tally);
    if (HasFatalFailure()) return;
  }
  RecordProperty("values", std::to_string(tally.values));
  RecordProperty("compared", std::to_string(tally.compared));
  RecordProperty("nonZero", std::to_string(tally.nonZero));
  RecordProperty("notFinite", std::to_string(tally.notFinite));
  EXPECT_GT(static_cast<double>(tally.compared), leastCompared * static_cast<double>(tally.values));
  EXPECT_GT(tally.nonZero, tally.compared / 3);
}

void compareMerge(unsigned seed, const LiteralSettings& settings) {
  Draw draw(seed);
  const std::vector<int> channels = {1, 4, literalZ, literalFront, literalBack};
  const LiteralDeepPixel pixel = randomDeepPixel(draw, settings, channels, seed % 3 == 0);
  LiteralDeepPixel expected;
  literalCombineSamples(pixel, expected);
  expected = literalReadBack(expected);
  const dvDeepLayout layout = layoutOf(channels);
  const dvDeepSamples samples = samplesOf(pixel, channels);
  std::vector<dvDeepPiece> pieces;
  mergeSamples(samples, pieces);
  ASSERT_EQ(pieces.size(), expected.size()) << "seed " << seed;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    for (std::size_t c = 0; c < channels.size(); ++c) {
      const float value = pieceValue(layout, samples, pieces[i], c);
      const float literal = expected[i].values.at(channels[c]);
      ASSERT_TRUE(value == literal || (std::isnan(value) && std::isnan(literal)))
          << value << " for " << literal << ", seed " << seed << ", piece " << i << ", channel "
          << channels[c];
    }
  }
}

TEST(SampleMerge, randomPixels_areTheLiteralPiecesToTheBit) {
  LiteralSettings settings;
  settings.focalPlane = 10.0F;
  settings.focusRegionSize = 8.0F;
  for (unsigned seed = 0; seed < 5000; ++seed) {
    compareMerge(seed, settings);
    if (HasFatalFailure()) return;
  }
}

void compareView(unsigned seed) {
  LiteralDeepScene scene = randomDeepScene(seed);
  LiteralSettings& settings = scene.flat.settings;
  settings.outputType = seed % 2 == 0 ? 2 : 4;
  const LiteralFrame literal(scene.flat);
  const DeepFrame deep(scene);
  const dvPassSettings pass{static_cast<dvOutputType>(settings.outputType),
                            settings.normalizeVisualization, settings.maxKernelSize};
  for (const LiteralDeepPixel& pixel : scene.deep.pixels) {
    std::vector<dvDepthSample> samples;
    for (const LiteralDeepSample& sample : pixel) {
      samples.push_back(
          {settings.depthChannel == literalBack ? sample.back : sample.front, sample.values.at(4)});
    }
    for (int channel = 1; channel <= 3; ++channel) {
      const float expected =
          literalDeepDepthValue(pixel, channel, settings, literal.lens(), literal.kernelSize());
      const float value = deepDepthValue(samples, channel, deep.settings(), pass);
      ASSERT_TRUE(agrees(value, static_cast<double>(expected)))
          << value << " for " << expected << ", seed " << seed << ", channel " << channel;
    }
  }
}

TEST(DeepDepthView, randomPixels_agreeWithTheLiteralValues) {
  for (unsigned seed = 0; seed < seeds; ++seed) {
    compareView(seed);
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace drevin::test

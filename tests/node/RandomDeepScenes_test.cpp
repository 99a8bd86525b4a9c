#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "DDImage/DeepComposite.h"
#include "deep/RandomDeepScene.h"
#include "node/DeepBench.h"
#include "support/Agreement.h"

namespace drevin::test {
namespace {

constexpr unsigned seeds = DREVIN_SANITIZED != 0 ? 40 : 200;
/// Least share of the values that must be well-conditioned enough to be compared.
constexpr double leastCompared = 0.9;

struct Tally {
  long long values = 0;
  long long compared = 0;
  long long nonZero = 0;
};

/// Compares one row; the description of the first value that disagrees, else "".
std::string compareRow(const LiteralRow& expected, const embedded::Image& image, int y,
                       Tally& tally) {
  for (const auto& [channel, values] : expected) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      const int x = image.box.x() + static_cast<int>(i);
      ++tally.values;
      if (!isComparable(values[i])) continue;
      ++tally.compared;
      tally.nonZero += values[i].value != 0.0 ? 1 : 0;
      const float value = renderedAt(image, channel, x, y);
      if (!agrees(value, values[i].value)) {
        std::ostringstream text;
        text << value << " at channel " << channel << ", column " << x << ", row " << y
             << ", literally " << values[i].value << ", slack " << values[i].slack;
        return text.str();
      }
    }
  }
  return "";
}

/// Every third scene is rendered in part, every other one with front and back apart.
void compareScene(unsigned seed, bool farFirst, Tally& tally) {
  const LiteralDeepScene scene = randomDeepScene(30000 + seed);
  const bool separately = seed % 2 == 1;
  const OrderGuard order(farFirst);
  const LiteralDeepNode literal(scene, farFirst);
  DeepBench bench(scene);
  bench.node().set("integrateFrontAndBackSeperately", separately ? 1.0 : 0.0);
  bench.node().options.threads = seed % 3 + 1;
  const LiteralBox box = literal.frame().box();
  // The last column and a part of the rows; chromatic aberration depends on the columns asked for.
  if (seed % 3 == 0) {
    bench.node().options.region = DD::Image::Box(
        (box.left + box.right) / 2, box.bottom + (box.top - box.bottom) / 3, box.right, box.top);
  }
  const embedded::RenderResult result = bench.render();
  ASSERT_EQ(result.status, embedded::RenderStatus::Done) << "seed " << seed;
  const DD::Image::Box& made = result.image.box;
  if (made.empty()) return;
  std::string difference;
  for (int y = made.y(); y < made.t() && difference.empty(); ++y) {
    difference = compareRow(literal.row(y, made.x(), made.r(), separately), result.image, y, tally);
  }
  EXPECT_EQ(difference, "") << "seed " << seed << (separately ? ", apart" : ", together");
  EXPECT_EQ(bench.drevin().kernelSize(), literal.frame().estimate().kernelSize) << "seed " << seed;
  EXPECT_EQ(bench.drevin().padding(), literal.frame().estimate().padding) << "seed " << seed;
  EXPECT_EQ(result.messages.size(), literal.frame().estimate().warned ? 1U : 0U) << "seed " << seed;
}

void compareScenes(bool farFirst) {
  Tally tally;
  for (unsigned seed = 0; seed < seeds; ++seed) {
    compareScene(seed, farFirst, tally);
    if (testing::Test::HasFailure()) return;
  }
  EXPECT_GT(static_cast<double>(tally.compared), leastCompared * static_cast<double>(tally.values));
  EXPECT_GT(tally.nonZero, tally.compared / 3);
}

TEST(RenderedDeepNode, randomScenesNearFirst_agreeWithTheLiteralNode) {
  compareScenes(false);
}

TEST(RenderedDeepNode, randomScenesFarFirst_agreeWithTheLiteralNode) {
  compareScenes(true);
}

/// The samples that the host's own merge makes of a pixel.
LiteralDeepPixel tidied(const LiteralDeepPixel& pixel) {
  const DD::Image::ChannelSet channels = hostChannels({4, literalFront, literalBack});
  const DD::Image::ChannelMap map(channels);
  std::vector<float> values;
  for (const LiteralDeepSample& sample : pixel)
    values.insert(values.end(), {sample.values.at(4), sample.front, sample.back});
  DD::Image::DeepOutPixel merged;
  CombineOverlappingSamples(
      map,
      DD::Image::DeepPixel(map, values.data(), values.size(), DD::Image::DeepPixel::eUnordered),
      merged);
  LiteralDeepPixel tidy;
  for (std::size_t i = 0; i < merged.size(); i += 3)
    tidy.push_back({merged[i + 1], merged[i + 2], {{4, merged[i]}}});
  return tidy;
}

void compareView(unsigned seed, int outputType, bool farFirst, Tally& tally) {
  LiteralDeepScene scene = randomDeepScene(40000 + seed);
  LiteralSettings& settings = scene.flat.settings;
  settings.outputType = outputType;
  const OrderGuard order(farFirst);
  const LiteralFrame literal(scene.flat);
  DeepBench bench(scene);
  bench.node().options.threads = seed % 2 + 1;
  const embedded::RenderResult result = bench.render();
  ASSERT_EQ(result.status, embedded::RenderStatus::Done) << "seed " << seed;
  const DD::Image::Box& box = result.image.box;
  for (int y = box.y(); y < box.t(); ++y) {
    for (int x = box.x(); x < box.r(); ++x) {
      const LiteralDeepPixel samples = tidied(scene.deep.at(x, y));
      for (const int channel : scene.flat.channels) {
        const float expected = channel <= 3
                                   ? literalDeepDepthValue(samples, channel, settings,
                                                           literal.lens(), literal.kernelSize())
                                   : scene.flat.image.at(x, y, channel);
        const float value = renderedAt(result.image, channel, x, y);
        ++tally.values;
        tally.nonZero += expected != 0.0F ? 1 : 0;
        ASSERT_TRUE(agrees(value, static_cast<double>(expected)))
            << value << " for " << expected << ", seed " << seed << ", channel " << channel
            << ", column " << x << ", row " << y;
      }
    }
  }
}

TEST(RenderedDeepNode, randomViews_agreeWithTheLiteralValues) {
  Tally tally;
  for (unsigned seed = 0; seed < 60; ++seed) {
    for (const int type : {2, 4}) {
      compareView(seed, type, seed % 2 == 1, tally);
      if (HasFailure()) return;
    }
  }
  EXPECT_GT(tally.nonZero, tally.values / 4);
}

}  // namespace
}  // namespace drevin::test

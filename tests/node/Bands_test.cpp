/// Pictures that are made in bands of rows, as those are whose splats need much memory.

#include <gtest/gtest.h>

#include <algorithm>

#include "node/DeepBench.h"
#include "node/TransformedScenes.h"
#include "support/Agreement.h"

namespace drevin::test {
namespace {

struct Comparison {
  double worst = 0.0;  ///< difference, in parts of what is allowed
  int differing = 0;   ///< values of other bits
};

Comparison compare(const embedded::Image& a, const embedded::Image& b) {
  Comparison comparison;
  for (const auto& [channel, plane] : a.planes) {
    const embedded::Plane& other = *b.planes.at(channel);
    for (std::size_t i = 0; i < plane->size(); ++i) {
      const double difference = differenceInParts((*plane)[i], static_cast<double>(other[i]));
      comparison.worst = std::max(comparison.worst, difference);
      comparison.differing += (*plane)[i] != other[i] ? 1 : 0;
    }
  }
  return comparison;
}

/// In bands of the fewest rows and at once.
void expectBandsOfThePicture(NodeBench& bench) {
  bench.drevin().setBandBytes(std::size_t{1} << 30);
  const embedded::RenderResult whole = bench.render();
  bench.drevin().setBandBytes(0);
  const embedded::RenderResult bands = bench.render();
  ASSERT_EQ(whole.status, embedded::RenderStatus::Done);
  ASSERT_EQ(bands.status, embedded::RenderStatus::Done);
  ASSERT_EQ(bands.image.planes.size(), whole.image.planes.size());
  const Comparison comparison = compare(bands.image, whole.image);
  EXPECT_LE(comparison.worst, 0.5);
  // Tiles begin where their band does, and what is transformed rounds by its tile.
  EXPECT_GT(comparison.differing, 0) << "made at once";
}

TEST(Bands, flat_areThoseOfThePicture) {
  NodeBench bench(transformedScene());
  expectBandsOfThePicture(bench);
}

TEST(Bands, withMattesAndShift_areThoseOfThePicture) {
  NodeBench bench(transformedEffects());
  expectBandsOfThePicture(bench);
}

TEST(Bands, deep_areThoseOfThePicture) {
  DeepBench bench(transformedDeepScene());
  expectBandsOfThePicture(bench.node());
}

TEST(Bands, deepFrontAndBackApart_areThoseOfThePictureAndShareTheMerge) {
  DeepBench bench(transformedDeepScene());
  bench.node().set("integrateFrontAndBackSeperately", 1.0);
  expectBandsOfThePicture(bench.node());
  EXPECT_EQ(bench.drevin().mergedPixels(),
            static_cast<std::uint64_t>((transformedWidth - 1) * transformedHeight));
}

TEST(Bands, eachOfThem_areMadeOfTransforms) {
  LiteralScene low = transformedScene();
  low.image.formatHeight = 32;
  low.image.box.top = 32;
  for (auto& [channel, plane] : low.image.planes)
    plane.resize(static_cast<std::size_t>(transformedWidth) * 32);
  EXPECT_TRUE(showsTransforms(low));
}

}  // namespace
}  // namespace drevin::test

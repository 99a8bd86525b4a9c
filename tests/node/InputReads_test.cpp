/// What the opening reads of the input, and what rows of the prepared picture still read.

#include <gtest/gtest.h>

#include <map>
#include <mutex>

#include "node/DeepBench.h"
#include "node/TransformedScenes.h"
#include "node/WatchedImage.h"

namespace drevin::test {
namespace {

using DD::Image::Chan_Alpha;
using DD::Image::Channel;
using DD::Image::Mask_RGBA;
using Reads = std::map<Channel, int>;

constexpr int y = 50;

/// How often a row of colour and alpha, made when the node has opened, reads each channel.
Reads readsOfARow(NodeBench& bench, const LiteralScene& scene) {
  Reads reads;
  bool opened = false;  // Until then many threads read.
  WatchedImage image(hostImage(scene.image), [&](int /*y*/, Channel z) {
    if (opened) ++reads[z];
  });
  EXPECT_TRUE(bench.connect(dvInput::image, &image));
  {
    embedded::RenderSession session(bench.node(), bench.options);
    opened = true;
    DD::Image::Row row(0, transformedWidth);
    EXPECT_TRUE(session.row(y, 0, transformedWidth, Mask_RGBA, row));
  }
  bench.connect(dvInput::image, nullptr);
  return reads;
}

Reads readsOfADeepRow(const LiteralDeepScene& scene, bool apart) {
  DeepBench bench(scene);
  bench.node().set("integrateFrontAndBackSeperately", apart ? 1.0 : 0.0);
  return readsOfARow(bench.node(), scene.flat);
}

/// How often the opening reads each channel of each row.
std::map<Channel, std::map<int, int>> readsOfTheOpening(NodeBench& bench,
                                                        const LiteralScene& scene) {
  std::map<Channel, std::map<int, int>> reads;
  std::mutex mutex;
  WatchedImage image(hostImage(scene.image), [&](int row, Channel z) {
    const std::lock_guard<std::mutex> lock(mutex);
    ++reads[z][row];
  });
  EXPECT_TRUE(bench.connect(dvInput::image, &image));
  { const embedded::RenderSession session(bench.node(), bench.options); }
  bench.connect(dvInput::image, nullptr);
  return reads;
}

TEST(InputReads, opening_readsColoursOnceAndDepthOnceMoreForTheEstimate) {
  const LiteralScene scene = transformedScene();
  NodeBench bench(scene);
  const auto reads = readsOfTheOpening(bench, scene);
  const Channel depth = bench.drevin().settings().depthChannel;
  ASSERT_EQ(reads.size(), 5U);
  const int last = scene.image.formatHeight - 1;
  for (const auto& [channel, rows] : reads) {
    const int times = channel == depth ? 2 : 1;
    EXPECT_EQ(rows.size(), static_cast<std::size_t>(last) + 1);
    for (const auto& [row, count] : rows) {
      // Rows above the picture are copies of the last one, and may be made later than itself.
      if (row == last) {
        EXPECT_GE(count, times);
        EXPECT_LE(count, times + 1);
      } else {
        EXPECT_EQ(count, times) << channel << ' ' << row;
      }
    }
  }
}

TEST(InputReads, flatRowOfThePicture_readsNothing) {
  const LiteralScene scene = transformedScene();
  NodeBench bench(scene);
  EXPECT_EQ(readsOfARow(bench, scene), Reads{});
}

TEST(InputReads, flatRow_readsWhatIsNotProcessedOnce) {
  LiteralScene scene = transformedScene();
  scene.settings.bokehChannels = {1, 2};
  NodeBench bench(scene);
  EXPECT_EQ(readsOfARow(bench, scene), (Reads{{DD::Image::Chan_Blue, 1}, {Chan_Alpha, 1}}));
}

TEST(InputReads, deepRowOfThePicture_readsNothing) {
  for (const bool apart : {false, true})
    EXPECT_EQ(readsOfADeepRow(transformedDeepScene(), apart), Reads{}) << apart;
}

TEST(InputReads, deepRow_readsWhatIsNotProcessedOnce) {
  LiteralDeepScene scene = transformedDeepScene();
  scene.flat.settings.bokehChannels = {1, 2};
  for (const bool apart : {false, true}) {
    EXPECT_EQ(readsOfADeepRow(scene, apart), (Reads{{DD::Image::Chan_Blue, 1}, {Chan_Alpha, 1}}))
        << apart;
  }
}

}  // namespace
}  // namespace drevin::test

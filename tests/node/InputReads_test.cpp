/// What rows of a prepared picture still read of the input.

#include <gtest/gtest.h>

#include <map>

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

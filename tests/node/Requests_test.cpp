#include <gtest/gtest.h>

#include "node/DeepStandIns.h"
#include "node/NodeBench.h"
#include "support/PlainScene.h"

namespace drevin::test {
namespace {

using DD::Image::Box;
using DD::Image::ChannelSet;

/// A 100 x 80 picture, a region in its midst, and a largest kernel of 20 px: a padding of 10.
LiteralScene largeScene() {
  LiteralScene scene = plainScene(100, 80, 12.0F);
  scene.settings.maxKernelSize = 20;
  return scene;
}

const Box region(40, 30, 50, 35);
const Box padded(30, 20, 60, 45);

embedded::InputRequest requestOf(NodeBench& bench, int input) {
  bench.options.region = region;
  const embedded::RenderSession session(bench.node(), bench.options);
  const auto found = session.requests().find(input);
  return found == session.requests().end() ? embedded::InputRequest{} : found->second;
}

TEST(Requests, image_isTheOutputBoxGrownByThePadding) {
  NodeBench bench(largeScene());
  EXPECT_TRUE(requestOf(bench, dvInput::image).box == padded);
}

TEST(Requests, imageChannels_areTheWantedTheProcessedDepthAndAlpha) {
  NodeBench bench(largeScene());
  bench.options.channels = DD::Image::Mask_Red;
  bench.setText("bokehChannels", "rgba.green");
  ChannelSet expected(DD::Image::Mask_Red);
  expected += DD::Image::Chan_Green;
  expected += DD::Image::Chan_Z;
  expected += DD::Image::Chan_Alpha;
  EXPECT_TRUE(requestOf(bench, dvInput::image).channels == expected);
}

TEST(Requests, bokehAll_processesWhatIsWanted) {
  NodeBench bench(largeScene());
  bench.options.channels = DD::Image::Mask_Blue;
  bench.setText("bokehChannels", "all");
  requestOf(bench, dvInput::image);
  EXPECT_TRUE(bench.settings().processChannels == DD::Image::Mask_Blue);
}

TEST(Requests, bokehChannels_areProcessedWhateverIsWanted) {
  NodeBench bench(largeScene());
  bench.options.channels = DD::Image::Mask_Blue;
  bench.setText("bokehChannels", "rgba.red");
  requestOf(bench, dvInput::image);
  EXPECT_TRUE(bench.settings().processChannels == DD::Image::Mask_Red);
}

TEST(Requests, kernelImage_isItsWholeBoxForTheProcessedChannels) {
  LiteralScene scene = largeScene();
  scene.kernel = plainScene(33, 21, 0.0F).image;
  NodeBench bench(scene);
  const embedded::InputRequest request = requestOf(bench, dvInput::kernel);
  EXPECT_TRUE(request.box == Box(0, 0, 33, 21));
  EXPECT_TRUE(request.channels == DD::Image::Mask_RGBA);
}

TEST(Requests, mattes_areTheGrownBoxForTheMatteChannels) {
  LiteralScene scene = largeScene();
  scene.mattes = scene.image;
  scene.settings.defocusMatteChannel = 2;
  NodeBench bench(scene);
  const embedded::InputRequest request = requestOf(bench, dvInput::mattes);
  EXPECT_TRUE(request.box == padded);
  EXPECT_TRUE(request.channels == DD::Image::Mask_Green);
}

TEST(Requests, mattesWithoutAChannel_areNotAskedForAny) {
  LiteralScene scene = largeScene();
  scene.mattes = scene.image;
  NodeBench bench(scene);
  EXPECT_TRUE(requestOf(bench, dvInput::mattes).channels.empty());
}

TEST(Requests, deepInput_isTheGrownBoxForItsOwnChannels) {
  NodeBench bench(largeScene());
  ChannelSet channels(DD::Image::Mask_Deep | DD::Image::Mask_RGB);
  DeepStandIn deep(Box(0, 0, 100, 80), channels);
  ASSERT_TRUE(bench.connect(dvInput::deep, &deep));
  requestOf(bench, dvInput::image);
  ASSERT_FALSE(deep.requests.empty());
  EXPECT_TRUE(deep.requests.back().box == padded);
  EXPECT_TRUE(deep.requests.back().channels == channels);
  bench.connect(dvInput::deep, nullptr);
}

TEST(Requests, deepChannels_haveFrontAndBackInPlaceOfDepth) {
  NodeBench bench(largeScene());
  bench.setText("bokehChannels", "rgba.red,depth.Z");
  requestOf(bench, dvInput::image);
  ChannelSet channels;
  bench.drevin().deep_in_channels(channels);
  ChannelSet expected(DD::Image::Mask_Deep | DD::Image::Mask_Alpha | DD::Image::Mask_Red);
  EXPECT_TRUE(channels == expected);
}

TEST(Requests, afterOpening_thePaddingIsTheEstimate) {
  LiteralScene scene = largeScene();
  scene.settings.multiplier = 7.0F;
  NodeBench bench(scene);
  bench.open();
  EXPECT_EQ(bench.drevin().padding(), 5);
}

}  // namespace
}  // namespace drevin::test

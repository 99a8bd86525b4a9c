/// Requests and rows after the node has opened, and pictures whose formats are reduced.

#include <gtest/gtest.h>

#include "node/NodeBench.h"
#include "support/RandomScene.h"

namespace drevin::test {
namespace {

using DD::Image::Channel;
using DD::Image::ChannelMask;
using DD::Image::ChannelSet;
using DD::Image::Row;

LiteralScene sceneWithExtraChannel() {
  LiteralScene scene;
  scene.settings.bokehAll = true;
  scene.settings.focalPlane = 1.0F;
  scene.settings.multiplier = 5.0F;
  scene.image.formatWidth = scene.image.formatHeight = 16;
  scene.image.box = {0, 0, 16, 16};
  for (const int channel : {1, 2, 3, firstExtraChannel}) {
    for (int i = 0; i < 256; ++i) {
      scene.image.planes[channel].push_back(static_cast<float>((i * 37 + channel) % 11));
    }
  }
  scene.image.planes[5].assign(256, 2.0F);
  scene.channels = {1};
  return scene;
}

TEST(LateRequest, channelsWithoutKernels_passThroughUnchanged) {
  const LiteralScene scene = sceneWithExtraChannel();
  NodeBench bench(scene);
  embedded::RenderSession session(bench.node(), bench.options);
  Row before(0, 16);
  ASSERT_TRUE(session.row(8, 0, 16, DD::Image::Mask_Red, before));

  ChannelSet more(DD::Image::Mask_Red);
  const Channel extra = hostChannel(firstExtraChannel);
  more += extra;
  bench.drevin().request(session.box(), more, 1);
  Row after(0, 16);
  ASSERT_TRUE(session.row(8, 0, 16, more, after));
  for (int x = 0; x < 16; ++x) {
    EXPECT_EQ(after[DD::Image::Chan_Red][x], before[DD::Image::Chan_Red][x]) << x;
    EXPECT_EQ(after[extra][x], scene.image.at(x, 8, firstExtraChannel)) << x;
  }
}

TEST(LateRequest, withoutProcessedChannels_theRowIsTheInput) {
  LiteralScene scene = sceneWithExtraChannel();
  scene.settings.bokehAll = false;
  scene.channels = {firstExtraChannel};
  NodeBench bench(scene);
  const embedded::RenderResult result = bench.render();
  ASSERT_EQ(result.status, embedded::RenderStatus::Done);
  EXPECT_EQ(*result.image.planes.at(hostChannel(firstExtraChannel)),
            scene.image.planes.at(firstExtraChannel));
}

TEST(LateRequest, withoutADepthChannel_everyPixelLiesAtDepthZero) {
  LiteralScene scene = sceneWithExtraChannel();
  scene.settings.depthChannel = 0;
  scene.settings.outputType = 4;
  scene.channels = {1, 2, 3};
  NodeBench bench(scene);
  const embedded::RenderResult result = bench.render();
  ASSERT_EQ(result.status, embedded::RenderStatus::Done);
  for (const float green : *result.image.planes.at(DD::Image::Chan_Green))
    ASSERT_EQ(green, 1.0F);
}

/// A picture in proxy: half the pixels of its full-size format.
class ReducedPicture : public DD::Image::Iop {
 public:
  ReducedPicture() : Iop(nullptr) { inputs(0); }
  const char* Class() const override { return "ReducedPicture"; }
  const char* node_help() const override { return ""; }

 protected:
  void _validate(bool /*for_real*/) override {
    info_.setFormats({DD::Image::Format(50, 32), DD::Image::Format(100, 64)});
    info_.set(0, 0, 50, 32);
    info_.channels(DD::Image::Mask_RGBA);
  }
  void engine(int /*y*/, int /*x*/, int /*r*/, ChannelMask channels, Row& row) override {
    row.erase(channels);
  }
};

TEST(Validation, reducedFormat_filmBackScaleIsThatOfTheFullSize) {
  ReducedPicture picture;
  NodeBench bench;
  ASSERT_TRUE(bench.connect(dvInput::image, &picture));
  bench.setText("filmFormat", "Custom");
  bench.set("apertureWidth", 4.0);
  bench.set("apertureHeight", 4.0);
  bench.validate();
  EXPECT_FLOAT_EQ(bench.settings().filmBackScale, 80.0F / 4.0F);
  bench.connect(dvInput::image, nullptr);
}

}  // namespace
}  // namespace drevin::test

/// Rows of deep inputs: what the node makes of the host's samples.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <thread>

#include "deep/RandomDeepScene.h"
#include "node/DeepBench.h"
#include "node/DeepStandIns.h"
#include "support/Agreement.h"
#include "support/PlainScene.h"

namespace drevin::test {
namespace {

using DD::Image::Box;
using DD::Image::Chan_Alpha;
using DD::Image::Chan_Red;
using DD::Image::ChannelSet;
using DD::Image::Row;
using embedded::RenderResult;
using embedded::RenderSession;

constexpr int width = 24;
constexpr int height = 16;

/// The same samples everywhere over a flat picture of red 0.25, green 0.5, blue 0.75, alpha 1;
/// focal plane 10, focus region 8 to 12, full blur `multiplier` px.
LiteralDeepScene evenScene(const LiteralDeepPixel& pixel, float multiplier = 6.0F) {
  LiteralDeepScene scene;
  scene.flat = plainScene(width, height, 10.0F);
  scene.flat.settings.multiplier = multiplier;
  scene.deep = evenDeepImage(scene.flat.image.box, pixel);
  return scene;
}

float redAt(const RenderResult& result, int x, int y) {
  return renderedAt(result.image, 1, x, y);
}

void expectSamePictures(const RenderResult& a, const RenderResult& b) {
  ASSERT_EQ(a.status, embedded::RenderStatus::Done);
  ASSERT_EQ(b.status, embedded::RenderStatus::Done);
  ASSERT_EQ(a.image.planes.size(), b.image.planes.size());
  for (const auto& [channel, plane] : a.image.planes)
    EXPECT_EQ(*plane, *b.image.planes.at(channel)) << getName(channel);
}

TEST(DeepRows, constantOpaqueSamples_stayConstant) {
  DeepBench bench(evenScene({redPoint(12.0F, 0.5F, 1.0F)}));
  const RenderResult result = bench.render();
  ASSERT_EQ(result.status, embedded::RenderStatus::Done);
  for (int x = 0; x < width; ++x) {
    EXPECT_NEAR(redAt(result, x, 8), 0.5F, 1e-6F) << x;
    EXPECT_NEAR(renderedAt(result.image, 4, x, 8), 1.0F, 1e-6F) << x;
  }
}

/// The scene of a seed with one opaque sample a pixel of the flat picture's own colour and depth.
LiteralDeepScene opaqueScene(unsigned seed) {
  Draw draw(seed);
  LiteralDeepScene scene = evenScene({redPoint(0.0F, 0.0F, 1.0F)}, 9.0F);
  scene.flat.settings.correctiveSlices = 3;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const float depth = draw.real(8.0F, 12.0F);
      LiteralDeepSample sample = redPoint(depth, draw.real(0.0F, 2.0F), 1.0F);
      pixelAt(scene.flat.image, 5, x, y) = depth;
      for (int channel = 1; channel <= 4; ++channel)
        pixelAt(scene.flat.image, channel, x, y) = sample.values.at(channel);
      deepPixelAt(scene.deep, x, y) = {sample};
    }
  }
  return scene;
}

/// Away from the last column, which the deep picture leaves out, both are the same.
TEST(DeepRows, oneOpaqueSampleAPixel_isTheFlatPictureAwayFromTheLastColumn) {
  for (unsigned seed = 0; seed < 8; ++seed) {
    const LiteralDeepScene scene = opaqueScene(seed);
    DeepBench deep(scene);
    const RenderResult deepResult = deep.render();
    NodeBench flat(scene.flat);
    const RenderResult flatResult = flat.render();
    const int reach = deep.drevin().padding();
    ASSERT_LT(reach, width - 4);
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width - 1 - reach; ++x) {
        const float expected = redAt(flatResult, x, y);
        EXPECT_TRUE(agrees(redAt(deepResult, x, y), static_cast<double>(expected)))
            << redAt(deepResult, x, y) << " for " << expected << " at " << x << "," << y;
      }
    }
  }
}

TEST(DeepRows, lastColumn_neverReachesTheOutput) {
  LiteralDeepScene scene = opaqueScene(3);
  DeepBench before(scene);
  const RenderResult expected = before.render();
  for (int y = 0; y < height; ++y)
    deepPixelAt(scene.deep, width - 1, y) = {redPoint(12.0F, 100.0F, 1.0F)};
  DeepBench after(scene);
  expectSamePictures(after.render(), expected);
}

TEST(DeepRows, paneOfHalfAlphaBeforeAWall_givesHalfOfEachAtItsOwnBlur) {
  // A white dot on the wall, which is in focus, behind a pane of full blur with a bright pixel.
  LiteralDeepScene scene = evenScene({redPoint(8.0F, 0.0F, 0.5F), redPoint(10.0F, 0.0F, 1.0F)});
  deepPixelAt(scene.deep, 6, 8) = {redPoint(8.0F, 0.0F, 0.5F), redPoint(10.0F, 1.0F, 1.0F)};
  deepPixelAt(scene.deep, 16, 8) = {redPoint(8.0F, 0.5F, 0.5F), redPoint(10.0F, 0.0F, 1.0F)};
  DeepBench bench(scene);
  const RenderResult result = bench.render();
  EXPECT_NEAR(redAt(result, 6, 8), 0.5F, 1e-5F) << "half of the wall's dot, still sharp";
  EXPECT_NEAR(redAt(result, 5, 8), 0.0F, 1e-6F);
  float sum = 0.0F;
  for (int x = 12; x < 21; ++x) {
    for (int y = 4; y < 13; ++y)
      sum += redAt(result, x, y);
  }
  EXPECT_NEAR(sum, 0.5F, 1e-4F) << "half of the pane's pixel";
  EXPECT_LT(redAt(result, 16, 8), 0.1F) << "spread over its disc";
}

TEST(DeepRows, frontThing_blursOverWhatItHides) {
  // The left half is an opaque front thing with red behind it, the right half only the red wall.
  LiteralDeepScene scene = evenScene({redPoint(10.0F, 1.0F, 1.0F)});
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < 12; ++x)
      deepPixelAt(scene.deep, x, y) = {redPoint(8.0F, 0.0F, 0.25F), redPoint(10.0F, 1.0F, 1.0F)};
  }
  DeepBench bench(scene);
  const RenderResult result = bench.render();
  EXPECT_NEAR(redAt(result, 4, 8), 0.75F, 1e-5F);
  for (int x = 6; x < 14; ++x) {
    EXPECT_GT(redAt(result, x, 8), 0.74F) << x;
  }
}

TEST(DeepRows, emptyPixels_areBlackAndTransparent) {
  DeepBench bench(evenScene({}));
  const RenderResult result = bench.render();
  ASSERT_EQ(result.status, embedded::RenderStatus::Done);
  for (const auto& [channel, plane] : result.image.planes) {
    for (const float value : *plane)
      EXPECT_EQ(value, 0.0F) << getName(channel);
  }
}

TEST(DeepRows, pixelsOutsideTheDataWindow_areEmpty) {
  // The background around the window is as sharp as it can be.
  LiteralDeepScene scene = evenScene({redPoint(10.0F, 1.0F, 1.0F)}, 1.0F);
  scene.deep = evenDeepImage({4, 3, 9, 7}, {redPoint(10.0F, 1.0F, 1.0F)});
  DeepBench bench(scene);
  const RenderResult result = bench.render();
  EXPECT_NEAR(redAt(result, 4, 3), 1.0F, 1e-6F);
  EXPECT_NEAR(redAt(result, 8, 6), 1.0F, 1e-6F);
  for (const auto& [x, y] : {std::pair{3, 3}, {9, 4}, {4, 2}, {4, 7}, {20, 12}})
    EXPECT_EQ(redAt(result, x, y), 0.0F) << x << "," << y;
}

TEST(DeepRows, channelsThatAreNotProcessed_passThroughFromTheFlatPicture) {
  LiteralDeepScene scene = evenScene({redPoint(12.0F, 0.9F, 1.0F)});
  scene.flat.settings.bokehChannels = {1};
  DeepBench bench(scene);
  const RenderResult result = bench.render();
  EXPECT_NEAR(redAt(result, 8, 8), 0.9F, 1e-6F);
  EXPECT_EQ(renderedAt(result.image, 2, 8, 8), 0.5F);
  EXPECT_EQ(renderedAt(result.image, 4, 8, 8), 1.0F);
}

TEST(DeepRows, channelThatTheSamplesLack_isTheFlatValueUnderTheirWeights) {
  LiteralDeepScene scene = evenScene({redPoint(12.0F, 0.9F, 0.5F)});
  scene.deep.channels = {1, 4, literalFront, literalBack};
  for (LiteralDeepPixel& pixel : scene.deep.pixels) {
    pixel[0].values.erase(2);
    pixel[0].values.erase(3);
  }
  DeepBench bench(scene);
  const RenderResult result = bench.render();
  // Half of the flat picture's green 0.5, the other half is the background's black.
  EXPECT_NEAR(renderedAt(result.image, 2, 8, 8), 0.25F, 1e-6F);
  EXPECT_NEAR(renderedAt(result.image, 3, 8, 8), 0.375F, 1e-6F);
}

TEST(DeepRows, depthChannelAmongTheProcessed_isTheFlatPictures) {
  LiteralDeepScene scene = evenScene({redPoint(12.0F, 0.9F, 1.0F)});
  scene.flat.settings.bokehAll = true;
  scene.flat.channels = {1, 4, 5};
  DeepBench bench(scene);
  const RenderResult result = bench.render();
  EXPECT_NEAR(renderedAt(result.image, 5, 8, 8), 10.0F, 1e-4F);
}

TEST(DeepRows, deepWithoutAlpha_countsAsOpaque) {
  LiteralDeepScene scene = evenScene({redPoint(12.0F, 0.9F, 1.0F)});
  scene.deep.channels = {1, 2, 3, literalFront, literalBack};
  for (LiteralDeepPixel& pixel : scene.deep.pixels)
    pixel[0].values.erase(4);
  DeepBench bench(scene);
  const RenderResult result = bench.render();
  EXPECT_NEAR(redAt(result, 8, 8), 0.9F, 1e-6F);
  EXPECT_NEAR(renderedAt(result.image, 4, 8, 8), 1.0F, 1e-6F);
}

TEST(DeepRows, backDepthAsTheDepthChannel_blursByTheBack) {
  LiteralDeepScene scene = evenScene({redSample(10.0F, 12.0F, 0.0F, 1.0F)});
  deepPixelAt(scene.deep, 8, 8) = {redSample(10.0F, 12.0F, 1.0F, 1.0F)};
  DeepBench byFront(scene);
  EXPECT_NEAR(redAt(byFront.render(), 8, 8), 1.0F, 1e-6F);
  scene.flat.settings.depthChannel = literalBack;
  DeepBench byBack(scene);
  EXPECT_LT(redAt(byBack.render(), 8, 8), 0.1F);
}

TEST(DeepRows, reciprocalDepthStyle_isNotAppliedToSamples) {
  LiteralDeepScene scene = evenScene({redPoint(9.0F, 0.0F, 1.0F)});
  deepPixelAt(scene.deep, 8, 8) = {redPoint(10.0F, 1.0F, 1.0F)};
  DeepBench real(scene);
  const RenderResult expected = real.render();
  scene.flat.settings.depthStyle = 1;
  DeepBench reciprocal(scene);
  expectSamePictures(reciprocal.render(), expected);
}

TEST(DeepRows, lensBloomOutput_showsTheBloomOfTheSamplesAlone) {
  LiteralDeepScene scene = evenScene({redPoint(12.0F, 3.0F, 1.0F)});
  scene.flat.settings.outputType = 1;
  scene.flat.settings.bloom = 1.0F;
  scene.flat.settings.bloomThreshold = 0.5F;
  DeepBench bench(scene);
  const LiteralDeepNode literal(scene, false);
  const RenderResult result = bench.render();
  const LiteralRow expected = literal.row(2, 0, width, false);
  EXPECT_GT(expected.at(1)[1].value, 0.01);
  for (int x = 0; x < width; ++x) {
    EXPECT_TRUE(agrees(redAt(result, x, 2), expected.at(1)[static_cast<std::size_t>(x)].value))
        << x;
  }
}

// Front and back apart

LiteralDeepScene frontAndBack() {
  return evenScene({redPoint(8.0F, 0.25F, 0.5F), redPoint(12.0F, 0.5F, 0.75F)});
}

RenderResult renderApart(const LiteralDeepScene& scene, int focusOutput, const ChannelSet& channels,
                         std::uint64_t* merged = nullptr) {
  DeepBench bench(scene);
  bench.node().set("integrateFrontAndBackSeperately", 1.0);
  bench.node().set("focusOutput", focusOutput);
  bench.node().options.channels = channels;
  RenderResult result = bench.render();
  if (merged != nullptr) *merged = bench.drevin().mergedPixels();
  return result;
}

TEST(DeepFrontAndBack, together_isFrontOverBack) {
  const RenderResult result = renderApart(frontAndBack(), 0, DD::Image::Mask_RGBA);
  // Front: red 0.25, alpha 0.5. Back, not dimmed by the front: red 0.5, alpha 0.75.
  EXPECT_NEAR(redAt(result, 8, 8), 0.25F + 0.5F * 0.5F, 1e-6F);
  EXPECT_NEAR(renderedAt(result.image, 4, 8, 8), 0.5F + 0.5F * 0.75F, 1e-6F);
}

TEST(DeepFrontAndBack, frontOnly_isTheFrontOverTheBackground) {
  const RenderResult result = renderApart(frontAndBack(), 1, DD::Image::Mask_RGBA);
  EXPECT_NEAR(redAt(result, 8, 8), 0.25F, 1e-6F);
  EXPECT_NEAR(renderedAt(result.image, 4, 8, 8), 0.5F, 1e-6F);
}

TEST(DeepFrontAndBack, backOnly_isNotDimmedByTheFront) {
  const RenderResult result = renderApart(frontAndBack(), 2, DD::Image::Mask_RGBA);
  EXPECT_NEAR(redAt(result, 8, 8), 0.5F, 1e-6F);
}

TEST(DeepFrontAndBack, alphaNotAskedFor_coversNothing) {
  const RenderResult result = renderApart(frontAndBack(), 0, DD::Image::Mask_Red);
  EXPECT_NEAR(redAt(result, 8, 8), 0.25F + 0.5F, 1e-6F);
}

TEST(DeepFrontAndBack, alphaAskedForButNotProcessed_coversAsTheFlatPictures) {
  LiteralDeepScene scene = frontAndBack();
  scene.flat.settings.bokehChannels = {1};
  for (float& alpha : scene.flat.image.planes.at(4))
    alpha = 0.2F;
  const RenderResult result = renderApart(scene, 0, DD::Image::Mask_RGBA);
  EXPECT_NEAR(redAt(result, 8, 8), 0.25F + 0.8F * 0.5F, 1e-6F);
  EXPECT_EQ(renderedAt(result.image, 4, 8, 8), 0.2F);
}

TEST(DeepFrontAndBack, focusOutputWithoutIntegratingApart_takesEverySample) {
  const LiteralDeepScene scene = frontAndBack();
  DeepBench both(scene);
  const RenderResult expected = both.render();
  DeepBench front(scene);
  front.node().set("focusOutput", 1.0);
  expectSamePictures(front.render(), expected);
}

TEST(DeepFrontAndBack, unwantedSide_isNeverMade) {
  for (const int focusOutput : {1, 2}) {
    DeepBench bench(frontAndBack());
    bench.node().set("integrateFrontAndBackSeperately", 1.0);
    bench.node().set("focusOutput", focusOutput);
    bench.node().open();
    const auto wanted = static_cast<dvDeepMode>(focusOutput);
    const auto other = wanted == dvDeepMode::Front ? dvDeepMode::Back : dvDeepMode::Front;
    const dvPreparedPicture& picture = bench.drevin().picture();
    EXPECT_TRUE(picture.has(3, 0, width, DD::Image::Mask_RGBA, wanted));
    EXPECT_FALSE(picture.has(3, 0, width, DD::Image::Mask_RGBA, other));
    EXPECT_FALSE(picture.has(3, 0, width, DD::Image::Mask_RGBA, dvDeepMode::Both));
  }
}

// Merged once

TEST(DeepPicture, everyPixelInReach_isMergedOncePerFrame) {
  for (const float multiplier : {1.0F, 6.0F, 14.0F}) {
    DeepBench bench(evenScene({redPoint(12.0F, 0.5F, 0.5F)}, multiplier));
    bench.render();
    // All columns but the last.
    EXPECT_EQ(bench.drevin().mergedPixels(), static_cast<std::uint64_t>((width - 1) * height))
        << multiplier;
  }
}

TEST(DeepPicture, frontAndBackApart_shareTheMerge) {
  std::uint64_t merged = 0;
  renderApart(frontAndBack(), 0, DD::Image::Mask_RGBA, &merged);
  EXPECT_EQ(merged, static_cast<std::uint64_t>((width - 1) * height));
}

TEST(DeepPicture, region_mergesWhatReachesItAlone) {
  LiteralDeepScene scene = evenScene({redPoint(12.0F, 0.5F, 0.5F)}, 2.0F);
  scene.flat.image = plainScene(60, 50, 10.0F).image;
  scene.deep = evenDeepImage({0, 0, 60, 50}, {redPoint(12.0F, 0.5F, 0.5F)});
  DeepBench bench(scene);
  bench.node().options.region = Box(20, 20, 30, 25);
  bench.render();
  const int reach = bench.drevin().padding();
  EXPECT_EQ(bench.drevin().mergedPixels(),
            static_cast<std::uint64_t>((10 + 2 * reach) * (5 + 2 * reach)));
}

TEST(DeepPicture, tallPictures_areMergedOnceAcrossBands) {
  LiteralDeepScene scene = evenScene({redPoint(12.0F, 0.5F, 0.5F)}, 9.0F);
  scene.flat.image = plainScene(7, 150, 10.0F).image;
  scene.deep = evenDeepImage({0, 0, 7, 150}, {redPoint(12.0F, 0.5F, 0.5F)});
  DeepBench bench(scene);
  // No memory at all: bands of the fewest rows.
  bench.drevin().setBandBytes(0);
  bench.render();
  EXPECT_EQ(bench.drevin().mergedPixels(), 6U * 150U);
}

TEST(DeepPicture, anyThreadCount_isBitIdentical) {
  for (unsigned seed = 0; seed < 12; ++seed) {
    const LiteralDeepScene scene = randomDeepScene(600 + seed);
    embedded::setThreadCount(1);
    DeepBench alone(scene);
    const RenderResult expected = alone.render();
    for (const unsigned threads : {2U, 3U, 7U}) {
      embedded::setThreadCount(threads);
      DeepBench bench(scene);
      const RenderResult result = bench.render();
      for (const auto& [channel, plane] : expected.image.planes) {
        const embedded::Plane& made = *result.image.planes.at(channel);
        ASSERT_EQ(plane->size(), made.size());
        EXPECT_EQ(std::memcmp(plane->data(), made.data(), made.size() * sizeof(float)), 0)
            << "seed " << seed << ", " << threads << " threads";
      }
    }
  }
  embedded::setThreadCount(0);
}

/// A box that a grown bounding box puts beside the format is made from the format's edge rows.
TEST(DeepPicture, boxBesideTheFormat_isMadeFromItsEdgeRows) {
  LiteralDeepScene scene = evenScene({redPoint(12.0F, 0.5F, 1.0F)});
  scene.flat.settings.expandBox = true;
  scene.flat.settings.maxKernelSize = 40;
  const LiteralDeepNode literal(scene, false);
  for (const Box& region : {Box(2, height + 2, 9, height + 15), Box(-12, -20, 3, -8)}) {
    DeepBench bench(scene);
    bench.node().options.region = region;
    const RenderResult result = bench.render();
    ASSERT_EQ(result.image.box, region);
    for (int y = region.y(); y < region.t(); ++y) {
      const LiteralRow expected = literal.row(y, region.x(), region.r(), false);
      for (int x = region.x(); x < region.r(); ++x) {
        EXPECT_TRUE(agrees(redAt(result, x, y),
                           expected.at(1)[static_cast<std::size_t>(x - region.x())].value))
            << x << "," << y;
      }
    }
  }
}

TEST(DeepPicture, rowsThatItLacks_areMadeAlike) {
  LiteralDeepScene scene = randomDeepScene(604);
  scene.flat.settings.chromaticAberration = 0.0F;
  scene.flat.image.box = {0, 0, scene.flat.image.formatWidth, scene.flat.image.formatHeight};
  scene.flat.image = plainScene(width, height, 10.0F).image;
  DeepBench whole(scene);
  whole.node().options.channels = DD::Image::Mask_RGBA;
  const RenderResult expected = whole.render();
  DeepBench part(scene);
  part.node().options.channels = DD::Image::Mask_RGBA;
  part.node().options.region = Box(0, 0, width, 1);
  RenderSession session(part.node().node(), part.node().options);
  for (int y = 1; y < height; ++y) {
    ASSERT_FALSE(part.drevin().picture().has(y, 0, width, DD::Image::Mask_RGBA, dvDeepMode::Both));
    Row row(0, width);
    ASSERT_TRUE(session.row(y, 0, width, DD::Image::Mask_RGBA, row));
    for (int x = 0; x < width; ++x)
      EXPECT_TRUE(agrees(row[Chan_Red][x], static_cast<double>(redAt(expected, x, y))));
  }
}

// Depth orders

TEST(DeepOrders, pointSamples_giveTheSamePicture) {
  for (unsigned seed = 0; seed < 10; ++seed) {
    LiteralDeepScene scene = opaqueScene(seed);
    Draw draw(seed);
    for (LiteralDeepPixel& pixel : scene.deep.pixels) {
      pixel.clear();
      for (int i = draw.whole(0, 5); i > 0; --i)
        pixel.push_back(redPoint(draw.chance(0.2) ? 9.0F : draw.real(7.0F, 13.0F),
                                 draw.real(0.0F, 0.5F), draw.real(0.1F, 1.0F)));
    }
    const OrderGuard nearFirst(false);
    DeepBench near(scene);
    const RenderResult expected = near.render();
    const OrderGuard guard(true);
    DeepBench far(scene);
    expectSamePictures(far.render(), expected);
  }
}

TEST(DeepOrders, volumeSamples_giveOtherPictures) {
  const LiteralDeepScene scene =
      evenScene({redSample(8.0F, 10.0F, 0.2F, 0.4F), redSample(9.0F, 11.0F, 0.1F, 0.4F)});
  const OrderGuard nearFirst(false);
  DeepBench near(scene);
  const RenderResult nearResult = near.render();
  const OrderGuard guard(true);
  DeepBench far(scene);
  const RenderResult farResult = far.render();
  EXPECT_GT(std::fabs(redAt(nearResult, 8, 8) - redAt(farResult, 8, 8)), 0.01F);
}

TEST(DeepOrders, views_areTheSame) {
  for (const int type : {2, 4}) {
    LiteralDeepScene scene = randomDeepScene(77);
    scene.flat.settings.outputType = type;
    const OrderGuard nearFirst(false);
    DeepBench near(scene);
    const RenderResult expected = near.render();
    const OrderGuard guard(true);
    DeepBench far(scene);
    expectSamePictures(far.render(), expected);
  }
}

// Size estimate

/// A deep operator of which some rows fail without a message.
class FailingDeep : public DeepStandIn {
 public:
  FailingDeep(const Box& box, int failingFrom)
      : DeepStandIn(box, DD::Image::Mask_Deep | DD::Image::Mask_RGBA), failingFrom_(failingFrom) {}

  float depth = 12.0F;

 protected:
  bool doDeepEngine(Box box, const ChannelSet& channels,
                    DD::Image::DeepOutputPlane& plane) override {
    if (box.y() >= failingFrom_) return false;
    plane = DD::Image::DeepOutputPlane(channels, box, DD::Image::DeepPixel::eZAscending);
    for (int i = 0; i < box.w() * box.h(); ++i) {
      DD::Image::DeepOutPixel pixel;
      for (const DD::Image::Channel z : channels)
        pixel.push_back(ChannelSet(DD::Image::Mask_Deep).contains(z) ? depth : 1.0F);
      plane.addPixel(pixel);
    }
    return true;
  }

 private:
  int failingFrom_;
};

TEST(DeepEstimate, backOfTheFarthestSample_sizesTheBankInEitherOrder) {
  // Ramp 1/2 at the farthest back; the nearest sample's full blur does not count.
  const LiteralDeepScene scene =
      evenScene({redPoint(8.0F, 0.1F, 0.5F), redSample(10.2F, 11.0F, 0.1F, 0.5F)}, 14.0F);
  for (const bool farFirst : {false, true}) {
    const OrderGuard guard(farFirst);
    DeepBench bench(scene);
    bench.node().open();
    EXPECT_EQ(bench.drevin().kernelSize(), 7);
    EXPECT_EQ(bench.drevin().padding(), 5);
    EXPECT_EQ(bench.drevin().kernelBank().size(), 12U);
  }
}

TEST(DeepEstimate, emptyPicture_hasFiveKernelsAndAPaddingOfTwo) {
  DeepBench bench(evenScene({}));
  bench.node().open();
  EXPECT_EQ(bench.drevin().kernelSize(), 0);
  EXPECT_EQ(bench.drevin().padding(), 2);
  EXPECT_EQ(bench.drevin().kernelBank().size(), 5U);
}

TEST(DeepEstimate, depthOfTheFlatPicture_playsNoPart) {
  LiteralDeepScene scene = evenScene({redPoint(10.0F, 0.1F, 1.0F)}, 30.0F);
  for (float& depth : scene.flat.image.planes.at(5))
    depth = 100.0F;
  DeepBench bench(scene);
  bench.node().open();
  EXPECT_EQ(bench.drevin().kernelSize(), 0);
}

TEST(DeepEstimate, blurAboveTheMaximum_warnsWithTheDiameterFound) {
  LiteralDeepScene scene = evenScene({redPoint(12.0F, 0.1F, 1.0F)}, 73.0F);
  scene.flat.settings.maxKernelSize = 50;
  DeepBench bench(scene);
  const RenderResult result = bench.render();
  ASSERT_EQ(result.messages.size(), 1U);
  EXPECT_NE(result.messages[0].text.find("above 73."), std::string::npos);
  EXPECT_EQ(bench.drevin().padding(), 27);
}

TEST(DeepEstimate, rowsThatCannotBeFetched_areLeftOut) {
  LiteralScene scene = plainScene(width, height, 10.0F);
  scene.settings.multiplier = 20.0F;
  NodeBench bench(scene);
  FailingDeep deep({0, 0, width, height}, 8);
  deep.depth = 11.0F;
  ASSERT_TRUE(bench.connect(dvInput::deep, &deep));
  bench.open();
  EXPECT_EQ(bench.drevin().kernelSize(), 10) << "half of the ramp, as in the rows that are there";
  bench.connect(dvInput::deep, nullptr);
}

TEST(DeepEstimate, infinitelyFarSamples_raiseNothing) {
  DeepBench bench(evenScene({redPoint(std::numeric_limits<float>::max(), 0.1F, 1.0F)}, 20.0F));
  bench.node().open();
  EXPECT_EQ(bench.drevin().kernelSize(), 0);
}

// Failures

TEST(DeepFailure, rowsThatCannotBeFetched_contributeNothing) {
  LiteralScene scene = plainScene(width, height, 10.0F);
  scene.settings.multiplier = 2.0F;
  NodeBench bench(scene);
  FailingDeep deep({0, 0, width, height}, 8);
  ASSERT_TRUE(bench.connect(dvInput::deep, &deep));
  const RenderResult result = bench.render();
  ASSERT_EQ(result.status, embedded::RenderStatus::Done);
  const int reach = bench.drevin().padding();
  EXPECT_NEAR(redAt(result, 5, 6), 1.0F, 1e-6F);
  for (int y = 8 + reach; y < height; ++y)
    EXPECT_EQ(redAt(result, 5, y), 0.0F) << y;
  bench.connect(dvInput::deep, nullptr);
}

TEST(DeepFailure, viewOfRowsThatCannotBeFetched_keepsTheAlphaOfTheFlatPicture) {
  LiteralScene scene = plainScene(width, height, 10.0F);
  scene.settings.outputType = 2;
  NodeBench bench(scene);
  FailingDeep deep({0, 0, width, height}, 8);
  ASSERT_TRUE(bench.connect(dvInput::deep, &deep));
  const RenderResult result = bench.render();
  ASSERT_EQ(result.status, embedded::RenderStatus::Done);
  EXPECT_EQ(renderedAt(result.image, 4, 5, 12), 1.0F);
  EXPECT_EQ(redAt(result, 5, 12), 0.0F) << "a new row is black";
  EXPECT_GT(renderedAt(result.image, 3, 5, 2), 0.0F);
  bench.connect(dvInput::deep, nullptr);
}

/// A deep source whose rows cannot be read.
class BrokenSource : public embedded::DeepImage {
 public:
  BrokenSource()
      : DeepImage(DD::Image::Format(width, height), Box(0, 0, width, height),
                  DD::Image::Mask_Deep | DD::Image::Mask_RGBA) {}
  void readRow(int y, int /*x*/, int /*r*/, const ChannelSet& /*channels*/,
               embedded::DeepRow& /*row*/) override {
    throw std::runtime_error("row " + std::to_string(y) + " is damaged");
  }
};

TEST(DeepFailure, sourceThatCannotBeRead_endsTheRenderWithItsMessage) {
  NodeBench bench(plainScene(width, height, 10.0F));
  embedded::DeepInput deep(std::make_shared<BrokenSource>());
  ASSERT_TRUE(bench.connect(dvInput::deep, &deep));
  const RenderResult result = bench.render();
  EXPECT_EQ(result.status, embedded::RenderStatus::Error);
  ASSERT_FALSE(result.messages.empty());
  // Rows are read side by side: any may be the first to fail.
  const std::string& text = result.messages[0].text;
  EXPECT_EQ(text.rfind("row ", 0), 0U) << text;
  EXPECT_NE(text.find(" is damaged"), std::string::npos) << text;
  bench.connect(dvInput::deep, nullptr);
}

TEST(DeepFailure, abortAtAnyTime_endsTheRender) {
  const LiteralDeepScene scene = randomDeepScene(612);
  Draw draw(1);
  for (int i = 0; i < 30; ++i) {
    DeepBench bench(scene);
    bench.node().options.threads = 3;
    embedded::clearAbort();
    const auto pause = std::chrono::microseconds(draw.whole(0, 20000));
    std::thread interrupter([pause] {
      std::this_thread::sleep_for(pause);
      embedded::requestAbort();
    });
    const RenderResult result = bench.render();
    interrupter.join();
    EXPECT_NE(result.status, embedded::RenderStatus::Error);
    EXPECT_EQ(result.image.planes.empty(), result.status == embedded::RenderStatus::Aborted);
  }
  embedded::clearAbort();
}

// Views

TEST(DeepViews, emptyPixel_showsTheBackground) {
  LiteralDeepScene scene = evenScene({});
  scene.flat.settings.outputType = 4;
  DeepBench bench(scene);
  const RenderResult result = bench.render();
  EXPECT_EQ(renderedAt(result.image, 3, 4, 4), 1.0F) << "infinitely far is behind";
  EXPECT_EQ(renderedAt(result.image, 2, 4, 4), 0.0F);
}

TEST(DeepViews, focusMatte_weighsTheSamplesByTheirCoverage) {
  LiteralDeepScene scene = evenScene({redPoint(8.0F, 0.0F, 0.5F), redPoint(9.0F, 0.0F, 0.5F)});
  scene.flat.settings.outputType = 4;
  DeepBench bench(scene);
  const RenderResult result = bench.render();
  EXPECT_EQ(renderedAt(result.image, 2, 4, 4), 0.75F);
  EXPECT_EQ(renderedAt(result.image, 3, 4, 4), 0.25F) << "the rest is the background's";
}

TEST(DeepViews, overlappingVolumes_areMergedByTheHost) {
  // Two media that share the stretch from 9 to 10: what is in front of 10 covers 1 - 0.6 * 0.6^0.5.
  LiteralDeepScene scene =
      evenScene({redSample(8.0F, 10.0F, 0.0F, 0.4F), redSample(9.0F, 11.0F, 0.0F, 0.4F)});
  scene.flat.settings.outputType = 4;
  DeepBench bench(scene);
  const RenderResult result = bench.render();
  EXPECT_NEAR(renderedAt(result.image, 2, 4, 4), 1.0F - 0.6F * std::sqrt(0.6F), 1e-6F);
}

TEST(DeepViews, channelsBesideTheColours_passThrough) {
  LiteralDeepScene scene = evenScene({redPoint(8.0F, 0.0F, 0.5F)});
  scene.flat.settings.outputType = 2;
  for (float& alpha : scene.flat.image.planes.at(4))
    alpha = 0.3F;
  scene.flat.channels = {1, 4, 5};
  DeepBench bench(scene);
  const RenderResult result = bench.render();
  EXPECT_EQ(renderedAt(result.image, 4, 4, 4), 0.3F);
  EXPECT_EQ(renderedAt(result.image, 5, 4, 4), 10.0F);
}

}  // namespace
}  // namespace drevin::test

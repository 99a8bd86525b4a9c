#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

#include "EmbeddedHost/Render.h"
#include "host/DeepOrderGuard.h"
#include "host/DeepSources.h"
#include "host/FlattenOp.h"
#include "host/HostBench.h"

using namespace DD::Image;
using deep::FlattenOp;
using embedded::RenderResult;
using embedded::RenderStatus;

namespace {

/// A node that makes a flat picture of the marked deep one.
struct FlattenBench {
  FlattenBench() : FlattenBench(deep::markedDeepImage()) {}
  explicit FlattenBench(std::shared_ptr<embedded::DeepSource> picture)
      : source(std::make_shared<deep::WatchedSource>(std::move(picture))),
        input(source),
        node(FlattenOp::description) {
    node.connect(0, &input);
    options.channels = Mask_All;
    options.threads = 3;
  }
  ~FlattenBench() { embedded::clearAbort(); }
  FlattenBench(const FlattenBench&) = delete;
  FlattenBench& operator=(const FlattenBench&) = delete;

  FlattenOp& op() const { return dynamic_cast<FlattenOp&>(node.op()); }
  RenderResult render() { return embedded::render(node, options); }

  std::shared_ptr<deep::WatchedSource> source;
  embedded::DeepInput input;
  Node node;
  embedded::RenderOptions options;
};

class DeepRenderOrder : public deep::InBothOrders {};
INSTANTIATE_TEST_SUITE_P(Order, DeepRenderOrder, deep::bothOrders(), deep::orderName);

}  // namespace

TEST_P(DeepRenderOrder, everyPixel_isThatOfItsSamples) {
  FlattenBench bench;
  const RenderResult result = bench.render();
  ASSERT_EQ(result.status, RenderStatus::Done);
  EXPECT_EQ(result.image.format.width(), 8);
  ASSERT_EQ(result.image.box, Box(0, 0, 6, 4));
  ASSERT_EQ(result.image.planes.size(), 1U);
  const embedded::Plane& alpha = *result.image.planes.at(Chan_Alpha);
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 6; ++x) {
      float seen = 1.0F;
      for (int i = 0; i < deep::countOf(x, y); ++i)
        seen *= 1.0F - deep::markOf(x, y, i);
      EXPECT_NEAR(alpha[static_cast<std::size_t>(6 * y + x)], 1.0F - seen, 1e-6F) << x << "," << y;
    }
  }
}

TEST_P(DeepRenderOrder, overlappingVolumes_areMixed) {
  const ChannelSet channels(Mask_Red | Mask_Alpha | Mask_Deep);
  auto image = std::make_shared<embedded::DeepImage>(Format(1, 1), Box(0, 0, 1, 1), channels);
  image->setPixel(0, 0, {0.25F, 0.5F, 1, 3, 0.75F, 1, 2, 2});
  FlattenBench bench(image);
  const RenderResult result = bench.render();
  ASSERT_EQ(result.status, RenderStatus::Done);
  // The half in front of the opaque point has alpha 1 - sqrt(0.5) and red 0.5 times that.
  const float half = 1.0F - std::sqrt(0.5F);
  EXPECT_NEAR(result.image.planes.at(Chan_Red)->at(0), 0.5F * half + (1.0F - half) * 0.75F, 1e-6F);
  EXPECT_NEAR(result.image.planes.at(Chan_Alpha)->at(0), 1.0F, 1e-6F);
}

TEST_P(DeepRenderOrder, pictureThatRepeats_isTheSameToTheBit) {
  FlattenBench bench;
  const RenderResult first = bench.render();
  bench.options.threads = 1;
  const RenderResult second = bench.render();
  ASSERT_EQ(second.status, RenderStatus::Done);
  EXPECT_EQ(*first.image.planes.at(Chan_Alpha), *second.image.planes.at(Chan_Alpha));
  EXPECT_EQ(first.hash, second.hash);
}

TEST(DeepRender, request_isRecordedForTheDeepInput) {
  FlattenBench bench;
  bench.options.region = Box(1, 1, 90, 3);
  const RenderResult result = bench.render();
  ASSERT_EQ(result.status, RenderStatus::Done);
  ASSERT_EQ(result.requests.count(0), 1U);
  EXPECT_EQ(result.requests.at(0).box, Box(1, 1, 6, 3));
  EXPECT_EQ(result.requests.at(0).channels, deep::alphaAndDepths);
}

TEST(DeepRender, sourceThatThrows_isOneMessageAndNoPicture) {
  FlattenBench bench;
  bench.source->beforeRow = [](int y) {
    if (y > 0) throw std::runtime_error("samples.exr: the rows are damaged");
  };
  const RenderResult result = bench.render();
  EXPECT_EQ(result.status, RenderStatus::Error);
  EXPECT_TRUE(result.image.planes.empty());
  ASSERT_EQ(result.messages.size(), 1U) << "however many threads met it";
  EXPECT_EQ(result.messages[0].text, "samples.exr: the rows are damaged");
  EXPECT_GE(bench.op().failedReads, 1);
}

TEST(DeepRender, messagesOfOtherExceptions_sayWhatIsKnown) {
  FlattenBench bench;
  bench.source->beforeRow = [](int) { throw std::bad_alloc(); };
  EXPECT_EQ(bench.render().messages.at(0).text, "out of memory");
  bench.source->beforeRow = [](int) { throw 7; };
  EXPECT_EQ(bench.render().messages.at(0).text, "unknown exception");
}

TEST(DeepRender, errorOfOneRender_isGoneInTheNext) {
  FlattenBench bench;
  bench.source->beforeRow = [](int) { throw std::runtime_error("once"); };
  EXPECT_EQ(bench.render().status, RenderStatus::Error);
  bench.source->beforeRow = nullptr;
  const RenderResult result = bench.render();
  EXPECT_EQ(result.status, RenderStatus::Done);
  EXPECT_TRUE(result.messages.empty());
}

TEST(DeepRender, abortWithinARow_endsTheRenderWithoutMessage) {
  FlattenBench bench;
  bench.options.threads = 1;
  bench.source->beforeRow = [](int y) {
    if (y == 1) embedded::requestAbort();
  };
  const RenderResult result = bench.render();
  EXPECT_EQ(result.status, RenderStatus::Aborted);
  EXPECT_TRUE(result.messages.empty());
  EXPECT_EQ(bench.source->calls().size(), 2U);
}

TEST(DeepRender, deepOperator_isNoImageInput) {
  embedded::DeepInput deepInput(deep::markedDeepImage());
  smooth::HostBench flat;
  EXPECT_FALSE(flat.node.connect(0, &deepInput));
  FlattenBench bench;
  EXPECT_FALSE(bench.node.connect(0, &flat.picture));
}

TEST(DeepRender, hash_followsTheSamples) {
  FlattenBench bench;
  FlattenBench other(deep::markedDeepImage(6, 3));
  EXPECT_NE(bench.render().hash, other.render().hash);
}

#include <gtest/gtest.h>

#include <algorithm>

#include "host/HostBench.h"

using DD::Image::Box;
using smooth::HostBench;
using smooth::SmoothOp;
using Calls = std::vector<std::string>;

TEST(CallOrder, render_storesAppendsValidatesRequestsOpensAndCloses) {
  HostBench bench;
  const embedded::RenderResult result = bench.render();
  EXPECT_EQ(result.status, embedded::RenderStatus::Done);
  EXPECT_EQ(bench.op().calls, (Calls{"store", "append", "validate(false)", "validate(true)",
                                     "request", "open", "close"}));
  EXPECT_EQ(bench.op().rows, 8) << "the picture's 6 rows and one on each side";
}

TEST(CallOrder, noRowBeforeOpenOrAfterClose) {
  HostBench bench;
  std::atomic<bool> isOpen{false};
  std::atomic<int> outside{0};
  bench.op().onOpen = [&](SmoothOp&) { isOpen = true; };
  bench.op().onClose = [&](SmoothOp&) { isOpen = false; };
  bench.op().onRow = [&](SmoothOp&, int) { outside += isOpen ? 0 : 1; };
  bench.render();
  EXPECT_EQ(outside, 0);
}

TEST(CallOrder, emptyRegion_isNeitherRequestedNorOpened) {
  HostBench bench;
  bench.options.region = Box(100, 100, 110, 110);
  const embedded::RenderResult result = bench.render();
  EXPECT_EQ(result.status, embedded::RenderStatus::Done);
  EXPECT_TRUE(result.image.box.empty());
  EXPECT_TRUE(result.image.planes.empty());
  EXPECT_EQ(bench.op().calls, (Calls{"store", "append", "validate(false)", "validate(true)"}));
}

TEST(CallOrder, noChannels_isNeitherRequestedNorOpened) {
  HostBench bench;
  bench.options.channels = DD::Image::Mask_None;
  EXPECT_EQ(bench.render().status, embedded::RenderStatus::Done);
  EXPECT_EQ(bench.op().calls, (Calls{"store", "append", "validate(false)", "validate(true)"}));
}

TEST(CallOrder, channelsThatTheOperatorLacks_areNoneAtAll) {
  HostBench bench;
  bench.options.channels = DD::Image::Mask_Z;
  const embedded::RenderResult result = bench.render();
  EXPECT_EQ(result.status, embedded::RenderStatus::Done);
  EXPECT_EQ(bench.op().rows, 0);
  EXPECT_TRUE(result.image.planes.empty());
}

TEST(CallOrder, validate_onAValidOperatorReturnsAtOnce) {
  HostBench bench;
  SmoothOp& op = bench.op();
  op.validate(false);
  op.validate(false);
  EXPECT_EQ(op.calls, Calls{"validate(false)"});
  op.validate(true);
  op.validate(true);
  op.validate(false);
  EXPECT_EQ(op.calls, (Calls{"validate(false)", "validate(true)"}));
}

TEST(CallOrder, reconnecting_makesValidateRunAgain) {
  HostBench bench;
  bench.op().validate(true);
  ASSERT_TRUE(bench.node.connect(0, nullptr));
  bench.op().calls.clear();
  bench.op().validate(true);
  EXPECT_EQ(bench.op().calls, Calls{"validate(true)"});
}

TEST(CallOrder, openAndClose_runOnce) {
  HostBench bench;
  SmoothOp& op = bench.op();
  op.open();
  op.open();
  op.close();
  op.close();
  EXPECT_EQ(op.calls, (Calls{"open", "close"}));
}

TEST(CallOrder, nodeThatIsRead_isStoredValidatedOpenedAndClosedToo) {
  HostBench upstream;
  upstream.knob("gain").set_value(0.5);
  HostBench bench;
  ASSERT_TRUE(bench.node.connect(0, &upstream.op()));
  upstream.op().calls.clear();
  const embedded::RenderResult result = bench.render();
  EXPECT_EQ(result.status, embedded::RenderStatus::Done);
  EXPECT_EQ(upstream.op().gain, 0.5F);
  const Calls& calls = upstream.op().calls;
  for (const char* step : {"store", "request", "open", "close"})
    EXPECT_EQ(std::count(calls.begin(), calls.end(), step), 1) << step;
  EXPECT_EQ(calls.back(), "close");
  EXPECT_EQ(result.image.box, Box(-2, -2, 10, 8));
}

TEST(CallOrder, changeOfANodeThatIsRead_showsInTheNextRender) {
  HostBench upstream;
  HostBench bench;
  ASSERT_TRUE(bench.node.connect(0, &upstream.op()));
  const embedded::RenderResult before = bench.render();
  upstream.knob("gain").set_value(0.0);
  const embedded::RenderResult after = bench.render();
  EXPECT_NE(before.hash, after.hash);
  const embedded::Plane& red = *after.image.planes.at(DD::Image::Chan_Red);
  EXPECT_TRUE(std::all_of(red.begin(), red.end(), [](float v) { return v == 0.0F; }));
}

TEST(CallOrder, cacheFlag_isKept) {
  const HostBench bench;
  EXPECT_FALSE(bench.op().cached());
  bench.op().cached(true);
  EXPECT_TRUE(bench.op().cached());
}

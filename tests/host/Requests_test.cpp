#include <gtest/gtest.h>

#include "DDImage/DeepOp.h"
#include "DDImage/Interest.h"
#include "host/HostBench.h"

using DD::Image::Box;
using DD::Image::ChannelSet;
using smooth::HostBench;
using smooth::SmoothOp;

namespace {

/// A deep operator that passes requests on to another, and keeps them.
class DeepSource : public DD::Image::Op, public DD::Image::DeepOp {
 public:
  explicit DeepSource(DeepSource* from = nullptr) : Op(nullptr), from_(from) {}
  const char* Class() const override { return "HostTestDeep"; }
  const char* node_help() const override { return ""; }
  DD::Image::Op* op() override { return this; }

  int validations = 0;
  std::vector<DD::Image::RequestData> kept;

 protected:
  void _validate(bool forReal) override {
    ++validations;
    if (from_ != nullptr) from_->DeepOp::validate(forReal);
    _deepInfo = DD::Image::DeepInfo(DD::Image::FormatPair(DD::Image::Format(10, 10)),
                                    Box(2, 2, 8, 8), DD::Image::Mask_Deep | DD::Image::Mask_Alpha);
  }
  bool doDeepEngine(Box /*box*/, const ChannelSet& /*channels*/,
                    DD::Image::DeepOutputPlane& /*plane*/) override {
    return true;
  }
  void getDeepRequests(Box box, const ChannelSet& channels, int count,
                       std::vector<DD::Image::RequestData>& requests) override {
    kept.emplace_back(this, box, channels, count);
    if (from_ != nullptr) requests.emplace_back(from_, box, channels, count);
  }

 private:
  DeepSource* from_;
};

}  // namespace

TEST(Requests, boxAndChannels_areClippedToTheInput) {
  HostBench bench(Box(1, 1, 6, 5));
  bench.options.channels = DD::Image::Mask_RGBA | DD::Image::Mask_Z;
  const embedded::RenderResult result = bench.render();
  ASSERT_EQ(result.requests.count(0), 1U);
  EXPECT_EQ(result.requests.at(0).box, Box(1, 1, 6, 5));
  EXPECT_EQ(result.requests.at(0).channels, ChannelSet(DD::Image::Mask_RGBA));
  EXPECT_EQ(result.requests.count(1), 0U) << "nothing is connected there";
}

TEST(Requests, region_narrowsThem) {
  HostBench bench;
  bench.options.region = Box(2, 2, 4, 3);
  bench.options.channels = DD::Image::Mask_Red;
  const embedded::RenderResult result = bench.render();
  EXPECT_EQ(result.requests.at(0).box, Box(1, 1, 5, 4));
  EXPECT_EQ(result.requests.at(0).channels, ChannelSet(DD::Image::Mask_Red));
}

TEST(Requests, severalOfOneInput_areMerged) {
  HostBench bench;
  bench.options.region = Box(0, 0, 1, 1);
  bench.options.channels = DD::Image::Mask_Red;
  bench.op().onRequest = [](SmoothOp& op) {
    op.input0().request(6, 4, 7, 5, DD::Image::Mask_Green, 1);
    op.input0().request(Box(5, 5, 50, 50), DD::Image::Mask_Blue, 2);
  };
  const embedded::RenderResult result = bench.render();
  EXPECT_EQ(result.requests.at(0).box, Box(0, 0, 8, 6));
  EXPECT_EQ(result.requests.at(0).channels, ChannelSet(DD::Image::Mask_RGB));
}

TEST(Requests, nothingLeftAfterClipping_isNoRequest) {
  HostBench bench;
  bench.op().validate(true);
  bench.op().request(Box(100, 100, 110, 110), DD::Image::Mask_RGBA, 1);
  bench.op().request(Box(0, 0, 4, 4), DD::Image::Mask_Z, 1);
  bench.op().request(DD::Image::Mask_None, 1);
  EXPECT_EQ(bench.op().calls, std::vector<std::string>{"validate(true)"});
  bench.op().request(DD::Image::Mask_All, 1);
  EXPECT_EQ(bench.op().calls.back(), "request");
}

TEST(Requests, ofARender_doNotAddUpWithThoseBefore) {
  HostBench bench;
  bench.render();
  bench.options.region = Box(3, 3, 4, 4);
  EXPECT_EQ(bench.render().requests.at(0).box, Box(2, 2, 5, 5));
}

TEST(Requests, throughANode_reachItsInput) {
  HostBench upstream;
  HostBench bench;
  ASSERT_TRUE(bench.node.connect(0, &upstream.op()));
  bench.options.region = Box(3, 3, 4, 4);
  const embedded::RenderSession session(bench.node, bench.options);
  EXPECT_EQ(session.requests().at(0).box, Box(2, 2, 5, 5));
}

TEST(DeepRequests, areClippedToTheDeepBoxAndChannels) {
  DeepSource source;
  source.DeepOp::validate(true);
  source.deepRequest(Box(0, 0, 5, 5), DD::Image::Mask_All, 3);
  ASSERT_EQ(source.kept.size(), 1U);
  EXPECT_EQ(source.kept[0].box, Box(2, 2, 5, 5));
  EXPECT_EQ(source.kept[0].channels, ChannelSet(DD::Image::Mask_Deep | DD::Image::Mask_Alpha));
  EXPECT_EQ(source.kept[0].count, 3);
}

TEST(DeepRequests, withNothingLeft_areNone) {
  DeepSource source;
  source.DeepOp::validate(true);
  source.deepRequest(Box(8, 0, 10, 10), DD::Image::Mask_All);
  source.deepRequest(Box(0, 0, 10, 10), DD::Image::Mask_Red);
  EXPECT_TRUE(source.kept.empty());
}

TEST(DeepRequests, arePassedOn) {
  DeepSource source;
  DeepSource filter(&source);
  filter.DeepOp::validate(true);
  filter.deepRequest(Box(3, 3, 5, 5), DD::Image::Mask_Alpha);
  ASSERT_EQ(source.kept.size(), 1U);
  EXPECT_EQ(source.kept[0].box, Box(3, 3, 5, 5));
}

TEST(DeepOp, validate_runsOnceForBothSides) {
  DeepSource source;
  source.DeepOp::validate(true);
  source.DeepOp::validate(true);
  source.Op::validate(true);
  EXPECT_EQ(source.validations, 1);
  EXPECT_EQ(source.deepInfo().box(), Box(2, 2, 8, 8));
  EXPECT_EQ(source.deepInfo().format()->width(), 10);
}

TEST(Interest, isTheRegionThatItMarks) {
  HostBench bench;
  bench.op().validate(true);
  const DD::Image::Interest part(bench.op(), 1, 2, 3, 4, DD::Image::Mask_RGBA);
  EXPECT_EQ(Box(part), Box(1, 2, 3, 4));
  const DD::Image::Interest boxed(bench.op(), Box(0, 0, 2, 2), DD::Image::Mask_RGBA, true);
  EXPECT_EQ(Box(boxed), Box(0, 0, 2, 2));
  const DD::Image::Interest whole(bench.op(), DD::Image::Mask_RGBA);
  EXPECT_EQ(Box(whole), Box(bench.op().info()));
}

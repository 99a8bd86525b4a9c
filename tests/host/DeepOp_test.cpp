#include "DDImage/DeepOp.h"

#include <gtest/gtest.h>

#include <vector>

#include "EmbeddedHost/Render.h"
#include "host/DeepOrderGuard.h"
#include "host/DeepSources.h"

using namespace DD::Image;
using embedded::DeepInput;

namespace {

/// Passes on the samples of another deep operator, with the pixels around each asked for.
class PassOp : public DeepOnlyOp {
 public:
  explicit PassOp(DeepOp& read) : DeepOnlyOp(nullptr), read_(read) {}

  const char* Class() const override { return "HostTestDeepPass"; }
  const char* node_help() const override { return ""; }

  std::vector<bool> validations;  ///< whether each was for real
  std::vector<RequestData> asked;
  int reads = 0;
  bool leavePixelsOut = false;
  bool fail = false;

 protected:
  void _validate(bool forReal) override {
    validations.push_back(forReal);
    read_.validate(forReal);
    _deepInfo = read_.deepInfo();
  }
  bool doDeepEngine(Box box, const ChannelSet& channels, DeepOutputPlane& plane) override {
    ++reads;
    if (fail) return false;
    if (leavePixelsOut) {
      plane.addHole();
      return true;
    }
    DeepPlane in;
    if (!read_.deepEngine(box, channels, in)) return false;
    plane = DeepOutputPlane(in.channels(), in.box(), in.ordering());
    for (int y = box.y(); y < box.t(); ++y) {
      for (int x = box.x(); x < box.r(); ++x)
        plane.addPixel(in.getPixel(y, x));
    }
    return true;
  }
  void getDeepRequests(Box box, const ChannelSet& channels, int count,
                       std::vector<RequestData>& requests) override {
    asked.emplace_back(this, box, channels, count);
    box.expand(1);
    requests.emplace_back(&read_, box, channels, 2 * count);
  }

 private:
  DeepOp& read_;
};

/// The deep side of an operator that is an object of its own.
class SideOp : public Op {
 public:
  class Side : public DeepOp {
   public:
    explicit Side(SideOp& behind) : behind_(behind) {}
    Op* op() override { return &behind_; }
    int validations = 0;

   protected:
    void _validate(bool /*forReal*/) override {
      ++validations;
      _deepInfo = DeepInfo(FormatPair(Format(2, 2)), Box(0, 0, 2, 2), deep::alphaAndDepths);
    }
    bool doDeepEngine(Box /*box*/, const ChannelSet& /*channels*/,
                      DeepOutputPlane& /*plane*/) override {
      return true;
    }
    void getDeepRequests(Box /*box*/, const ChannelSet& /*channels*/, int /*count*/,
                         std::vector<RequestData>& /*requests*/) override {}

   private:
    SideOp& behind_;
  };

  SideOp() : Op(nullptr) {}
  const char* Class() const override { return "HostTestDeepSide"; }
  const char* node_help() const override { return ""; }

  Side side{*this};
};

/// Two operators, one behind the other, that read the marked picture.
struct Chain {
  DeepInput picture{deep::markedDeepImage()};
  PassOp near{picture};
  PassOp last{static_cast<DeepOp&>(near)};
};

class DeepOpOrder : public deep::InBothOrders {};
INSTANTIATE_TEST_SUITE_P(Order, DeepOpOrder, deep::bothOrders(), deep::orderName);

}  // namespace

TEST(DeepOp, validate_settlesItsInformationAndThatOfWhatItReads) {
  Chain chain;
  chain.last.DeepOp::validate(true);
  EXPECT_EQ(chain.last.deepInfo().box(), Box(0, 0, 6, 4));
  EXPECT_EQ(chain.near.validations, std::vector<bool>({true}));
  EXPECT_TRUE(chain.picture.validatedAs(true));
}

TEST(DeepOp, validate_ofAValidOperator_returnsAtOnce) {
  Chain chain;
  chain.near.DeepOp::validate(false);
  chain.near.DeepOp::validate(false);
  chain.near.DeepOp::validate(true);
  chain.near.DeepOp::validate(true);
  chain.near.DeepOp::validate(false);
  EXPECT_EQ(chain.near.validations, std::vector<bool>({false, true}));
}

TEST(DeepOp, validateOfEitherSide_isForBoth) {
  Chain chain;
  chain.near.Op::validate(true);
  chain.near.DeepOp::validate(true);
  EXPECT_EQ(chain.near.validations, std::vector<bool>({true}));
}

TEST(DeepOp, sideOfItsOwn_isValidatedBesideItsOperator) {
  SideOp operatorAndSide;
  operatorAndSide.side.validate(true);
  operatorAndSide.side.validate(true);
  EXPECT_EQ(operatorAndSide.side.validations, 1);
  EXPECT_TRUE(operatorAndSide.validatedAs(true));
  EXPECT_EQ(operatorAndSide.side.deepInfo().r(), 2);
}

TEST(DeepOp, request_isClippedToBoxAndChannels) {
  Chain chain;
  chain.near.DeepOp::validate(true);
  chain.near.deepRequest(Box(-5, 2, 3, 90), Mask_RGBA | Mask_DeepFront, 3);
  ASSERT_EQ(chain.near.asked.size(), 1U);
  EXPECT_EQ(chain.near.asked[0].box, Box(0, 2, 3, 4));
  EXPECT_EQ(chain.near.asked[0].channels, ChannelSet(Mask_Alpha | Mask_DeepFront));
  EXPECT_EQ(chain.near.asked[0].count, 3);
}

TEST(DeepOp, request_isPassedOnToWhatIsRead) {
  Chain chain;
  chain.last.DeepOp::validate(true);
  chain.last.deepRequest(Box(2, 1, 3, 2), deep::alphaAndDepths);
  ASSERT_EQ(chain.near.asked.size(), 1U);
  EXPECT_EQ(chain.near.asked[0].box, Box(1, 0, 4, 3)) << "with the pixels around";
  EXPECT_EQ(chain.near.asked[0].count, 2);
}

TEST(DeepOp, requestOfNothing_isNotPassedOn) {
  Chain chain;
  chain.near.DeepOp::validate(true);
  chain.near.deepRequest(Box(6, 0, 9, 4), deep::alphaAndDepths);
  chain.near.deepRequest(Box(0, 0, 6, 4), Mask_RGB);
  chain.near.deepRequest(Box(), deep::alphaAndDepths);
  EXPECT_TRUE(chain.near.asked.empty());
}

TEST_P(DeepOpOrder, samples_goThroughOperatorsUnchanged) {
  Chain chain;
  chain.last.DeepOp::validate(true);
  DeepPlane direct;
  DeepPlane passed;
  ASSERT_TRUE(chain.picture.deepEngine(Box(-1, 0, 6, 4), deep::alphaAndDepths, direct));
  ASSERT_TRUE(chain.last.deepEngine(Box(-1, 0, 6, 4), deep::alphaAndDepths, passed));
  EXPECT_EQ(passed.getTotalSampleCount(), direct.getTotalSampleCount());
  const DeepPixel pixel = passed.getPixel(0, 3);
  ASSERT_EQ(pixel.getSampleCount(), 3U);
  EXPECT_EQ(pixel.getOrderedSample(0, Chan_Alpha), deep::markOf(3, 0, farFirst() ? 2 : 0));
}

TEST(DeepOp, pixelsThatAnOperatorLeavesOut_areEmpty) {
  Chain chain;
  chain.near.DeepOp::validate(true);
  chain.near.leavePixelsOut = true;
  DeepPlane plane;
  ASSERT_TRUE(chain.near.deepEngine(Box(0, 0, 6, 4), deep::alphaAndDepths, plane));
  EXPECT_EQ(plane.box(), Box(0, 0, 6, 4));
  EXPECT_EQ(plane.ordering(), DeepPixel::eUnordered);
  EXPECT_EQ(plane.getSampleCount(3, 5), 0U);
}

TEST(DeepOp, operatorThatFails_leavesThePlane) {
  Chain chain;
  chain.last.DeepOp::validate(true);
  chain.near.fail = true;
  DeepPlane plane;
  EXPECT_FALSE(chain.last.deepEngine(Box(0, 0, 6, 4), deep::alphaAndDepths, plane));
  EXPECT_TRUE(plane.box().empty());
}

TEST(DeepOp, abort_readsNothingMore) {
  Chain chain;
  chain.near.DeepOp::validate(true);
  embedded::requestAbort();
  DeepPlane plane;
  EXPECT_FALSE(chain.near.deepEngine(Box(0, 0, 6, 4), deep::alphaAndDepths, plane));
  embedded::clearAbort();
  EXPECT_EQ(chain.near.reads, 0);
  EXPECT_TRUE(chain.near.deepEngine(Box(0, 0, 6, 4), deep::alphaAndDepths, plane));
  EXPECT_EQ(chain.near.reads, 1);
}

#include <gtest/gtest.h>

#include "host/HostBench.h"

using DD::Image::Knob;
using smooth::HostBench;
using Changes = std::vector<const Knob*>;

namespace {

/// Declares nothing of its own, not even knob_changed.
class PlainOp : public DD::Image::Op {
 public:
  using Op::Op;
  const char* Class() const override { return "HostTestPlain"; }
  const char* node_help() const override { return ""; }
};

}  // namespace

TEST(KnobChanged, byHand_isToldAfterTheValueIsSet) {
  HostBench bench;
  Knob& gain = bench.knob("gain");
  ASSERT_TRUE(bench.node.setByHand(gain, std::string("0.5")));
  EXPECT_EQ(bench.op().changed, Changes{&gain});
  EXPECT_EQ(gain.get_value(), 0.5);
  EXPECT_EQ(bench.op().gain, 1.0F) << "members lag behind";
  bench.node.setByHand(bench.knob("window"), std::vector<double>{3.0, 4.0});
  EXPECT_EQ(bench.op().changed, (Changes{&gain, &bench.knob("window")}));
  EXPECT_EQ(bench.knob("window").valueText(), "3 4");
}

TEST(KnobChanged, refusedText_isNotTold) {
  HostBench bench;
  EXPECT_FALSE(bench.node.setByHand(bench.knob("gain"), std::string("much")));
  EXPECT_TRUE(bench.op().changed.empty());
}

TEST(KnobChanged, setByTheProgram_isNotTold) {
  HostBench bench;
  bench.knob("gain").set_value(0.5);
  EXPECT_TRUE(bench.op().changed.empty());
}

TEST(KnobChanged, panelAndInput_areToldByAddress) {
  HostBench bench;
  bench.node.showPanel();
  ASSERT_TRUE(bench.node.connect(1, &bench.picture));
  EXPECT_EQ(bench.op().changed, (Changes{&Knob::showPanel, &Knob::inputChange}));
}

TEST(KnobChanged, zero_silencesThatControlForGood) {
  HostBench bench;
  Knob& gain = bench.knob("gain");
  bench.op().changedResult = 0;
  bench.node.setByHand(gain, std::string("0.5"));
  EXPECT_NE(gain.flags() & Knob::NO_KNOB_CHANGED, 0U);
  bench.op().changedResult = 1;
  bench.node.setByHand(gain, std::string("0.75"));
  bench.node.setByHand(bench.knob("on"), std::string("0"));
  EXPECT_EQ(bench.op().changed, (Changes{&gain, &bench.knob("on")}));
  EXPECT_EQ(gain.get_value(), 0.75) << "the value is taken all the same";
}

TEST(KnobChanged, zeroForAStandIn_silencesItForThisNodeOnly) {
  HostBench bench;
  bench.op().changedResult = 0;
  bench.node.showPanel();
  bench.node.showPanel();
  EXPECT_EQ(bench.op().changed, Changes{&Knob::showPanel});
  HostBench other;
  other.node.showPanel();
  EXPECT_EQ(other.op().changed, Changes{&Knob::showPanel});
}

TEST(KnobChanged, flagSetByTheOperator_keepsItFromBeingTold) {
  HostBench bench;
  bench.knob("gain").set_flag(Knob::NO_KNOB_CHANGED);
  bench.node.setByHand(bench.knob("gain"), std::string("0.5"));
  EXPECT_TRUE(bench.op().changed.empty());
}

TEST(KnobChanged, base_returnsZero) {
  PlainOp op(nullptr);
  EXPECT_EQ(op.knob_changed(&Knob::showPanel), 0);
}

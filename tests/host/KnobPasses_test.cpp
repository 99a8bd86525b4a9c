#include <gtest/gtest.h>

#include <stdexcept>

#include "host/HostBench.h"

using DD::Image::Knob;
using smooth::HostBench;

TEST(MakePass, controls_keepOrderKindNameAndLabel) {
  const HostBench bench;
  const struct {
    const char* kind;
    const char* name;
    const char* label;
    int components;
  } wanted[] = {{"Tab_knob", "", "Smooth", 0},
                {"Float_knob", "gain", "gain", 1},
                {"Float_knob", "offset", "Offset", 1},
                {"Int_knob", "repeats", "repeats", 1},
                {"Bool_knob", "on", "on", 1},
                {"Enumeration_knob", "method", "method", 1},
                {"Text_knob", "", "Colours", 0},
                {"Color_knob", "tint", "tint", 3},
                {"MultiFloat_knob", "window", "window", 2},
                {"Input_Channel_knob", "depth", "depth", 1},
                {"InputOnly_Channel_knob", "only", "only", 1},
                {"Input_ChannelMask_knob", "mask", "mask", 0},
                {"Text_knob", "", "", 0}};
  const auto& knobs = bench.node.knobs();
  ASSERT_EQ(knobs.size(), std::size(wanted));
  for (std::size_t i = 0; i < knobs.size(); ++i) {
    EXPECT_EQ(knobs[i]->kind(), wanted[i].kind) << i;
    EXPECT_EQ(knobs[i]->name(), wanted[i].name) << i;
    EXPECT_EQ(knobs[i]->label(), wanted[i].label) << i;
    EXPECT_EQ(knobs[i]->components(), wanted[i].components) << i;
  }
}

TEST(MakePass, defaults_areTheVariablesContents) {
  const HostBench bench;
  EXPECT_EQ(bench.knob("gain").defaultText(), "1");
  EXPECT_EQ(bench.knob("offset").defaultText(), "0.25");
  EXPECT_EQ(bench.knob("repeats").defaultText(), "2");
  EXPECT_EQ(bench.knob("on").defaultText(), "true");
  EXPECT_EQ(bench.knob("method").defaultText(), "mean");
  EXPECT_EQ(bench.knob("tint").defaultText(), "1 0.5 0.25");
  EXPECT_EQ(bench.knob("window").defaultText(), "0 512");
  EXPECT_EQ(bench.knob("depth").defaultText(), "depth.Z");
  EXPECT_EQ(bench.knob("only").defaultText(), "none");
  EXPECT_EQ(bench.knob("mask").defaultText(), "rgb");
}

TEST(MakePass, modifiers_addressTheControlJustMade) {
  const HostBench bench;
  EXPECT_EQ(bench.knob("gain").range(), std::make_pair(0.0, 2.0));
  EXPECT_EQ(bench.knob("gain").tooltip(), "Factor of the picture.");
  EXPECT_EQ(bench.knob("gain").flags(), 0U);
  EXPECT_FALSE(bench.knob("offset").range()) << "no range was set";
  EXPECT_FALSE(bench.knob("offset").tooltip());
  EXPECT_EQ(bench.knob("repeats").flags(), Knob::FORCE_RANGE | Knob::STARTLINE);
}

TEST(MakePass, channelControls_knowTheirInput) {
  const HostBench bench;
  EXPECT_EQ(bench.knob("depth").channelInput(), 0);
  EXPECT_EQ(bench.knob("only").channelInput(), 1);
  EXPECT_EQ(bench.knob("mask").channelInput(), 0);
  EXPECT_EQ(bench.knob("gain").channelInput(), -1);
}

TEST(MakePass, choices_endAtTheNullPointer) {
  const HostBench bench;
  EXPECT_EQ(bench.knob("method").choices(), (std::vector<std::string>{"mean", "middle"}));
}

TEST(StorePass, everyValue_reachesItsVariable) {
  HostBench bench;
  bench.knob("gain").set_text("0.5");
  bench.knob("offset").set_text("0.125");
  bench.knob("repeats").set_text("7");
  bench.knob("on").set_text("false");
  bench.knob("method").set_text("middle");
  bench.knob("tint").set_text("1 2 3");
  bench.knob("window").set_text("4 5");
  bench.knob("depth").set_text("rgba.green");
  bench.knob("only").set_text("rgba.blue");
  bench.knob("mask").set_text("all");
  const smooth::SmoothOp& op = bench.op();
  EXPECT_EQ(op.gain, 1.0F) << "nothing is bound: only the store pass writes";
  bench.node.storeKnobs();
  EXPECT_EQ(op.gain, 0.5F);
  EXPECT_EQ(op.offset, 0.125);
  EXPECT_EQ(op.repeats, 7);
  EXPECT_FALSE(op.on);
  EXPECT_EQ(op.method, 1);
  EXPECT_EQ(op.tint, (std::array<float, 3>{1.0F, 2.0F, 3.0F}));
  EXPECT_EQ(op.window, (std::array<float, 2>{4.0F, 5.0F}));
  EXPECT_EQ(op.depth, DD::Image::Chan_Green);
  EXPECT_EQ(op.only, DD::Image::Chan_Blue);
  EXPECT_TRUE(op.mask.all());
}

TEST(StorePass, unlessStored_theOperatorStaysValid) {
  HostBench bench;
  bench.op().validate(true);
  bench.op().calls.clear();
  bench.op().validate(true);
  EXPECT_TRUE(bench.op().calls.empty());
  bench.node.storeKnobs();
  bench.op().validate(true);
  EXPECT_EQ(bench.op().calls, (std::vector<std::string>{"store", "validate(true)"}));
}

TEST(StorePass, otherControlThanMade_isALogicError) {
  HostBench bench;
  bench.op().onStore = [&](smooth::SmoothOp& op) {
    DD::Image::Knob_Closure store(bench.node, false);
    DD::Image::Bool_knob(store, &op.on, "on");
  };
  EXPECT_THROW(bench.node.storeKnobs(), std::logic_error);
}

TEST(Knobs, byScriptName_nullWhereThereIsNone) {
  const HostBench bench;
  EXPECT_EQ(bench.op().knob("gain"), bench.node.knob("gain"));
  EXPECT_TRUE(bench.op().knob("gain")->is("gain"));
  EXPECT_EQ(bench.op().knob("nothing"), nullptr);
  EXPECT_EQ(bench.op().knob(""), nullptr) << "tabs and texts have no name";
  EXPECT_EQ(bench.op().knob(nullptr), nullptr);
}

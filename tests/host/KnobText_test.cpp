#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "host/HostBench.h"

using DD::Image::Knob;
using smooth::HostBench;

namespace {

/// The value as text after `text` was set; "refused" if it was not taken.
std::string after(Knob& knob, const std::string& text) {
  return knob.set_text(text.c_str()) ? knob.valueText() : "refused";
}

}  // namespace

TEST(KnobText, everyValueAndDefault_readsBackAsItself) {
  const HostBench bench;
  int numbered = 0;
  for (const auto& knob : bench.node.knobs()) {
    if (knob->type() == Knob::Type::Decoration) continue;
    ++numbered;
    EXPECT_EQ(knob->valueText(), knob->defaultText()) << knob->name();
    const std::string text = knob->defaultText();
    EXPECT_EQ(after(*knob, text), text) << knob->name();
  }
  EXPECT_EQ(numbered, 10);
}

TEST(KnobText, number_isTheShortestThatReadsBack) {
  const HostBench bench;
  Knob& gain = bench.knob("gain");
  for (const float value : {0.1F, 1.0F / 3.0F, 0.165F, 3.0e38F, 1.0e-40F, -0.0F, 123456.78F}) {
    gain.set_value(static_cast<double>(value));
    const std::string text = gain.valueText();
    gain.set_value(7.0);
    ASSERT_TRUE(gain.set_text(text.c_str())) << text;
    EXPECT_EQ(static_cast<float>(gain.get_value()), value) << text;
    EXPECT_LE(text.size(), 13U) << text;
  }
  EXPECT_EQ(after(gain, "0.165"), "0.165");
  EXPECT_EQ(after(gain, "+2.5"), "2.5");
}

TEST(KnobText, doubleBeyondFloatDigits_readsBackExactly) {
  const HostBench bench;
  Knob& offset = bench.knob("offset");
  const double value = 1.0 / 3.0;
  offset.set_value(value);
  ASSERT_TRUE(offset.set_text(offset.valueText().c_str()));
  EXPECT_EQ(offset.get_value(), value);
}

TEST(KnobText, notANumber_isRefusedAndChangesNothing) {
  const HostBench bench;
  Knob& gain = bench.knob("gain");
  gain.set_value(0.75);
  for (const char* text :
       {"", " ", "x", "1x", "nan", "inf", "-inf", "1e400", "1e39", "+-1", "0x10", "1 2", "1;2"}) {
    EXPECT_FALSE(gain.set_text(text)) << text;
    EXPECT_EQ(gain.get_value(), 0.75) << text;
  }
  EXPECT_FALSE(gain.set_text(nullptr));
}

TEST(KnobText, severalNumbers_separatedByBlanksOrCommasInBracesOrNot) {
  const HostBench bench;
  Knob& tint = bench.knob("tint");
  for (const char* text : {"0.5 1 2", "0.5,1,2", "{0.5 1 2}", " { 0.5, 1 ,2 } ", "0.5\t1\n2"}) {
    tint.set_value(0.0);
    ASSERT_TRUE(tint.set_text(text)) << text;
    EXPECT_EQ(tint.valueText(), "0.5 1 2") << text;
  }
}

TEST(KnobText, oneNumberForSeveralComponents_fillsAll) {
  const HostBench bench;
  EXPECT_EQ(after(bench.knob("tint"), "0.5"), "0.5 0.5 0.5");
}

TEST(KnobText, wrongCountOfNumbers_isRefused) {
  const HostBench bench;
  Knob& tint = bench.knob("tint");
  EXPECT_EQ(after(tint, "1 2"), "refused");
  EXPECT_EQ(after(tint, "1 2 3 4"), "refused");
  EXPECT_EQ(after(tint, "1 nan 3"), "refused");
  EXPECT_EQ(tint.valueText(), tint.defaultText());
}

TEST(KnobText, wholeNumber_truncatesAndHasNoExponent) {
  HostBench bench;
  Knob& repeats = bench.knob("repeats");
  EXPECT_EQ(after(repeats, "3.7"), "3");
  repeats.clear_flag(Knob::FORCE_RANGE);
  EXPECT_EQ(after(repeats, "1000000"), "1000000");
  EXPECT_EQ(after(repeats, "-3.7"), "-3");
}

TEST(KnobText, boolean_takesDigitsAndWords) {
  const HostBench bench;
  Knob& on = bench.knob("on");
  EXPECT_EQ(after(on, "0"), "false");
  EXPECT_EQ(after(on, "1"), "true");
  EXPECT_EQ(after(on, "false"), "false");
  EXPECT_EQ(after(on, "true"), "true");
  for (const char* text : {"2", "yes", "TRUE", "", "0.0"})
    EXPECT_EQ(after(on, text), "refused") << text;
}

TEST(KnobText, choice_takesExactLabelOrIndex) {
  const HostBench bench;
  Knob& method = bench.knob("method");
  EXPECT_EQ(after(method, "middle"), "middle");
  EXPECT_EQ(after(method, "0"), "mean");
  EXPECT_EQ(after(method, "1"), "middle");
  for (const char* text : {"Middle", "mid", "2", "-1", "0.5", ""})
    EXPECT_EQ(after(method, text), "refused") << text;
  EXPECT_EQ(method.get_value(), 1.0);
}

TEST(KnobText, channel_takesFullAndShortNames) {
  const HostBench bench;
  Knob& depth = bench.knob("depth");
  EXPECT_EQ(after(depth, "rgba.red"), "rgba.red");
  EXPECT_EQ(after(depth, "depth.Z"), "depth.Z");
  EXPECT_EQ(after(depth, "none"), "none");
  EXPECT_EQ(after(depth, "R"), "rgba.red");
  EXPECT_EQ(after(depth, "G"), "rgba.green");
  EXPECT_EQ(after(depth, "B"), "rgba.blue");
  EXPECT_EQ(after(depth, "A"), "rgba.alpha");
  EXPECT_EQ(after(depth, "Z"), "depth.Z");
  EXPECT_EQ(depth.channel(), DD::Image::Chan_Z);
  EXPECT_EQ(after(depth, "no.such"), "refused");
  EXPECT_EQ(after(depth, "R G"), "refused");
  EXPECT_EQ(depth.channel(), DD::Image::Chan_Z);
}

TEST(KnobText, mask_takesSetsLayersAndLists) {
  const HostBench bench;
  Knob& mask = bench.knob("mask");
  DD::Image::getChannel("knobtext.a");
  DD::Image::getChannel("knobtext.b");
  EXPECT_EQ(after(mask, "rgba"), "rgba");
  EXPECT_EQ(after(mask, "rgb"), "rgb");
  EXPECT_EQ(after(mask, "none"), "none");
  EXPECT_EQ(after(mask, "all"), "all");
  EXPECT_TRUE(mask.mask().all());
  EXPECT_EQ(after(mask, "alpha"), "rgba.alpha");
  EXPECT_EQ(after(mask, "knobtext"), "knobtext.a,knobtext.b");
  EXPECT_EQ(after(mask, "R,A"), "rgba.red,rgba.alpha");
  EXPECT_EQ(after(mask, "{rgba.red depth.Z}"), "rgba.red,depth.Z");
  EXPECT_EQ(after(mask, "rgba.red,no.such"), "refused");
  EXPECT_EQ(after(mask, ""), "refused");
  EXPECT_EQ(mask.valueText(), "rgba.red,depth.Z");
}

TEST(KnobText, decoration_takesNoTextAndShowsItsOwn) {
  const HostBench bench;
  Knob& tab = *bench.node.knobs().front();
  EXPECT_EQ(after(tab, "1"), "refused");
  EXPECT_EQ(tab.valueText(), "");
  EXPECT_EQ(bench.node.knobs()[6]->valueText(), "of the result");
  EXPECT_EQ(bench.node.knobs().back()->valueText(), "the end");
}

TEST(KnobText, defaultOutsideTheChoices_isShownByItsNumber) {
  Knob::Declaration declaration;
  declaration.type = Knob::Type::Choice;
  declaration.kind = "Enumeration_knob";
  declaration.choices = {"a", "b"};
  declaration.values = {7.0};
  EXPECT_EQ(Knob(declaration).defaultText(), "7");
}

#include "DDImage/Knob.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "host/HostBench.h"

using DD::Image::Knob;
using smooth::HostBench;

TEST(Knob, setValue_setsOneComponentOrAll) {
  const HostBench bench;
  Knob& tint = bench.knob("tint");
  tint.set_value(0.5, 1);
  EXPECT_EQ(tint.valueText(), "1 0.5 0.25");
  tint.set_value(3.0);
  EXPECT_EQ(tint.valueText(), "3 3 3");
  tint.set_value(9.0, 3);
  EXPECT_EQ(tint.valueText(), "3 3 3") << "there is no fourth component";
  EXPECT_EQ(tint.get_value(3), 0.0);
  EXPECT_EQ(tint.get_value(-1), 0.0);
}

TEST(Knob, setValues_setsTheFirstComponents) {
  const HostBench bench;
  Knob& tint = bench.knob("tint");
  const std::array<float, 2> values = {4.0F, 5.0F};
  tint.set_values(values.data(), 2);
  EXPECT_EQ(tint.valueText(), "4 5 0.25");
}

TEST(Knob, setValueNotFinite_isLeftAlone) {
  const HostBench bench;
  for (const char* name : {"gain", "repeats", "on", "method", "depth", "window"}) {
    Knob& knob = bench.knob(name);
    const std::string before = knob.valueText();
    knob.set_value(std::numeric_limits<double>::quiet_NaN());
    knob.set_value(std::numeric_limits<double>::infinity());
    knob.set_value(-std::numeric_limits<double>::infinity());
    EXPECT_EQ(knob.valueText(), before) << name;
  }
}

TEST(Knob, setValueBeyondTheVariable_isLeftAlone) {
  const HostBench bench;
  Knob& repeats = bench.knob("repeats");
  repeats.clear_flag(Knob::FORCE_RANGE);
  repeats.set_value(3e9);
  EXPECT_EQ(repeats.get_value(), 2.0);
  repeats.set_value(-2147483648.0);
  EXPECT_EQ(repeats.get_value(), -2147483648.0);
  Knob& gain = bench.knob("gain");
  gain.set_value(1e39);
  EXPECT_EQ(gain.get_value(), 1.0);
  Knob& offset = bench.knob("offset");
  offset.set_value(1e39);
  EXPECT_EQ(offset.get_value(), 1e39) << "its variable is a double";
  Knob& depth = bench.knob("depth");
  depth.set_value(1024.0);
  depth.set_value(-1.0);
  EXPECT_EQ(depth.channel(), DD::Image::Chan_Z);
}

TEST(Knob, setValueOnWholeNumber_truncates) {
  const HostBench bench;
  Knob& repeats = bench.knob("repeats");
  repeats.set_value(3.7);
  EXPECT_EQ(repeats.get_value(), 3.0);
}

TEST(Knob, forcedRange_clampsValuesAndTexts) {
  const HostBench bench;
  Knob& repeats = bench.knob("repeats");
  repeats.set_value(100.0);
  EXPECT_EQ(repeats.get_value(), 9.0);
  repeats.set_value(0.0);
  EXPECT_EQ(repeats.get_value(), 1.0);
  ASSERT_TRUE(repeats.set_text("1e30"));
  EXPECT_EQ(repeats.get_value(), 9.0);
  Knob& window = bench.knob("window");
  ASSERT_TRUE(window.set_text("-5 2000"));
  EXPECT_EQ(window.valueText(), "0 1000");
}

TEST(Knob, rangeWithoutForce_isForTheSliderOnly) {
  const HostBench bench;
  Knob& gain = bench.knob("gain");
  gain.set_value(-7.5);
  EXPECT_EQ(gain.get_value(), -7.5);
}

TEST(Knob, choice_staysWithinItsLabels) {
  const HostBench bench;
  Knob& method = bench.knob("method");
  method.set_value(17.0);
  EXPECT_EQ(method.get_value(), 1.0);
  method.set_value(-3.0);
  EXPECT_EQ(method.get_value(), 0.0);
}

TEST(Knob, boolean_isZeroOrOne) {
  const HostBench bench;
  Knob& on = bench.knob("on");
  on.set_value(0.25);
  EXPECT_EQ(on.get_value(), 1.0);
  on.set_value(0.0);
  EXPECT_EQ(on.get_value(), 0.0);
}

TEST(Knob, disabled_keepsItsValueAndTakesOthers) {
  const HostBench bench;
  Knob& gain = bench.knob("gain");
  gain.disable();
  EXPECT_FALSE(gain.isEnabled());
  EXPECT_EQ(gain.get_value(), 1.0);
  gain.set_value(0.5);
  EXPECT_EQ(gain.get_value(), 0.5);
  gain.enable();
  EXPECT_TRUE(gain.isEnabled());
  gain.enable(false);
  EXPECT_NE(gain.flags() & Knob::DISABLED, 0U);
}

TEST(Knob, visibility_isApartFromEnabling) {
  const HostBench bench;
  Knob& gain = bench.knob("gain");
  gain.hide();
  EXPECT_FALSE(gain.isVisible());
  EXPECT_TRUE(gain.isEnabled());
  gain.show();
  EXPECT_TRUE(gain.isVisible());
  gain.visible(false);
  EXPECT_FALSE(gain.isVisible());
}

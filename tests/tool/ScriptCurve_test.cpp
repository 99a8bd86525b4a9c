#include "controls/ScriptCurve.h"

#include <gtest/gtest.h>

#include "controls/NodeScript.h"

namespace drevintool {
namespace {

double at(const std::string& text, double frame) {
  const auto curve = parseScriptCurve(text);
  EXPECT_TRUE(curve) << text;
  return curve ? curve->curve.at(frame) : -1.0;
}

bool straightened(const std::string& text) {
  const auto curve = parseScriptCurve(text);
  EXPECT_TRUE(curve) << text;
  return curve && curve->straightened;
}

TEST(ScriptCurve, linearKeys_areLines) {
  for (const char* mode : {"L", "i"}) {
    const std::string text = std::string("curve ") + mode + " x1 2 x5 10";
    EXPECT_EQ(at(text, 2), 4.0);
    EXPECT_FALSE(straightened(text));
  }
}

TEST(ScriptCurve, constantKeys_hold) {
  EXPECT_EQ(at("curve K x1 2 x5 10", 4.9), 2.0);
  EXPECT_FALSE(straightened("curve K x1 2 x5 10"));
}

TEST(ScriptCurve, smoothKeys_areStraightenedAndTold) {
  EXPECT_EQ(at("curve x1 2 x5 10", 2), 4.0);
  EXPECT_TRUE(straightened("curve x1 2 x5 10"));
  EXPECT_TRUE(straightened("curve C x1 2 x5 10"));
  EXPECT_TRUE(straightened("curve x1 2 s0.5 t-1 x5 10"));
}

TEST(ScriptCurve, oneKey_isNeverSmooth) {
  EXPECT_FALSE(straightened("curve x1 2"));
  EXPECT_EQ(at("curve x1 2", 100), 2.0);
}

TEST(ScriptCurve, letters_holdForTheKeysBehindThem) {
  const std::string text = "curve K x1 2 L x3 4 x5 8";
  EXPECT_EQ(at(text, 2), 2.0);
  EXPECT_EQ(at(text, 4), 6.0);
  EXPECT_FALSE(straightened(text));
  EXPECT_FALSE(straightened("curve L x1 2 C x3 4"));
}

TEST(ScriptCurve, valuesWithoutAFrame_areOneFrameApart) {
  EXPECT_EQ(at("curve L x10 1 2 3", 12), 3.0);
  EXPECT_EQ(at("curve L x10 1 2 3", 10.5), 1.5);
}

TEST(ScriptCurve, negativeFrames_areFrames) {
  EXPECT_EQ(at("curve L x-5 1 x5 2", 0), 1.5);
}

TEST(ScriptCurve, otherTexts_areNone) {
  for (const char* text :
       {"", "curve", "curves x1 2", "2.7", "parent.a", "curve x1", "curve x1 a", "curve x1 2 x1 3",
        "curve x5 1 x1 2", "curve x1 nan", "curve xnan 1", "curve x1 1e999", "curve x1e300 1",
        "curve x1 {2}", "curve x1 2 foo", "curve+1", "curve x1 2 s", "curve x1 2 sx"}) {
    const auto curve = parseScriptCurve(text);
    if (std::string(text) == "curve x1 2 s") {
      EXPECT_TRUE(curve);  // a letter of a mode that is not known
      continue;
    }
    EXPECT_FALSE(curve) << text;
  }
}

TEST(ScriptCurve, text_readsBack) {
  const ControlCurve curve({{-3.0, 0.1, false}, {1.5, 2.7, true}, {48.0, 1e-20, false}});
  EXPECT_EQ(scriptCurveText(curve), "curve L x-3 0.1 K x1.5 2.7 L x48 1e-20");
  const auto back = parseScriptCurve(scriptCurveText(curve));
  ASSERT_TRUE(back);
  for (const double frame : {-10.0, -3.0, 0.0, 1.5, 20.0, 48.0, 100.0})
    EXPECT_EQ(back->curve.at(frame), curve.at(frame)) << frame;
}

TEST(ScriptCurve, textOfFloatsAndLargeNumbers_readsBackToTheLastDigit) {
  // 88888888 is a single precision value that "8.888889e+07" spells too, as another double; the
  // frames are one and two, though they are the same in single precision.
  const ControlCurve curve(
      {{0.1, 88888888.0, false}, {static_cast<double>(0.1F), 888888888888.5, false}});
  const auto back = parseScriptCurve(scriptCurveText(curve));
  ASSERT_TRUE(back);
  ASSERT_EQ(back->curve.keys().size(), 2U);
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(back->curve.keys()[i].frame, curve.keys()[i].frame) << i;
    EXPECT_EQ(back->curve.keys()[i].value, curve.keys()[i].value) << i;
  }
}

}  // namespace
}  // namespace drevintool

#include "controls/ControlCurve.h"

#include <gtest/gtest.h>

namespace drevintool {
namespace {

TEST(ControlCurve, betweenKeys_runsInALine) {
  const ControlCurve curve({{1.0, 2.0, false}, {5.0, 10.0, false}, {6.0, 0.0, false}});
  EXPECT_DOUBLE_EQ(curve.at(2.0), 4.0);
  EXPECT_DOUBLE_EQ(curve.at(4.5), 9.0);
  EXPECT_DOUBLE_EQ(curve.at(5.5), 5.0);
}

TEST(ControlCurve, atKeys_isTheirValueExactly) {
  const ControlCurve curve({{1.0, 0.1, false}, {3.0, 0.7, false}, {7.0, 0.3, false}});
  EXPECT_EQ(curve.at(1.0), 0.1);
  EXPECT_EQ(curve.at(3.0), 0.7);
  EXPECT_EQ(curve.at(7.0), 0.3);
}

TEST(ControlCurve, outsideItsKeys_isHeld) {
  const ControlCurve curve({{-5.0, 2.7, false}, {48.0, 24.0, false}});
  EXPECT_EQ(curve.at(-100.0), 2.7);
  EXPECT_EQ(curve.at(1000.0), 24.0);
}

TEST(ControlCurve, constantKeys_holdUntilTheNext) {
  const ControlCurve curve({{1.0, 2.0, true}, {5.0, 10.0, false}, {7.0, 20.0, true}});
  EXPECT_EQ(curve.at(4.999), 2.0);
  EXPECT_EQ(curve.at(5.0), 10.0);
  EXPECT_EQ(curve.at(6.0), 15.0);
}

TEST(ControlCurve, oneKey_isOneValue) {
  EXPECT_EQ(ControlCurve({{10.0, 3.0, false}}).at(1.0), 3.0);
  EXPECT_EQ(ControlCurve(3.0).at(-7.0), 3.0);
  EXPECT_FALSE(ControlCurve(3.0).varies());
}

TEST(ControlCurve, hugeValues_stayFinite) {
  const ControlCurve curve({{0.0, -3e38, false}, {2.0, 3e38, false}});
  EXPECT_EQ(curve.at(1.0), 0.0);
}

}  // namespace
}  // namespace drevintool

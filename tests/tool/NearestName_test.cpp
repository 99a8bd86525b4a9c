#include "terminal/NearestName.h"

#include <gtest/gtest.h>

namespace drevintool {
namespace {

const std::vector<std::string> kNames = {"focalPlane", "focalLength", "fStop", "filmFormat"};

TEST(NearestName, oneLetterLeftOut_findsIt) {
  EXPECT_EQ(nearestName("focalPlan", kNames), "focalPlane");
}

TEST(NearestName, neighboursSwapped_findsIt) {
  EXPECT_EQ(nearestName("fSotp", kNames), "fStop");
}

TEST(NearestName, letterCaseOnly_beatsOtherEdits) {
  EXPECT_EQ(nearestName("FSTOP", {"FSTAP", "fStop"}), "FSTAP");
  EXPECT_EQ(nearestName("fstop", {"fstoq", "fStop"}), "fStop");
}

TEST(NearestName, nothingAlike_isEmpty) {
  EXPECT_EQ(nearestName("zzzzzzzz", kNames), "");
}

TEST(NearestName, noNames_isEmpty) {
  EXPECT_EQ(nearestName("fStop", {}), "");
}

TEST(NearestName, equalDistance_takesTheFirst) {
  EXPECT_EQ(nearestName("ab", {"ac", "ad"}), "ac");
}

TEST(NearestName, emptyName_isEmpty) {
  EXPECT_EQ(nearestName("", kNames), "");
}

}  // namespace
}  // namespace drevintool

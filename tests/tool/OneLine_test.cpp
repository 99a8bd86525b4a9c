#include "terminal/OneLine.h"

#include <gtest/gtest.h>

namespace drevintool {
namespace {

TEST(OneLine, plainAndAccentedText_stays) {
  EXPECT_EQ(oneLine("tür 光.exr"), "tür 光.exr");
}

TEST(OneLine, lineBreaksAndTabs_becomeBlanks) {
  EXPECT_EQ(oneLine("a\nb\r\tc"), "a b  c");
}

TEST(OneLine, controlCharacters_becomeQuestionMarks) {
  EXPECT_EQ(oneLine("a\033[0mb\x7F"), "a?[0mb?");
}

TEST(OneLine, brokenUtf8_becomesQuestionMarks) {
  EXPECT_EQ(oneLine("\xFF"
                    "a\xC3"),
            "?a?");
  EXPECT_EQ(oneLine("\xC0\x80"), "??");
  EXPECT_EQ(oneLine("\xED\xA0\x80"), "???");
}

TEST(OneLine, emptyText_staysEmpty) {
  EXPECT_EQ(oneLine(""), "");
}

}  // namespace
}  // namespace drevintool

#include "terminal/NumberText.h"

#include <gtest/gtest.h>

namespace drevintool {
namespace {

TEST(ParseNumber, decimalForms_areTaken) {
  EXPECT_EQ(parseNumber("2.5"), 2.5);
  EXPECT_EQ(parseNumber("-3"), -3.0);
  EXPECT_EQ(parseNumber("1e3"), 1000.0);
  EXPECT_EQ(parseNumber(".5"), 0.5);
  EXPECT_EQ(parseNumber("+5"), 5.0);
}

TEST(ParseNumber, notWhollyANumber_isNothing) {
  for (const char* text : {"", " 1", "1 ", "1x", "x", "0x10", "--1", "1,2", "1e"}) {
    EXPECT_FALSE(parseNumber(text)) << text;
  }
}

TEST(ParseNumber, signsAlone_areNothing) {
  for (const char* text : {"+", "-", "+-5", "-+5", "++5", "+ 5"})
    EXPECT_FALSE(parseNumber(text)) << text;
}

TEST(ParseNumber, notFiniteOrTooLarge_isNothing) {
  for (const char* text : {"nan", "inf", "-inf", "1e999", "-1e999", "1e39"}) {
    EXPECT_FALSE(parseNumber(text)) << text;
  }
}

TEST(ParseInteger, wholeNumbersOnly) {
  EXPECT_EQ(parseInteger("16"), 16);
  EXPECT_EQ(parseInteger("-1"), -1);
  for (const char* text : {"", "6.5", "6.0", "99999999999", "six"}) {
    EXPECT_FALSE(parseInteger(text)) << text;
  }
}

TEST(NumberText, singlePrecisionValue_comesOutShort) {
  EXPECT_EQ(numberText(static_cast<double>(0.1F)), "0.1");
  EXPECT_EQ(numberText(256.0), "256");
}

TEST(NumberText, doubleValue_keepsItsDigits) {
  EXPECT_EQ(numberText(0.1), "0.1");
}

TEST(ExactNumberText, singlePrecisionValue_keepsTheDigitsOfTheDouble) {
  EXPECT_EQ(exactNumberText(0.1), "0.1");
  EXPECT_EQ(exactNumberText(88888888.0), "88888888");
  EXPECT_EQ(parseNumber(exactNumberText(static_cast<double>(0.1F))), static_cast<double>(0.1F));
}

TEST(TidyNumber, singlePrecisionValue_isItsShortDecimal) {
  EXPECT_EQ(tidyNumber(static_cast<double>(24.89F)), 24.89);
  EXPECT_EQ(tidyNumber(-0.0), -0.0);
}

}  // namespace
}  // namespace drevintool

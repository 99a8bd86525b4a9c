#include "frames/TableLine.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace drevin::bench {
namespace {

TEST(TableLine, everyCell_standsInTheOrderOfTheHead) {
  TableLine line;
  line.figure = "scene";
  line.ours = "2 s";
  line.literal = "66 s";
  line.node = "60 s";
  line.value = "33×";
  line.reach = "25×";
  line.aim = "45×";
  line.error = 0.0306;
  EXPECT_EQ(tableText(line), "| scene | 2 s | 66 s | 60 s | 33× | 25× | 45× | 0.031 |");
}

TEST(TableLine, emptyCells_areDashes) {
  EXPECT_EQ(tableText(TableLine{}), "| – | – | – | – | – | – | – | – |");
}

TEST(TableLine, head_hasAsManyCellsAsALine) {
  const auto bars = [](const std::string& text) {
    return std::count(text.begin(), text.end(), '|');
  };
  EXPECT_EQ(bars(tableHead()), 2 * bars(tableText(TableLine{})));
}

TEST(NumberText, anySize_keepsThreeDigits) {
  EXPECT_EQ(numberText(0.01234), "0.0123");
  EXPECT_EQ(numberText(0.1234), "0.123");
  EXPECT_EQ(numberText(1.234), "1.23");
  EXPECT_EQ(numberText(12.34), "12.3");
  EXPECT_EQ(numberText(123.4), "123");
}

TEST(NumberText, roundsUpToTheNextDecade_losesADecimal) {
  EXPECT_EQ(numberText(9.996), "10.0");
  EXPECT_EQ(numberText(99.96), "100");
}

TEST(NumberText, zero_isZero) {
  EXPECT_EQ(numberText(0.0), "0");
}

TEST(UnitTexts, value_isFollowedByItsUnit) {
  EXPECT_EQ(secondsText(1.5), "1.50 s");
  EXPECT_EQ(timesText(120.0), "120×");
  EXPECT_EQ(percentText(0.0525), "5.2 %");
  EXPECT_EQ(gigabytesText(3.5e8), "0.35 GB");
}

}  // namespace
}  // namespace drevin::bench

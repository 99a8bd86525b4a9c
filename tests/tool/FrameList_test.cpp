#include "sequence/FrameList.h"

#include <gtest/gtest.h>

#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

using Frames = std::vector<int>;

std::string failureOf(const std::string& text) {
  try {
    parseFrameList(text);
  } catch (const ToolError& error) {
    EXPECT_EQ(error.code(), ExitCode::Usage);
    return error.what();
  }
  ADD_FAILURE() << "no failure: " << text;
  return {};
}

TEST(FrameList, singleFrames_keepTheirOrder) {
  EXPECT_EQ(parseFrameList("12"), Frames{12});
  EXPECT_EQ(parseFrameList("3,1,2"), (Frames{3, 1, 2}));
}

TEST(FrameList, ranges_includeBothEnds) {
  EXPECT_EQ(parseFrameList("1-4"), (Frames{1, 2, 3, 4}));
  EXPECT_EQ(parseFrameList("7-7"), Frames{7});
}

TEST(FrameList, steps_areCountedFromTheFirst) {
  EXPECT_EQ(parseFrameList("1-8x3"), (Frames{1, 4, 7}));
  EXPECT_EQ(parseFrameList("1-3x100"), Frames{1});
}

TEST(FrameList, descendingRanges_descend) {
  EXPECT_EQ(parseFrameList("130-127"), (Frames{130, 129, 128, 127}));
  EXPECT_EQ(parseFrameList("10-1x4"), (Frames{10, 6, 2}));
}

TEST(FrameList, negativeNumbers_areFrames) {
  EXPECT_EQ(parseFrameList("-5"), Frames{-5});
  EXPECT_EQ(parseFrameList("-5--3"), (Frames{-5, -4, -3}));
  EXPECT_EQ(parseFrameList("-1-1"), (Frames{-1, 0, 1}));
  EXPECT_EQ(parseFrameList("1--1"), (Frames{1, 0, -1}));
}

TEST(FrameList, duplicates_areKeptOnceWhereTheyCameFirst) {
  EXPECT_EQ(parseFrameList("2,1-3,2"), (Frames{2, 1, 3}));
}

TEST(FrameList, mixedPieces_followOneAnother) {
  EXPECT_EQ(parseFrameList("1-5x2, 9, 12-11"), (Frames{1, 3, 5, 9, 12, 11}));
}

TEST(FrameList, stepOfNothing_isRefused) {
  EXPECT_NE(failureOf("10-1x0").find("'10-1x0'"), std::string::npos);
  EXPECT_NE(failureOf("1-10x-2").find("'1-10x-2'"), std::string::npos);
  EXPECT_NE(failureOf("1-10x").find("'1-10x'"), std::string::npos);
}

TEST(FrameList, piecesThatAreNone_areNamed) {
  for (const char* piece : {"a", "1-", "-", "--1", "1-2-3", "1.5", "1x2", "x2", "0x10", "1 2"}) {
    EXPECT_NE(failureOf(std::string("1,") + piece).find("'" + std::string(piece) + "'"),
              std::string::npos)
        << piece;
  }
}

TEST(FrameList, emptyListsAndPieces_areRefused) {
  for (const char* text : {"", ",", "1,,2", "1,"})
    EXPECT_NE(failureOf(text).find("--frames"), std::string::npos) << text;
}

TEST(FrameList, longestList_isTakenAndOneMoreIsNot) {
  EXPECT_EQ(parseFrameList("1-1000000").size(), 1000000U);
  EXPECT_NE(failureOf("1-1000001").find("more than 1000000"), std::string::npos);
  EXPECT_NE(failureOf("1-600000,1-600000").find("more than 1000000"), std::string::npos);
}

TEST(FrameList, framesFarAway_areRefusedWithoutCountingToThem) {
  EXPECT_NE(failureOf("-1000000000-1000000000").find("more than"), std::string::npos);
  EXPECT_NE(failureOf("2147483647").find("too far"), std::string::npos);
  EXPECT_NE(failureOf("-2147483648").find("too far"), std::string::npos);
  EXPECT_NE(failureOf("99999999999").find("no frame"), std::string::npos);
  EXPECT_EQ(parseFrameList("-1000000000-1000000000x2147483647"), Frames{-1000000000});
}

TEST(FrameListText, runs_becomeRanges) {
  EXPECT_EQ(frameListText({}), "");
  EXPECT_EQ(frameListText({4}), "4");
  EXPECT_EQ(frameListText({4, 5}), "4,5");
  EXPECT_EQ(frameListText({3, 1, 2}), "1-3");
  EXPECT_EQ(frameListText({1, 2, 3, 5, 7, 9, 20}), "1-3,5-9x2,20");
  EXPECT_EQ(frameListText({-5, -4, -3, -3}), "-5--3");
}

TEST(FrameListText, anyFrames_readBack) {
  const std::vector<Frames> lists = {{-3, 0, 3, 4, 5, 9}, {1, 2, 4, 8, 16}, {-2, -1, 0, 1, 10, 20}};
  for (const Frames& frames : lists)
    EXPECT_EQ(parseFrameList(frameListText(frames)), frames);
}

}  // namespace
}  // namespace drevintool

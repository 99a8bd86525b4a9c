#include "DDImage/Box.h"

#include <gtest/gtest.h>

#include "DDImage/Format.h"
#include "DDImage/IopInfo.h"

using DD::Image::Box;
using DD::Image::Format;
using DD::Image::FormatPair;
using DD::Image::IopInfo;

TEST(Box, default_isEmpty) {
  EXPECT_TRUE(Box().empty());
  EXPECT_EQ(Box().w(), 0);
  EXPECT_EQ(Box().h(), 0);
}

TEST(Box, edges_rightAndTopAreExclusive) {
  const Box box(-2, 3, 5, 9);
  EXPECT_EQ(box.w(), 7);
  EXPECT_EQ(box.h(), 6);
  EXPECT_EQ(box.clampx(100), 4);
  EXPECT_EQ(box.clampx(-100), -2);
  EXPECT_EQ(box.clampx(0), 0);
  EXPECT_EQ(box.clampy(100), 8);
  EXPECT_EQ(box.clampy(-100), 3);
}

TEST(Box, merge_isTheSmallestBoxAroundBoth) {
  Box box(0, 0, 2, 2);
  box.merge(Box(5, -3, 6, 1));
  EXPECT_EQ(box, Box(0, -3, 6, 2));
}

TEST(Box, mergeWithEmpty_addsNothing) {
  Box box(4, 4, 6, 6);
  box.merge(Box(100, 100, 100, 200));
  EXPECT_EQ(box, Box(4, 4, 6, 6));
  Box empty;
  empty.merge(box);
  EXPECT_EQ(empty, box) << "the empty box at the origin must not pull the corner there";
}

TEST(Box, intersectApart_isTheEmptyDefaultBox) {
  Box box(0, 0, 2, 2);
  box.intersect(5, 5, 7, 7);
  EXPECT_EQ(box, Box());
}

TEST(Box, intersect_isWhatBothHave) {
  Box box(0, 0, 10, 10);
  box.intersect(5, -2, 20, 3);
  EXPECT_EQ(box, Box(5, 0, 10, 3));
}

TEST(Box, expand_movesEveryEdgeOutwards) {
  Box box(1, 2, 3, 4);
  box.expand(2);
  EXPECT_EQ(box, Box(-1, 0, 5, 6));
}

TEST(Format, cornerIsTheOrigin) {
  const Format format(640, 480, 2.0);
  EXPECT_EQ(Box(format), Box(0, 0, 640, 480));
  EXPECT_EQ(format.width(), 640);
  EXPECT_EQ(format.height(), 480);
  EXPECT_DOUBLE_EQ(format.pixel_aspect(), 2.0);
}

TEST(IopInfo, clipmove_isThePlainSumOfEdges) {
  IopInfo info;
  info.format(Format(10, 10));
  info.set(0, 0, 10, 10);
  info.clipmove(-3, -2, 4, 5);
  EXPECT_EQ(Box(info), Box(-3, -2, 14, 15)) << "no edge is clipped to the format";
}

TEST(IopInfo, formats_workingAndFullSizeAreApart) {
  IopInfo info;
  info.full_size_format(Format(20, 20));
  info.format(Format(10, 10));
  EXPECT_EQ(info.format().width(), 10);
  EXPECT_EQ(info.full_size_format().width(), 20);
  info.setFormats(FormatPair(Format(3, 4)));
  EXPECT_EQ(info.format().height(), 4);
  EXPECT_EQ(info.full_size_format().height(), 4);
}

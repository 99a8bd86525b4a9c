#include "sequence/FramePattern.h"

#include <gtest/gtest.h>

namespace drevintool {
namespace {

TEST(FramePattern, signs_padToTheirNumber) {
  EXPECT_EQ(FramePattern("a.####.exr").path(12), "a.0012.exr");
  EXPECT_EQ(FramePattern("a.@@@.exr").path(12), "a.012.exr");
  EXPECT_EQ(FramePattern("a.000#.exr").path(3), "a.0003.exr");
}

TEST(FramePattern, singleSigns_doNotPad) {
  EXPECT_EQ(FramePattern("a#.exr").path(7), "a7.exr");
  EXPECT_EQ(FramePattern("a@.exr").path(1234), "a1234.exr");
}

TEST(FramePattern, percent_isAsPrintfWritesIt) {
  EXPECT_EQ(FramePattern("a.%04d.exr").path(12), "a.0012.exr");
  EXPECT_EQ(FramePattern("a.%d.exr").path(12), "a.12.exr");
}

TEST(FramePattern, longNumbers_areNotCut) {
  EXPECT_EQ(FramePattern("##").path(12345), "12345");
  EXPECT_EQ(FramePattern("%02d").path(12345), "12345");
}

TEST(FramePattern, negativeFrames_countTheirSign) {
  EXPECT_EQ(FramePattern("####").path(-5), "-005");
  EXPECT_EQ(FramePattern("%04d").path(-5), "-005");
  EXPECT_EQ(FramePattern("#").path(-5), "-5");
}

TEST(FramePattern, views_areNamesAndLetters) {
  const FramePattern pattern("%V/a_%v.##.exr");
  EXPECT_TRUE(pattern.hasView());
  EXPECT_TRUE(pattern.hasFrame());
  EXPECT_EQ(pattern.path(3, "left"), "left/a_l.03.exr");
}

TEST(FramePattern, patternOfAFile_isThatFileWhateverItsName) {
  for (const char* name :
       {"a.exr", "a#.exr", "%d@%04d#.exr", "\\#", "\\\\%V", "a\\b.exr", "50%.exr"}) {
    const FramePattern pattern(patternOfFile(name));
    EXPECT_FALSE(pattern.hasFrame() || pattern.hasView()) << name;
    EXPECT_EQ(pattern.path(3, "left"), name);
  }
}

TEST(FramePattern, severalPlaces_areAllFilled) {
  EXPECT_EQ(FramePattern("shot_##/a.####.exr").path(3), "shot_03/a.0003.exr");
  EXPECT_EQ(FramePattern("#@").path(3), "33");
}

TEST(FramePattern, plainPaths_standForThemselves) {
  for (const char* path :
       {"", "a.exr", "100%.exr", "%", "%s", "%4d", "%099d", "%000d", "\\", "a\\b"}) {
    const FramePattern pattern(path);
    EXPECT_FALSE(pattern.hasFrame()) << path;
    EXPECT_FALSE(pattern.hasView()) << path;
    EXPECT_EQ(pattern.path(5, "left"), path);
  }
}

TEST(FramePattern, placesOfOtherPrograms_areFound) {
  EXPECT_EQ(foreignFramePlace("a.%4d.exr"), "%4d");
  EXPECT_EQ(foreignFramePlace("a.%04i.exr"), "%04i");
  EXPECT_EQ(foreignFramePlace("%i"), "%i");
  EXPECT_EQ(foreignFramePlace("a.$F4.exr"), "$F4");
  EXPECT_EQ(foreignFramePlace("a_$F"), "$F");
  EXPECT_EQ(foreignFramePlace("\\%4d.%3d"), "%3d");
}

TEST(FramePattern, otherTexts_areNoPlacesOfOtherPrograms) {
  for (const char* path : {"", "a.exr", "100%.exr", "%", "%s", "%4", "$", "$Frame", "$F_4", "$F4b",
                           "$G4", "F4", "\\%4d", "%04d", "%d", "%V", "####", "\\"})
    EXPECT_EQ(foreignFramePlace(path), "") << path;
}

TEST(FramePattern, backslash_makesAPlainSign) {
  const FramePattern pattern("\\#1 me\\@home \\%d.exr");
  EXPECT_FALSE(pattern.hasFrame());
  EXPECT_EQ(pattern.path(5), "#1 me@home %d.exr");
}

}  // namespace
}  // namespace drevintool

#include "sheet/BitmapFont.h"

#include <gtest/gtest.h>

#include <set>

namespace drevintool {
namespace {

// Seven rows above the base line and two below it.
std::string drawn(char letter) {
  std::string dots;
  for (int row = 0; row < kGlyphHeight; ++row) {
    for (int column = 0; column < kGlyphWidth; ++column)
      dots += glyphHasDot(letter, column, row) ? '#' : '.';
  }
  return dots;
}

bool reachesBelowTheLine(char letter) {
  return drawn(letter).find('#', 7 * kGlyphWidth) != std::string::npos;
}

TEST(BitmapFont, everyPrintableLetter_hasAShapeOfItsOwn) {
  std::set<std::string> shapes;
  for (char letter = ' '; letter <= '~'; ++letter)
    EXPECT_TRUE(shapes.insert(drawn(letter)).second) << letter;
  EXPECT_EQ(shapes.size(), 95U);
}

TEST(BitmapFont, blank_isTheOnlyLetterWithoutDots) {
  EXPECT_EQ(drawn(' ').find('#'), std::string::npos);
  for (char letter = '!'; letter <= '~'; ++letter)
    EXPECT_NE(drawn(letter).find('#'), std::string::npos) << letter;
}

TEST(BitmapFont, descenders_areThoseOfTheAlphabet) {
  std::string below;
  for (char letter = 'A'; letter <= 'z'; ++letter) {
    if (reachesBelowTheLine(letter)) below += letter;
  }
  EXPECT_EQ(below, "_gjpqy");
}

TEST(BitmapFont, columnsAndRowsOutside_haveNoDots) {
  EXPECT_FALSE(glyphHasDot('#', -1, 2));
  EXPECT_FALSE(glyphHasDot('#', kGlyphWidth, 2));
  EXPECT_FALSE(glyphHasDot('#', 0, -1));
  EXPECT_FALSE(glyphHasDot('#', 0, kGlyphHeight));
}

TEST(BitmapFont, unknownBytes_areQuestionMarks) {
  EXPECT_EQ(drawn('\x7F'), drawn('?'));
  EXPECT_EQ(drawn('\xC3'), drawn('?'));
}

TEST(BitmapFont, printableText_hasOneMarkForEachForeignCharacter) {
  EXPECT_EQ(printableText("1/z ~"), "1/z ~");
  EXPECT_EQ(printableText("Blende \xC3\xB6\xE2\x82\xAC 4\n"), "Blende ?? 4?");
}

}  // namespace
}  // namespace drevintool

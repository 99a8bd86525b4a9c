#include "sheet/SheetLayout.h"

#include <gtest/gtest.h>

#include "picture/MemoryBudget.h"
#include "sheet/BitmapFont.h"
#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

SheetContents contentsOf(int columns, std::vector<PixelSize> pictures, const std::string& caption) {
  SheetContents contents;
  contents.columns = columns;
  contents.captions.assign(pictures.size(), {caption});
  contents.pictures = std::move(pictures);
  return contents;
}

TEST(SheetLayout, slots_doNotOverlapAndLieInside) {
  const SheetLayout layout(contentsOf(2, {{100, 50}, {100, 50}, {100, 50}}, "a 1"), 100);
  const auto first = layout.pictureAt(0);
  const auto second = layout.pictureAt(1);
  const auto third = layout.pictureAt(2);
  EXPECT_GE(second.first, first.first + 100);
  EXPECT_EQ(second.second, first.second);
  EXPECT_EQ(third.first, first.first);
  const int captionEnd = layout.captionAt(0, 0).second + kGlyphHeight * layout.dotSize();
  EXPECT_GE(layout.captionAt(0, 0).second, first.second + 50);
  EXPECT_GE(third.second, captionEnd);
  EXPECT_LT(second.first + 100, layout.size().width);
  EXPECT_LT(layout.captionAt(2, 0).second + kGlyphHeight, layout.size().height);
}

TEST(SheetLayout, wideCaption_widensTheSlots) {
  const std::string caption(40, 'x');
  const SheetLayout layout(contentsOf(2, {{16, 16}, {16, 16}}, caption), 16);
  EXPECT_GE(layout.pictureAt(1).first, layout.pictureAt(0).first + 40 * kGlyphAdvance);
}

TEST(SheetLayout, usefulWidth_makesASheetOfTwoThousandPixels) {
  for (const int columns : {1, 2, 3, 4, 7, 20}) {
    const int width = SheetLayout::usefulWidth(columns);
    const std::vector<PixelSize> pictures(static_cast<std::size_t>(columns), {width, width / 2});
    const SheetLayout layout(contentsOf(columns, pictures, "a 1"), width);
    EXPECT_LE(layout.size().width, 2000) << columns;
    EXPECT_GE(layout.size().width, 1400) << columns;
  }
  EXPECT_EQ(SheetLayout::usefulWidth(1000), 16);
}

TEST(SheetLayout, pictureSize_keepsTheShapeWithSquarePixels) {
  const PixelSize plain = sheetPictureSize({1440, 1080}, 1.0, 480);
  EXPECT_EQ(plain.width, 480);
  EXPECT_EQ(plain.height, 360);
  const PixelSize squeezed = sheetPictureSize({1000, 1000}, 2.0, 500);
  EXPECT_EQ(squeezed.width, 500);
  EXPECT_EQ(squeezed.height, 250);
}

TEST(SheetLayout, pictureSize_isNeverLargerThanThePicture) {
  const PixelSize same = sheetPictureSize({640, 480}, 1.0, 9999);
  EXPECT_EQ(same.width, 640);
  EXPECT_EQ(same.height, 480);
  const PixelSize tall = sheetPictureSize({640, 480}, 0.5, 9999);
  EXPECT_EQ(tall.width, 320);
  EXPECT_EQ(tall.height, 480);
  const PixelSize line = sheetPictureSize({4000, 1}, 1.0, 10);
  EXPECT_EQ(line.height, 1);
}

TEST(SheetLayout, captions_areCutAtSixtyLetters) {
  EXPECT_EQ(shortenedCaption(std::string(60, 'a')), std::string(60, 'a'));
  EXPECT_EQ(shortenedCaption(std::string(61, 'a')), std::string(57, 'a') + "...");
}

TEST(SheetLayout, sheetBeyondTheLimits_isRefusedWithTheRemedy) {
  const auto failureOf = [](std::int64_t width, std::int64_t height,
                            ExitCode code = ExitCode::Usage) -> std::string {
    try {
      checkSheetSize(width, height);
    } catch (const ToolError& error) {
      EXPECT_EQ(error.code(), code);
      return error.what();
    }
    return {};
  };
  EXPECT_EQ(failureOf(100, 100), "");
  EXPECT_NE(failureOf(131073, 1).find("--width"), std::string::npos);
  limitMemory({1, "1B"});
  const std::string beyond = failureOf(100, 100, ExitCode::InputUnreadable);
  EXPECT_NE(beyond.find("more than --max-memory 1B"), std::string::npos) << beyond;
  EXPECT_NE(beyond.find("--width"), std::string::npos) << beyond;
  limitMemory({});
}

}  // namespace
}  // namespace drevintool

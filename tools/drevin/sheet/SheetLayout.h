#pragma once

/// Where pictures and captions stand on a sheet.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "sheet/AreaFilter.h"

namespace drevintool {

/// What the layout has to place: pictures row by row, each with its lines of text.
struct SheetContents {
  int columns = 1;
  std::vector<PixelSize> pictures;
  std::vector<std::vector<std::string>> captions;  ///< printable ASCII, as many as pictures
};

/// All slots of a sheet are alike: a picture at the top left, its caption below it, and a margin
/// around both. Captions that are wider than the pictures make the slots wider.
class SheetLayout {
 public:
  /// `pictureWidth` is what pictures were meant to have; letters grow with it.
  SheetLayout(const SheetContents& contents, int pictureWidth);

  const PixelSize& size() const { return size_; }
  /// Edge length of a letter's dot in pixels.
  int dotSize() const { return dotSize_; }
  /// Left column and top row of a picture, and of a line of its caption.
  std::pair<int, int> pictureAt(std::size_t picture) const;
  std::pair<int, int> captionAt(std::size_t picture, std::size_t line) const;

  /// The width that pictures may have for a sheet of about 2000 pixels, at least 16.
  static int usefulWidth(int columns);

 private:
  int margin() const { return 8 * dotSize_; }

  int columns_;
  int dotSize_;
  PixelSize largest_;  // of the pictures
  PixelSize slot_;
  PixelSize size_;
};

/// A caption's line that is longer than 60 letters, cut and ended by "...".
std::string shortenedCaption(const std::string& text);

/// The size of a picture of `from` pixels of that aspect (width over height of a pixel) at that
/// width, with square pixels. Never larger than the picture in either direction, and at least 1.
PixelSize sheetPictureSize(const PixelSize& from, double pixelAspect, int width);

/// Throws ToolError (Usage) that names --width if a side is more than 131072 pixels or the sheet
/// takes more memory than there is.
void checkSheetSize(std::int64_t width, std::int64_t height);

}  // namespace drevintool

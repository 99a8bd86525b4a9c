#include "sheet/SheetLayout.h"

#include <algorithm>
#include <cmath>

#include "picture/MemoryBudget.h"
#include "sheet/BitmapFont.h"
#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

int textWidth(const std::string& text) {
  return static_cast<int>(text.size()) * kGlyphAdvance;
}

}  // namespace

SheetLayout::SheetLayout(const SheetContents& contents, int pictureWidth)
    : columns_(contents.columns), dotSize_(std::clamp(pictureWidth / 200, 1, 3)) {
  int lines = 0;
  for (const std::vector<std::string>& caption : contents.captions) {
    lines = std::max(lines, static_cast<int>(caption.size()));
    for (const std::string& line : caption)
      slot_.width = std::max(slot_.width, textWidth(line) * dotSize_);
  }
  for (const PixelSize& picture : contents.pictures) {
    largest_.width = std::max(largest_.width, picture.width);
    largest_.height = std::max(largest_.height, picture.height);
  }
  const int captionHeight = (lines * kLineAdvance + kGlyphHeight - kLineAdvance) * dotSize_;
  slot_.width = std::max(slot_.width, largest_.width);
  slot_.height = largest_.height + margin() / 2 + captionHeight;
  const auto pictures = static_cast<int>(contents.pictures.size());
  const int rows = (pictures + columns_ - 1) / columns_;
  const std::int64_t width = margin() + std::int64_t{columns_} * (slot_.width + margin());
  const std::int64_t height = margin() + std::int64_t{rows} * (slot_.height + margin());
  checkSheetSize(width, height);
  size_ = {static_cast<int>(width), static_cast<int>(height)};
}

std::pair<int, int> SheetLayout::pictureAt(std::size_t picture) const {
  const auto place = static_cast<int>(picture);
  return {margin() + place % columns_ * (slot_.width + margin()),
          margin() + place / columns_ * (slot_.height + margin())};
}

std::pair<int, int> SheetLayout::captionAt(std::size_t picture, std::size_t line) const {
  const auto [x, y] = pictureAt(picture);
  const int lines = static_cast<int>(line) * kLineAdvance * dotSize_;
  return {x, y + largest_.height + margin() / 2 + lines};
}

int SheetLayout::usefulWidth(int columns) {
  constexpr int kSheet = 2000;
  constexpr int kMargin = 24;
  constexpr int kLeast = 16;
  return std::max(kLeast, (kSheet - kMargin) / columns - kMargin);
}

std::string shortenedCaption(const std::string& text) {
  constexpr std::size_t kMost = 60;
  return text.size() <= kMost ? text : text.substr(0, kMost - 3) + "...";
}

PixelSize sheetPictureSize(const PixelSize& from, double pixelAspect, int width) {
  const double wide = std::min(
      {static_cast<double>(width), static_cast<double>(from.width), from.width * pixelAspect});
  const double high = wide * from.height / (from.width * pixelAspect);
  const auto whole = [](double side, int most) {
    return std::clamp(static_cast<int>(std::lround(side)), 1, most);
  };
  return {whole(wide, from.width), whole(high, from.height)};
}

void checkSheetSize(std::int64_t width, std::int64_t height) {
  constexpr std::int64_t kMostSide = 131072;
  // The pictures and the sheet that they stand on, three floats a pixel, and what a file is made
  // in.
  constexpr std::int64_t kBytesPerPixel = 3 * 3 * 4;
  const std::string size = std::to_string(width) + " x " + std::to_string(height) + " pixels";
  const std::string remedy = "make its pictures smaller with --width, or fewer";
  if (width > kMostSide || height > kMostSide) {
    throw ToolError(ExitCode::Usage, "the sheet would have " + size + ", more than 131072 in a " +
                                         "direction; " + remedy);
  }
  const auto bytes = static_cast<double>(width * height * kBytesPerPixel);
  const MemoryBudget budget = memoryBudget();
  if (bytes <= static_cast<double>(budget.bytes)) return;
  throw ToolError(ExitCode::InputUnreadable,
                  "the sheet of " + size + " " + beyondBudget(bytes, budget) + ", or " + remedy);
}

}  // namespace drevintool

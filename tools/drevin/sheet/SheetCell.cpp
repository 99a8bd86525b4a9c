#include "sheet/SheetCell.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "picture/FloatSamples.h"

namespace drevintool {
namespace {

int scaledSide(int side, int small, int whole) {
  const double scaled = static_cast<double>(side) * small / whole;
  return std::clamp(static_cast<int>(std::lround(scaled)), 1, side);
}

const OutputChannel* channelOf(const OutputPicture& picture, const char* hostName) {
  for (const OutputChannel& channel : picture.channels) {
    if (channel.hostName == hostName) return &channel;
  }
  return nullptr;
}

RenderArguments withThreads(RenderArguments arguments, unsigned threads) {
  arguments.threads = threads;
  return arguments;
}

}  // namespace

SheetCell::SheetCell(const SheetShare& sheet, const FrameShare& share, std::size_t picture,
                     unsigned threads, FrameProgress progress, SheetMessages& messages,
                     std::function<void(SmallPicture)> keep)
    : FrameJob(share, sheet.task, withThreads(sheet.arguments, threads), std::move(progress),
               sheet.pictures),
      sheet_(sheet),
      picture_(picture),
      messages_(messages),
      keep_(std::move(keep)) {}

std::optional<std::uint64_t> SheetCell::deliver(const OutputPicture& result) {
  constexpr std::array<const char*, 3> kNames = {"rgba.red", "rgba.green", "rgba.blue"};
  const PixelSize from{static_cast<int>(result.box.width()), static_cast<int>(result.box.height())};
  SmallPicture small;
  small.size = {scaledSide(from.width, sheet_.small.width, sheet_.whole.width),
                scaledSide(from.height, sheet_.small.height, sheet_.whole.height)};
  for (std::size_t c = 0; c < small.planes.size(); ++c) {
    const OutputChannel* channel = channelOf(result, kNames[c]);
    small.planes[c] = channel == nullptr
                          ? std::vector<float>(static_cast<std::size_t>(small.size.width) *
                                               static_cast<std::size_t>(small.size.height))
                          : areaFiltered(*floatSamples(channel->samples), from, small.size);
  }
  keep_(std::move(small));
  return std::nullopt;
}

void SheetCell::tellWarning(const std::string& text) {
  messages_.addWarning(picture_, text);
}

void SheetCell::tellUnused(const std::string& text) {
  messages_.addUnused(picture_, text);
}

void SheetCell::tellNote(const std::string& text) {
  messages_.addNote(picture_, text);
}

}  // namespace drevintool

#include "deep/DeepDefocus.h"

#include <cstddef>

namespace drevin {

namespace {

std::vector<int> numbersOf(const std::vector<dvDeepChannel>& channels) {
  std::vector<int> numbers;
  numbers.reserve(channels.size());
  for (const dvDeepChannel& channel : channels)
    numbers.push_back(channel.number);
  return numbers;
}

}  // namespace

dvColumns deepColumns(const dvSplatFrame& frame, int left, int right) {
  return {clampedColumn(left - frame.padding, frame.formatWidth),
          clampedColumn(right + frame.padding, frame.formatWidth)};
}

dvDeepDefocus::dvDeepDefocus(const dvSplatFrame& frame, const dvDeepBlur& background,
                             const dvOutputSpan& out, const std::vector<dvDeepChannel>& channels)
    : background_(background),
      deepColumns_(drevin::deepColumns(frame, out.left, out.right)),
      channels_(channels),
      splatter_(frame, out, numbersOf(channels)) {}

void dvDeepDefocus::splatSourceRow(const dvDeepSourceRow& row) {
  const dvColumns columns = sourceColumns();
  const dvColumns deep = deepColumns_;
  for (int x = columns.left; x < columns.right; ++x) {
    const int clampedX = splatter_.clampColumn(x);
    if (clampedX >= deep.left && clampedX < deep.right) splatPixel(row, x, clampedX);
  }
  splatter_.endSourceRow();
}

void dvDeepDefocus::splatPixel(const dvDeepSourceRow& row, int x, int clampedX) {
  dvSplatSource source;
  source.clampedX = clampedX;
  source.clampedY = row.clampedY;
  source.x = x;
  source.y = row.y;
  const auto pixel = static_cast<std::size_t>(clampedX - row.recordsLeft);
  const std::size_t end = row.records->recordsEnd(pixel);
  for (std::size_t i = row.records->recordsBegin(pixel); i < end; ++i) {
    splatRecord(row, i, x, source);
  }
  const float background = row.records->background(pixel);
  if (background != 0.0F) splatBackground(source, background);
}

void dvDeepDefocus::splatRecord(const dvDeepSourceRow& row, std::size_t record, int x,
                                dvSplatSource source) {
  const dvDeepRecord& sample = row.records->record(record);
  const float* values = row.records->values(record);
  for (std::size_t c = 0; c < channels_.size(); ++c) {
    const dvDeepChannel& channel = channels_[c];
    splatter_.pixel(channel.number) =
        channel.place == dvDeepChannel::flat ? row.flat[c][source.clampedX] : values[channel.place];
  }
  source.coc = splattedCoc(sample.coc, matteValue(row.defocusMatte, x));
  source.slice = sample.slice;
  source.weight = sample.weight;
  source.bloomMatte = matteValue(row.bloomMatte, x);
  source.chromaticMatte = matteValue(row.chromaticMatte, x);
  splatter_.splat(source);
}

void dvDeepDefocus::splatBackground(dvSplatSource source, float weight) {
  for (const dvDeepChannel& channel : channels_)
    splatter_.pixel(channel.number) = 0.0F;
  source.coc = splattedCoc(background_.coc, 1.0F);
  source.slice = background_.slice;
  source.weight = weight;
  source.bloomMatte = 0.0F;
  source.chromaticMatte = 1.0F;
  splatter_.splat(source);
}

}  // namespace drevin

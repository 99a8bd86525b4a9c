#include "deep/DeepDefocus.h"

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
    : deepColumns_(drevin::deepColumns(frame, out.left, out.right)),
      splatter_(frame, out, numbersOf(channels)),
      sources_(channels, background, frame.formatWidth, splatter_.sourceColumns(), deepColumns_) {}

void dvDeepDefocus::splatSourceRow(const dvDeepSourceRow& row) {
  sources_.addRow(row, splatter_);
  splatter_.endSourceRow();
}

}  // namespace drevin

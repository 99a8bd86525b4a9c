#include "node/DeepPlan.h"

#include <algorithm>

#include "DDImage/DeepPlane.h"
#include "node/DeepPixels.h"

namespace drevin {

using DD::Image::Box;
using DD::Image::Channel;
using DD::Image::ChannelSet;
using DD::Image::DeepPlane;
using DD::Image::Row;

namespace {

std::unique_ptr<Row> readRow(DD::Image::Iop& from, int y, const dvColumns& columns,
                             const ChannelSet& channels) {
  auto row = std::make_unique<Row>(columns.left, columns.right);
  row->get(from, y, columns.left, columns.right, channels);
  return row;
}

}  // namespace

dvDeepLine::dvDeepLine(const dvDeepPlan& plan, int y)
    : columns_(deepColumns(plan.frame, plan.left, plan.right)) {
  source_.clampedY = y;
  source_.recordsLeft = columns_.left;
  if (columns_.right <= columns_.left) return;
  readRecords(plan);
  if (!hasSamples()) return;
  readFlat(plan);
  const int reach = plan.frame.padding;
  mattes_ = dvMatteRows(plan.mattes, y, {plan.left - reach, plan.right + reach});
  source_.bloomMatte = mattes_.bloom();
  source_.defocusMatte = mattes_.defocus();
  source_.chromaticMatte = mattes_.chromatic();
}

void dvDeepLine::readFlat(const dvDeepPlan& plan) {
  if (!plan.flatRead.empty()) {
    flat_ = readRow(*plan.image, source_.clampedY, columns_, plan.flatRead);
  }
  for (const dvDeepChannel& channel : plan.channels) {
    const bool flat = channel.place == dvDeepChannel::flat;
    source_.flat.push_back(flat ? (*flat_)[static_cast<Channel>(channel.number)] : nullptr);
  }
}

void dvDeepLine::readRecords(const dvDeepPlan& plan) {
  DeepPlane plane;
  const int y = source_.clampedY;
  const Box box(columns_.left, y, columns_.right, y + 1);
  if (!plan.deep->deepEngine(box, plan.samplesRead, plane)) return;
  records_.assign(plan.modes.size(), dvDeepRecordRow(plan.layout, plan.splatted));
  const ChannelSet& channels = plane.channels();
  const Box& covered = plane.box();
  dvDeepSamples samples;
  std::vector<dvDeepPiece> pieces;
  for (int x = columns_.left; x < columns_.right; ++x) {
    if (covered.contains(Box(x, y, x + 1, y + 1))) {
      const DD::Image::DeepPixel pixel = plane.getPixel(y, x);
      readSamples(dvHostPixel(pixel, channels), plan.layout, samples);
      addPixel(plan, samples, pieces);
    } else {
      for (dvDeepRecordRow& row : records_)
        row.addHole();
    }
  }
}

void dvDeepLine::addPixel(const dvDeepPlan& plan, const dvDeepSamples& samples,
                          std::vector<dvDeepPiece>& pieces) {
  mergeSamples(samples, pieces);
  ++mergedPixels_;
  for (std::size_t mode = 0; mode < plan.modes.size(); ++mode)
    records_[mode].addPixel(samples, pieces, plan.modes[mode]);
}

dvDeepSourceRow dvDeepLine::source(int sourceY, std::size_t mode) const {
  dvDeepSourceRow row(source_);
  row.y = sourceY;
  row.records = &records_[mode];
  return row;
}

dvSplatLine splatLine(const dvDeepPlan& plan, const dvDeepLine& line, int sourceY, std::size_t mode,
                      const dvLineSettings& settings) {
  const dvColumns columns{plan.left - plan.frame.padding, plan.right + plan.frame.padding};
  const dvDeepSources sources(plan.channels, plan.background, plan.frame.formatWidth, columns,
                              deepColumns(plan.frame, plan.left, plan.right));
  const dvDeepSourceRow source = line.source(sourceY, mode);
  // A record more where the background shows.
  dvSplatLineMaker maker(settings, sourceY, source.records->records() + source.records->pixels());
  sources.addRow(source, maker);
  return maker.line();
}

bool makeDeepRow(const dvDeepPlan& plan, std::size_t mode, int y, const dvDeepLineAt& lineAt,
                 const dvDeepTarget& target) {
  dvDeepDefocus defocus(plan.frame, plan.background, {plan.left, y, plan.right}, plan.channels);
  const int reach = plan.frame.padding;
  for (int sourceY = y - reach; sourceY <= y + reach && plan.deep != nullptr; ++sourceY) {
    if (plan.aborted()) return false;
    const dvDeepLine* line = lineAt(std::max(0, std::min(sourceY, plan.formatHeight - 1)));
    if (line == nullptr || !line->hasSamples()) continue;
    defocus.splatSourceRow(line->source(sourceY, mode));
  }
  for (std::size_t place = 0; place < plan.channels.size(); ++place)
    defocus.composite(place, target(place));
  return true;
}

}  // namespace drevin

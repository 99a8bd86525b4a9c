#include "node/FlatPlan.h"

#include <algorithm>

namespace drevin {

using DD::Image::ChannelSet;
using DD::Image::Row;

int dvFlatPlan::rowOf(int sourceY) const {
  return std::max(firstRow, std::min(sourceY, lastRow));
}

dvFlatLine::dvFlatLine(const dvFlatPlan& plan, int y) {
  const int reach = plan.settings.frame.padding;
  const int width = plan.settings.frame.formatWidth;
  const dvColumns columns{plan.left - reach, plan.right + reach};
  const dvColumns depthColumns{clampedColumn(columns.left, width),
                               clampedColumn(columns.right - 1, width) + 1};
  colour_ = std::make_unique<Row>(columns.left, columns.right);
  colour_->get(*plan.image, y, columns.left, columns.right, plan.channels);
  depth_ = std::make_unique<Row>(depthColumns.left, depthColumns.right);
  depth_->get(*plan.image, y, depthColumns.left, depthColumns.right, ChannelSet(plan.depth));
  mattes_ = dvMatteRows(plan.mattes, y, columns);
  source_.clampedY = y;
  foreach (z, plan.channels)
    source_.colour.push_back((*colour_)[z]);
  source_.depth = (*depth_)[plan.depth];
  source_.bloomMatte = mattes_.bloom();
  source_.defocusMatte = mattes_.defocus();
  source_.chromaticMatte = mattes_.chromatic();
}

dvSourceRow dvFlatLine::source(int sourceY) const {
  dvSourceRow row(source_);
  row.y = sourceY;
  return row;
}

dvSplatLine splatLine(const dvFlatPlan& plan, const dvFlatLine& line, int sourceY,
                      const dvLineSettings& settings) {
  const dvSplatFrame& frame = plan.settings.frame;
  const dvColumns columns{plan.left - frame.padding, plan.right + frame.padding};
  dvSplatLineMaker maker(settings, sourceY, static_cast<std::size_t>(columns.right - columns.left));
  addFlatSources(line.source(sourceY), plan.settings.blur, frame.formatWidth, columns, maker);
  return maker.line();
}

bool makeFlatRow(const dvFlatPlan& plan, int y,
                 const std::function<float*(std::size_t channelPlace)>& target) {
  dvScanlineDefocus scanline(plan.settings, {plan.left, y, plan.right}, plan.numbers);
  const int reach = plan.settings.frame.padding;
  for (int sourceY = y - reach; sourceY <= y + reach; ++sourceY) {
    if (plan.aborted()) return false;
    const dvFlatLine line(plan, plan.rowOf(sourceY));
    scanline.splatSourceRow(line.source(sourceY));
  }
  for (std::size_t place = 0; place < plan.numbers.size(); ++place)
    scanline.composite(place, target(place));
  return true;
}

}  // namespace drevin

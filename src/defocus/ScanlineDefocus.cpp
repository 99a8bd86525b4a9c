#include "defocus/ScanlineDefocus.h"

#include <cstddef>

namespace drevin {

dvScanlineDefocus::dvScanlineDefocus(const dvDefocusSettings& settings, const dvOutputSpan& out,
                                     const std::vector<int>& channels)
    : settings_(settings), splatter_(settings.frame, out, channels) {}

dvColumns dvScanlineDefocus::depthColumns() const {
  const dvColumns columns = sourceColumns();
  return {splatter_.clampColumn(columns.left), splatter_.clampColumn(columns.right - 1) + 1};
}

void dvScanlineDefocus::splatSourceRow(const dvSourceRow& row) {
  const dvColumns columns = sourceColumns();
  for (int x = columns.left; x < columns.right; ++x)
    splatPixel(row, x);
  splatter_.endSourceRow();
}

void dvScanlineDefocus::splatPixel(const dvSourceRow& row, int x) {
  const int clampedX = splatter_.clampColumn(x);
  const dvBlurRecord record =
      blurRecord(row.depth[clampedX], matteValue(row.defocusMatte, x), settings_.blur);
  if (!record.splatted) return;
  const std::vector<int>& channels = splatter_.channels();
  for (std::size_t i = 0; i < channels.size(); ++i) {
    splatter_.pixel(channels[i]) = row.colour[i][x];
  }
  dvSplatSource source;
  source.clampedX = clampedX;
  source.clampedY = row.clampedY;
  source.x = x;
  source.y = row.y;
  source.coc = record.coc;
  source.slice = record.slice;
  source.bloomMatte = matteValue(row.bloomMatte, x);
  source.chromaticMatte = matteValue(row.chromaticMatte, x);
  splatter_.splat(source);
}

}  // namespace drevin

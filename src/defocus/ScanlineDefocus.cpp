#include "defocus/ScanlineDefocus.h"

#include <algorithm>
#include <cstddef>

#include "defocus/SliceComposite.h"
#include "kernel/KernelImage.h"

namespace drevin {

namespace {

/// Source rows between two flushes of the accumulators: few enough that a kernel of 255 px stays
/// within a tenth of the accuracy that a picture needs.
constexpr int rowsPerFlush = 8;

float matteValue(const float* matte, int x) {
  return matte == nullptr ? 1.0F : matte[x];
}

}  // namespace

dvScanlineDefocus::dvScanlineDefocus(const dvDefocusSettings& settings, const dvOutputSpan& out,
                                     const std::vector<int>& channels)
    : settings_(settings),
      out_(out),
      channels_(channels),
      accumulators_(settings.blur.slices, channels, out.left, out.right),
      pixel_(static_cast<std::size_t>(dvChannelCount), 0.0F) {}

dvColumns dvScanlineDefocus::sourceColumns() const {
  return {out_.left - settings_.padding, out_.right + settings_.padding};
}

dvColumns dvScanlineDefocus::depthColumns() const {
  const dvColumns columns = sourceColumns();
  return {clampColumn(columns.left), clampColumn(columns.right - 1) + 1};
}

int dvScanlineDefocus::clampColumn(int x) const {
  return std::max(0, std::min(x, settings_.formatWidth - 1));
}

void dvScanlineDefocus::splatSourceRow(const dvSourceRow& row) {
  const dvColumns columns = sourceColumns();
  for (int x = columns.left; x < columns.right; ++x)
    splatPixel(row, x);
  if (++unflushedRows_ < rowsPerFlush) return;
  accumulators_.flush();
  unflushedRows_ = 0;
}

void dvScanlineDefocus::splatPixel(const dvSourceRow& row, int x) {
  const int clampedX = clampColumn(x);
  const dvBlurRecord record =
      blurRecord(row.depth[clampedX], matteValue(row.defocusMatte, x), settings_.blur);
  if (!record.splatted || !accumulators_.use(record.slice)) return;
  for (std::size_t i = 0; i < channels_.size(); ++i) {
    pixel_[static_cast<std::size_t>(channels_[i])] = row.colour[i][x];
  }
  dvSplatSource source;
  source.clampedX = clampedX;
  source.clampedY = row.clampedY;
  source.x = x;
  source.y = row.y;
  source.coc = record.coc;
  source.slice = record.slice;
  source.pixel = pixel_.data();
  source.bloomMatte = matteValue(row.bloomMatte, x);
  source.chromaticMatte = matteValue(row.chromaticMatte, x);
  convole(settings_.splat, *settings_.bank, out_, source, channels_, accumulators_.colour(),
          accumulators_.weight());
}

void dvScanlineDefocus::composite(std::size_t channelPlace, float* out) {
  accumulators_.flush();
  unflushedRows_ = 0;
  compositeSlices(accumulators_, channelPlace, out);
}

}  // namespace drevin

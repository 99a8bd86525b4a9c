#include "defocus/RowSplatter.h"

#include <algorithm>

#include "defocus/SliceComposite.h"
#include "kernel/KernelImage.h"

namespace drevin {

dvRowSplatter::dvRowSplatter(const dvSplatFrame& frame, const dvOutputSpan& out,
                             const std::vector<int>& channels)
    : frame_(frame),
      out_(out),
      channels_(channels),
      accumulators_(frame.slices, channels, out.left, out.right),
      pixel_(static_cast<std::size_t>(dvChannelCount), 0.0F) {}

dvColumns dvRowSplatter::sourceColumns() const {
  return {out_.left - frame_.padding, out_.right + frame_.padding};
}

int dvRowSplatter::clampColumn(int x) const {
  return clampedColumn(x, frame_.formatWidth);
}

void dvRowSplatter::splat(dvSplatSource source) {
  if (!accumulators_.use(source.slice)) return;
  source.pixel = pixel_.data();
  convole(frame_.splat, *frame_.bank, out_, source, channels_, accumulators_.colour(),
          accumulators_.weight());
}

void dvRowSplatter::endSourceRow() {
  // Where one blur fills the picture the same product is added again and again, and its rounding
  // does not average out.
  accumulators_.flush();
}

void dvRowSplatter::composite(std::size_t channelPlace, float* out) {
  accumulators_.flush();
  compositeSlices(accumulators_, channelPlace, out);
}

}  // namespace drevin

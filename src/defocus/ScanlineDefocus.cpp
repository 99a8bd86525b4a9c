#include "defocus/ScanlineDefocus.h"

namespace drevin {

dvScanlineDefocus::dvScanlineDefocus(const dvDefocusSettings& settings, const dvOutputSpan& out,
                                     const std::vector<int>& channels)
    : settings_(settings), splatter_(settings.frame, out, channels) {}

dvColumns dvScanlineDefocus::depthColumns() const {
  const dvColumns columns = sourceColumns();
  return {splatter_.clampColumn(columns.left), splatter_.clampColumn(columns.right - 1) + 1};
}

void dvScanlineDefocus::splatSourceRow(const dvSourceRow& row) {
  addFlatSources(row, settings_.blur, settings_.frame.formatWidth, sourceColumns(), splatter_);
  splatter_.endSourceRow();
}

}  // namespace drevin

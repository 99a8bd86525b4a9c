#include "engine/RowSums.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "engine/Simd.h"

namespace drevin {

namespace {

/// Float sums of this many source rows keep a picture within its accuracy (see the tests).
constexpr int sourceRowsPerSum = 8;

int cellsOf(int left, int right) {
  return right <= left ? 0 : (right - left + dvCellColumns - 1) / dvCellColumns;
}

int leastInnerOf(dvRowShape shape) {
  switch (shape) {
    case dvRowShape::Dense:
      break;
    case dvRowShape::Rims:
      return dvCellColumns;
    case dvRowShape::Quickest:
      return 3 * dvCellColumns;
  }
  return std::numeric_limits<int>::max();
}

}  // namespace

dvRowSums::dvRowSums(int channels, int left, int right, dvRowShape shape)
    : channels_(channels),
      left_(left),
      right_(right),
      cells_(cellsOf(left, right)),
      leastInner_(leastInnerOf(shape)),
      code_(&rowCode(simdLevel())),
      sums_(static_cast<std::size_t>(cells_) * static_cast<std::size_t>(channels + 1)),
      totals_(sums_.size()),
      edges_(static_cast<std::size_t>(cells_ + 1) *
             static_cast<std::size_t>(channels + dvEdgeExtras)),
      touched_{cells_, 0} {}

void dvRowSums::clear() {
  std::fill(sums_.begin(), sums_.end(), FloatCell{});
  std::fill(totals_.begin(), totals_.end(), DoubleCell{});
  std::fill(edges_.begin(), edges_.end(), 0.0);
  touched_ = {cells_, 0};
  edgesTouched_ = false;
  sourceRows_ = 0;
}

void dvRowSums::add(const dvSplatRow& row, std::size_t begin, std::size_t end, int dy,
                    const dvKernelTable& kernels) {
  if (cells_ == 0 || kernels.empty() || std::abs(dy) > kernels.largestRadius()) return;
  while (begin < end) {
    const int reaching = selectReaching(row, begin, end, std::abs(dy));
    prepare(row, reaching, dy, kernels);
    addBatch();
  }
}

// Without a branch that depends on the record: which of them reach is not predictable.
int dvRowSums::selectReaching(const dvSplatRow& row, std::size_t& begin, std::size_t end,
                              int distance) {
  const std::size_t stop = std::min(end, begin + batchSize);
  int count = 0;
  for (; begin < stop; ++begin) {
    const dvSplatRecord& record = row.records[begin];
    selected_[count] = static_cast<std::uint32_t>(begin);
    const bool near = (record.near > 0.0F) & (record.radius >= distance);
    const bool far = (record.far > 0.0F) & (record.radius + 1 >= distance);
    count += static_cast<int>(near | far);
  }
  return count;
}

void dvRowSums::prepare(const dvSplatRow& row, int selected, int dy, const dvKernelTable& kernels) {
  const dvKernelRow* kernelRows = kernels.rowsAt(dy);
  splatCount_ = 0;
  for (int i = 0; i < selected; ++i) {
    const dvSplatRecord& record = row.records[selected_[i]];
    const dvKernelRow& near = record.near > 0.0F ? kernelRows[record.radius] : kernels.zeroRow();
    const dvKernelRow& far = record.far > 0.0F ? kernelRows[record.radius + 1] : kernels.zeroRow();
    dvRowSplat& splat = splats_[splatCount_];
    splat.near = kernels.values() + near.centre;
    splat.far = kernels.values() + far.centre;
    splat.values = row.values.data() +
                   static_cast<std::size_t>(selected_[i]) * static_cast<std::size_t>(channels_);
    splat.nearShare = record.near;
    splat.farShare = record.far;
    splat.inner = record.near * near.constantValue + record.far * far.constantValue;
    splatCount_ += static_cast<int>(place(record.x, near, far, splat));
  }
}

// False if nothing of the kernel row lies in the sums.
bool dvRowSums::place(int x, const dvKernelRow& near, const dvKernelRow& far,
                      dvRowSplat& splat) const {
  const std::int64_t centre = static_cast<std::int64_t>(x) - left_;
  const std::int64_t columns = static_cast<std::int64_t>(cells_) * dvCellColumns;
  const auto within = [&](std::int64_t column) {
    return static_cast<int>(std::clamp<std::int64_t>(column, 0, columns));
  };
  splat.begin = within(centre + std::min(near.begin, far.begin));
  splat.end = within(centre + std::max(near.end, far.end));
  if (splat.begin >= splat.end) return false;
  splat.x = static_cast<int>(centre);
  const int innerBegin = within(centre + std::max(near.constantBegin, far.constantBegin));
  const int innerEnd = within(centre + std::min(near.constantEnd, far.constantEnd));
  splat.innerBegin = (innerBegin + dvCellColumns - 1) / dvCellColumns * dvCellColumns;
  splat.innerEnd = innerEnd / dvCellColumns * dvCellColumns;
  if (splat.innerEnd - splat.innerBegin < leastInner_) {
    splat.innerBegin = splat.innerEnd = splat.end;
  }
  return true;
}

void dvRowSums::addBatch() {
  bool inner = false;
  for (int i = 0; i < splatCount_; ++i) {
    const dvRowSplat& splat = splats_[i];
    touched_.begin = std::min(touched_.begin, splat.begin / dvCellColumns);
    touched_.end = std::max(touched_.end, (splat.end - 1) / dvCellColumns + 1);
    inner |= splat.innerBegin < splat.innerEnd;
  }
  code_->scatterSplats(splats_, splatCount_, channels_, sums_.data()->columns);
  if (!inner) return;
  code_->scatterEdges(splats_, splatCount_, channels_, edges_.data());
  edgesTouched_ = true;
}

void dvRowSums::endSourceRow() {
  if (++sourceRows_ == sourceRowsPerSum) emptyTouched();
}

void dvRowSums::emptyTouched() {
  sourceRows_ = 0;
  if (touched_.begin >= touched_.end) return;
  const std::size_t planes = static_cast<std::size_t>(channels_) + 1;
  const std::size_t first = static_cast<std::size_t>(touched_.begin) * planes;
  const std::size_t count = static_cast<std::size_t>(touched_.end - touched_.begin) * planes;
  code_->emptySums(sums_[first].columns, totals_[first].columns,
                   static_cast<std::ptrdiff_t>(count * dvCellColumns));
  touched_ = {cells_, 0};
}

void dvRowSums::finish() {
  emptyTouched();
  if (edgesTouched_) addInnerParts();
}

void dvRowSums::addInnerParts() {
  const std::size_t planes = static_cast<std::size_t>(channels_) + 1;
  const std::size_t cellEdges = planes + 1;
  std::vector<double> running(cellEdges, 0.0);
  for (std::size_t cell = 0; cell < static_cast<std::size_t>(cells_); ++cell) {
    for (std::size_t p = 0; p < cellEdges; ++p)
      running[p] += edges_[cell * cellEdges + p];
    // Where no splat's inner part lies, what rounding left of the ended ones is dropped.
    if (running[planes] == 0.0) std::fill(running.begin(), running.end(), 0.0);
    for (std::size_t p = 0; p < planes; ++p) {
      for (double& column : totals_[cell * planes + p].columns)
        column += running[p];
    }
  }
  std::fill(edges_.begin(), edges_.end(), 0.0);
  edgesTouched_ = false;
}

template <typename Value>
void dvRowSums::storeAs(int plane, Value* out) const {
  for (int column = 0; column < right_ - left_; ++column) {
    const int cell = column / dvCellColumns * (channels_ + 1) + plane;
    out[column] =
        static_cast<Value>(totals_[static_cast<std::size_t>(cell)].columns[column % dvCellColumns]);
  }
}

void dvRowSums::store(int plane, float* out) const {
  storeAs(plane, out);
}

void dvRowSums::store(int plane, double* out) const {
  storeAs(plane, out);
}

}  // namespace drevin

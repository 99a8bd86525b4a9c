#include "engine/RowSums.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "engine/Simd.h"

namespace drevin {

namespace {

/// Float sums of this many source rows keep a picture within its accuracy (see the tests), and so
/// do those of this many splats: no column is reached by more.
constexpr int sourceRowsPerSum = 2;
constexpr std::size_t splatsPerSum = 1024;

int cellsOf(int left, int right) {
  return right <= left ? 0 : (right - left + dvCellColumns - 1) / dvCellColumns;
}

dvRowChoice denseOf(const dvRowChoice& choice) {
  return {std::numeric_limits<int>::max(), choice.order, choice.times};
}

dvRowChoice choiceOf(dvRowShape shape, dvRowOrder order) {
  const dvRowTimes& times = rowTimes(simdLevel());
  switch (shape) {
    case dvRowShape::Dense:
      return denseOf({0, order, times});
    case dvRowShape::Rims:
      return {dvCellColumns, order, times};
    case dvRowShape::Quickest:
      break;
  }
  return {leastInnerPart(times), order, times};
}

}  // namespace

dvRowSums::dvRowSums(int channels, int left, int right, dvRowShape shape, dvRowOrder order)
    : channels_(channels),
      left_(left),
      right_(right),
      cells_(cellsOf(left, right)),
      choice_(choiceOf(shape, order)),
      dense_(denseOf(choice_)),
      code_(&rowCode(simdLevel())),
      batch_(left),
      sums_(static_cast<std::size_t>(cells_) * (static_cast<std::size_t>(channels) + 1)),
      totals_(sums_.size()),
      edges_((static_cast<std::size_t>(cells_) + 1) *
             (static_cast<std::size_t>(channels) + dvEdgeExtras)),
      touched_{cells_, 0},
      used_{cells_, 0} {}

void dvRowSums::clear() {
  const std::size_t planes = static_cast<std::size_t>(channels_) + 1;
  const auto cell = [&](auto& cells, int place) {
    return cells.begin() + static_cast<std::ptrdiff_t>(static_cast<std::size_t>(place) * planes);
  };
  if (touched_.begin < touched_.end)
    std::fill(cell(sums_, touched_.begin), cell(sums_, touched_.end), FloatCell{});
  if (used_.begin < used_.end)
    std::fill(cell(totals_, used_.begin), cell(totals_, used_.end), DoubleCell{});
  if (edgesTouched_) std::fill(edges_.begin(), edges_.end(), 0.0);
  touched_ = used_ = {cells_, 0};
  edgesTouched_ = false;
  sourceRows_ = 0;
  splats_ = 0;
}

void dvRowSums::add(const dvSplatRow& row, std::size_t begin, std::size_t end, int dy,
                    const dvKernelTable& kernels, const dvRowReach* reach) {
  if (!mayReach(dy, kernels)) return;
  while (begin < end) {
    begin = batch_.collect(row, begin, end, std::abs(dy), reach);
    batch_.cut(dy, kernels, row.hasGreat ? dense_ : choice_);
    add(batch_.runs());
  }
}

void dvRowSums::add(const dvReadyRow& row, int dy, const dvKernelTable& kernels) {
  if (!mayReach(dy, kernels)) return;
  runs_.take(row, dy, kernels, row.hasGreat() ? dense_ : choice_);
  add(runs_);
}

bool dvRowSums::mayReach(int dy, const dvKernelTable& kernels) const {
  return cells_ != 0 && !kernels.empty() && std::abs(dy) <= kernels.largestRadius();
}

void dvRowSums::add(const dvRowRuns& runs) {
  splats_ += runs.splats();
  addRuns(runs.scattered(), code_->scatterRuns);
  addRuns(runs.gathered(), code_->gatherRuns);
}

void dvRowSums::addRuns(const std::vector<dvRowRun>& runs, AddRuns addColumns) {
  if (runs.empty()) return;
  bool inner = false;
  for (const dvRowRun& run : runs) {
    touch(run);
    inner |= run.innerBegin < run.innerEnd;
  }
  const dvRowTarget target{sums_.data()->columns, edges_.data(), channels_, cells_};
  const int count = static_cast<int>(runs.size());
  addColumns(runs.data(), count, target);
  if (!inner) return;
  code_->addInnerEdges(runs.data(), count, target);
  edgesTouched_ = true;
}

void dvRowSums::touch(const dvRowRun& run) {
  const int first = run.records[0].x + run.begin;
  const int last = run.records[run.count - 1].x + run.end - 1;
  touched_.begin = std::min(touched_.begin, std::max(first, 0) / dvCellColumns);
  touched_.end = std::max(touched_.end, std::min(last / dvCellColumns + 1, cells_));
}

void dvRowSums::endSourceRow() {
  ++sourceRows_;
  if (sourceRows_ >= sourceRowsPerSum && splats_ > splatsPerSum) emptyTouched();
}

void dvRowSums::emptyTouched() {
  sourceRows_ = 0;
  splats_ = 0;
  if (touched_.begin >= touched_.end) return;
  const std::size_t planes = static_cast<std::size_t>(channels_) + 1;
  const std::size_t first = static_cast<std::size_t>(touched_.begin) * planes;
  const std::size_t count = static_cast<std::size_t>(touched_.end - touched_.begin) * planes;
  code_->emptySums(sums_[first].columns, totals_[first].columns,
                   static_cast<std::ptrdiff_t>(count * dvCellColumns));
  used_ = {std::min(used_.begin, touched_.begin), std::max(used_.end, touched_.end)};
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
    if (running[planes] == 0.0) {
      std::fill(running.begin(), running.end(), 0.0);
      continue;
    }
    for (std::size_t p = 0; p < planes; ++p) {
      for (double& column : totals_[cell * planes + p].columns)
        column += running[p];
    }
  }
  used_ = {0, cells_};
  std::fill(edges_.begin(), edges_.end(), 0.0);
  edgesTouched_ = false;
}

dvColumnSpan dvRowSums::touched() const {
  return {used_.begin * dvCellColumns, std::min(used_.end * dvCellColumns, right_ - left_)};
}

template <typename Value>
void dvRowSums::storeAs(int plane, const dvColumnSpan& columns, Value* out) const {
  const std::size_t planes = static_cast<std::size_t>(channels_) + 1;
  const auto p = static_cast<std::size_t>(plane);
  for (int begin = columns.begin; begin < columns.end;) {
    const int cell = begin / dvCellColumns;
    const int end = std::min((cell + 1) * dvCellColumns, columns.end);
    const double* sums = totals_[static_cast<std::size_t>(cell) * planes + p].columns;
    for (int column = begin; column < end; ++column)
      out[column] = static_cast<Value>(sums[column - cell * dvCellColumns]);
    begin = end;
  }
}

void dvRowSums::store(int plane, float* out) const {
  storeAs(plane, {0, right_ - left_}, out);
}

void dvRowSums::store(int plane, double* out) const {
  storeAs(plane, {0, right_ - left_}, out);
}

void dvRowSums::store(int plane, const dvColumnSpan& columns, double* out) const {
  storeAs(plane, columns, out);
}

}  // namespace drevin

#include "engine/RowRuns.h"

#include <algorithm>
#include <cstdlib>

namespace drevin {

void dvRowRuns::begin(int dy, const dvKernelTable& kernels, const dvRowChoice& choice) {
  rows_ = kernels.rowsAt(dy);
  kernels_ = &kernels;
  choice_ = &choice;
  scattered_.clear();
  gathered_.clear();
  splats_ = 0;
}

void dvRowRuns::append(int kind, const dvRowRecord* records, int count) {
  const dvKernelRow* rows = rows_ + kindRadius(kind);
  const dvKernelRow& near = kindHasNear(kind) ? rows[0] : kernels_->zeroRow();
  const dvKernelRow& far = kindHasFar(kind) ? rows[1] : kernels_->zeroRow();
  splats_ += static_cast<std::size_t>(count);
  const int begin = std::min(near.begin, far.begin);
  const int end = std::max(near.end, far.end);
  if (begin >= end) return;
  int innerBegin = std::max(near.constantBegin, far.constantBegin);
  int innerEnd = std::min(near.constantEnd, far.constantEnd);
  if (innerEnd - innerBegin < choice_->leastInner) innerBegin = innerEnd = end;
  const dvRowRun run{records,
                     count,
                     begin,
                     end,
                     innerBegin,
                     innerEnd,
                     kernels_->values() + near.centre,
                     kernels_->values() + far.centre,
                     near.constantValue,
                     far.constantValue};
  const bool gather =
      choice_->order == dvRowOrder::Gather ||
      (choice_->order == dvRowOrder::Quickest && gatherIsQuicker(run, choice_->times));
  (gather ? gathered_ : scattered_).push_back(run);
}

void dvRowRuns::take(const dvReadyRow& row, int dy, const dvKernelTable& kernels,
                     const dvRowChoice& choice) {
  begin(dy, kernels, choice);
  row.forEachRun(std::abs(dy), [&](const dvReadyRow::Run& run) {
    append(run.kind, row.records().data() + run.begin, static_cast<int>(run.end - run.begin));
  });
}

}  // namespace drevin

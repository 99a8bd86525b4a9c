#pragma once

/// A few splats of a source row, sorted out for one output row: those that reach it, in runs of the
/// same kernel rows.

#include <cstddef>

#include "engine/KernelTable.h"
#include "engine/KindOrder.h"
#include "engine/RowReach.h"
#include "engine/RowRuns.h"
#include "engine/SplatRecords.h"

namespace drevin {

class dvRowBatch {
 public:
  /// Columns count from `left`.
  explicit dvRowBatch(int left) : left_(left) {}

  /// Collects records from `begin` on that reach `distance` rows, up to `end` or until the batch is
  /// full, in place of those it held. Gives where to go on; `reach`, of the same row, may be null.
  std::size_t collect(const dvSplatRow& row, std::size_t begin, std::size_t end, int distance,
                      const dvRowReach* reach);

  /// Cuts the records into runs whose kernels lie `dy` rows above their centres. Where that makes
  /// longer runs the records are sorted by radius before.
  void cut(int dy, const dvKernelTable& kernels, const dvRowChoice& choice);

  /// What was cut.
  const dvRowRuns& runs() const { return runs_; }

 private:
  static constexpr int capacity = dvKindOrderMost;

  /// Takes those of the records [begin, end) whose kind is `least` at least; `kinds` from `begin`.
  void take(const dvSplatRow& row, std::size_t begin, std::size_t end, const dvSplatKind* kinds,
            int least);
  void takeAll(const dvSplatRow& row, std::size_t begin, std::size_t end, const dvSplatKind* kinds);
  dvRowRecord ready(const dvSplatRow& row, std::size_t stride, std::size_t record) const;
  void appendRuns(const dvSplatKind* kinds, const dvRowRecord* records);

  int left_;
  int count_ = 0;
  dvRowRecord records_[capacity];
  dvSplatKind kinds_[capacity];
  dvSplatKind orderedKinds_[capacity];
  dvRowRecord ordered_[capacity];
  dvRowRuns runs_;
};

}  // namespace drevin

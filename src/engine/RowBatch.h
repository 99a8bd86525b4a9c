#pragma once

/// A few splats of a source row, sorted out for one output row: those that reach it, in runs of the
/// same kernel rows.

#include <cstddef>
#include <vector>

#include "engine/KernelTable.h"
#include "engine/RowCost.h"
#include "engine/RowReach.h"
#include "engine/RowRun.h"
#include "engine/SplatRecords.h"

namespace drevin {

/// In which order splats are added: splat after splat, or a few columns of all splats of one radius
/// after the other.
enum class dvRowOrder { Quickest, Scatter, Gather };

/// How runs are added.
struct dvRowChoice {
  int leastInner;  ///< columns of the least inner part; a cell at least
  dvRowOrder order;
  dvRowTimes times;
};

class dvRowBatch {
 public:
  /// Columns count from `left`.
  explicit dvRowBatch(int left);

  /// Collects records from `begin` on that reach `distance` rows, up to `end` or until the batch is
  /// full, in place of those it held. Gives where to go on; `reach`, of the same row, may be null.
  std::size_t collect(const dvSplatRow& row, std::size_t begin, std::size_t end, int distance,
                      const dvRowReach* reach);

  /// Records that it holds.
  std::size_t size() const { return static_cast<std::size_t>(count_); }

  /// Cuts the records into runs whose kernels lie `dy` rows above their centres. Where that makes
  /// longer runs the records are sorted by radius before.
  void cut(int dy, const dvKernelTable& kernels, const dvRowChoice& choice);

  /// The runs to scatter and those to gather.
  const std::vector<dvRowRun>& scattered() const { return scattered_; }
  const std::vector<dvRowRun>& gathered() const { return gathered_; }

 private:
  static constexpr int capacity = 256;

  /// What all runs of an output row need.
  struct RunMaker {
    const dvKernelRow* rows;
    const dvKernelTable& kernels;
    const dvRowChoice& choice;
  };

  /// Takes those of the records [begin, end) whose kind is `least` at least; `kinds` from `begin`.
  void take(const dvSplatRow& row, std::size_t begin, std::size_t end, const dvSplatKind* kinds,
            int least);
  void takeAll(const dvSplatRow& row, std::size_t begin, std::size_t end, const dvSplatKind* kinds);
  dvRowRecord ready(const dvSplatRow& row, std::size_t stride, std::size_t record) const;
  void cutAsTheyAre(const RunMaker& maker);
  void cutByKind(const RunMaker& maker, int least, int most);
  void appendRun(const RunMaker& maker, int kind, const dvRowRecord* records, int count);

  int left_;
  int count_ = 0;
  dvRowRecord records_[capacity];
  dvSplatKind kinds_[capacity];
  dvRowRecord ordered_[capacity];
  std::vector<dvRowRun> scattered_;
  std::vector<dvRowRun> gathered_;
};

}  // namespace drevin

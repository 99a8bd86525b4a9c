#pragma once

/// Runs of splats for one output row: those to scatter and those to gather.

#include <cstddef>
#include <vector>

#include "engine/KernelTable.h"
#include "engine/ReadyRow.h"
#include "engine/RowCost.h"
#include "engine/RowRun.h"

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

class dvRowRuns {
 public:
  /// Starts anew, with runs whose kernels lie `dy` rows above their centres. The table and the
  /// choice must outlive the appending.
  void begin(int dy, const dvKernelTable& kernels, const dvRowChoice& choice);
  /// Appends a run of records of one kind, by ascending column, that reach the row. They must
  /// outlive the runs.
  void append(int kind, const dvRowRecord* records, int count);
  /// Begins, then appends what of a row reaches.
  void take(const dvReadyRow& row, int dy, const dvKernelTable& kernels, const dvRowChoice& choice);

  const std::vector<dvRowRun>& scattered() const { return scattered_; }
  const std::vector<dvRowRun>& gathered() const { return gathered_; }
  /// Splats of all runs.
  std::size_t splats() const { return splats_; }

 private:
  const dvKernelRow* rows_ = nullptr;
  const dvKernelTable* kernels_ = nullptr;
  const dvRowChoice* choice_ = nullptr;
  std::vector<dvRowRun> scattered_;
  std::vector<dvRowRun> gathered_;
  std::size_t splats_ = 0;
};

}  // namespace drevin

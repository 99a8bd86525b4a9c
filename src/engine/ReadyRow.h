#pragma once

/// Splats of a source row, put in order once for all the output rows that they reach.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/KindOrder.h"
#include "engine/RowReach.h"
#include "engine/RowRun.h"
#include "engine/SplatRecords.h"

namespace drevin {

/// A splat whose column counts from `left`: one so far off that the difference would not fit is put
/// where nothing reaches in from.
inline dvRowRecord readyRecord(const dvSplatRecord& record, const float* values, int left) {
  constexpr std::int64_t farOff = std::int64_t{1} << 28;
  const std::int64_t column = static_cast<std::int64_t>(record.x) - left;
  return {values, record.near, record.far, static_cast<int>(std::clamp(column, -farOff, farOff))};
}

/// Chunks of neighbours, in each the splats by kind, those of a kind by column: what of a chunk
/// reaches an output row are whole runs at its end.
/// Tests: ReadyRow_test.cpp
class dvReadyRow {
 public:
  /// Records [begin, end) of one kind.
  struct Run {
    dvSplatKind kind;
    std::uint32_t begin;
    std::uint32_t end;
  };
  /// Splats of a chunk. In a longer one splats of one kind would lie farther apart.
  static constexpr std::size_t chunkSize = dvKindOrderMost;

  /// Without splats.
  dvReadyRow() = default;
  /// Takes over the splats of a row, which are by ascending column; columns count from `left`.
  dvReadyRow(dvSplatRow row, int left);
  // Records point at the values.
  dvReadyRow(const dvReadyRow&) = delete;
  dvReadyRow& operator=(const dvReadyRow&) = delete;
  dvReadyRow(dvReadyRow&&) = default;
  dvReadyRow& operator=(dvReadyRow&&) = default;

  bool hasGreat() const { return hasGreat_; }
  const std::vector<dvRowRecord>& records() const { return records_; }

  /// Calls visit(run) for the runs whose splats reach `distance` rows.
  template <typename Visit>
  void forEachRun(int distance, const Visit& visit) const {
    const int least = leastKind(distance);
    std::size_t begin = 0;
    for (const std::size_t end : chunkEnds_) {
      for (std::size_t run = end; run > begin && runs_[run - 1].kind >= least; --run)
        visit(runs_[run - 1]);
      begin = end;
    }
  }

 private:
  void addChunk(const dvSplatRow& row, std::size_t begin, std::size_t end, int left);

  bool hasGreat_ = false;
  std::vector<float> values_;
  std::vector<dvRowRecord> records_;
  std::vector<Run> runs_;
  std::vector<std::size_t> chunkEnds_;  ///< by chunk, places in runs_
};

}  // namespace drevin

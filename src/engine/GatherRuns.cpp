/// Runs gathered: a block of columns takes the splats of a run that reach it, one after the other,
/// while its sums stay in registers.
///
///   for each block [b, b + n) of columns, n = blockColumns, each splat i that reaches it:
///     K(c) = near_i * nearRow[c - x_i] + far_i * farRow[c - x_i]                    c in the block
///     sums[p](c) += K(c) * values_i[p],   weight(c) += K(c)
///
///   x_i, near_i, far_i  column of the centre and shares of splat i; x_i ascends with i
///   reaches             x_i + begin < b + n  and  x_i + end > b, for the run's [begin, end)
///
/// Splats whose inner part holds the whole cell of the block are left out: the edges have it.
/// Columns beyond the kernel's read the zeros beside its rows. Products and sums are single
/// precision; where the instruction set has it, multiplication and addition are fused.

#include "engine/RowCode.h"
#include "engine/RowPlanes.h"
#include "engine/RowVector.h"

namespace drevin {
namespace DREVIN_SIMD_LEVEL {

namespace {

/// Columns whose sums of all planes of a group stay in registers.
constexpr int blockColumns = lanes < 8 ? 2 * lanes : dvCellColumns;
constexpr int blockVectors = blockColumns / lanes;

/// The sums of one block of columns.
template <int Values, bool Weight>
struct Block {
  static constexpr int planes = Values + (Weight ? 1 : 0);

  explicit Block(float* place) {
    for (int p = 0; p < planes; ++p) {
      for (int v = 0; v < blockVectors; ++v)
        sums[p][v] = vectorAt(place + p * dvCellColumns + v * lanes);
    }
  }

  void store(float* place) const {
    for (int p = 0; p < planes; ++p) {
      for (int v = 0; v < blockVectors; ++v)
        vectorAt(place + p * dvCellColumns + v * lanes) = sums[p][v];
    }
  }

  void add(const dvRowRecord& record, const float* values, const float* nearRow,
           const float* farRow) {
    for (int v = 0; v < blockVectors; ++v) {
      const Vector kernel =
          record.near * loadLoose(nearRow + v * lanes) + record.far * loadLoose(farRow + v * lanes);
      for (int p = 0; p < Values; ++p)
        sums[p][v] += kernel * values[p];
      if (Weight) sums[Values][v] += kernel;
    }
  }

  Vector sums[planes][blockVectors];
};

/// A place in a run that moves on with the columns.
class Cursor {
 public:
  explicit Cursor(const dvRowRun& run) : run_(run) {}
  /// The first splat whose centre is at or right of x; x never falls from call to call.
  int firstFrom(int x) {
    while (place_ < run_.count && run_.records[place_].x < x)
      ++place_;
    return place_;
  }

 private:
  const dvRowRun& run_;
  int place_ = 0;
};

template <int Values, bool Weight>
class Gather {
 public:
  Gather(const dvRowTarget& target, int first)
      : sums_(target.sums + first * dvCellColumns),
        first_(first),
        planes_(target.channels + 1),
        columns_(target.cells * dvCellColumns) {}

  void add(const dvRowRun& run) const {
    const bool inner = run.innerBegin < run.innerEnd;
    Cursor reachBegin(run);
    Cursor innerBegin(run);
    Cursor innerEnd(run);
    Cursor reachEnd(run);
    const int begin = larger(run.records[0].x + run.begin, 0) & -blockColumns;
    const int end = smaller(run.records[run.count - 1].x + run.end, columns_);
    for (int column = begin; column < end; column += blockColumns) {
      const int first = reachBegin.firstFrom(column - run.end + 1);
      const int last = reachEnd.firstFrom(column + blockColumns - run.begin);
      if (!inner) {
        addToBlock(run, column, first, last, last, last);
        continue;
      }
      const int cell = column & -dvCellColumns;
      addToBlock(run, column, first, innerBegin.firstFrom(cell + dvCellColumns - run.innerEnd),
                 innerEnd.firstFrom(cell - run.innerBegin + 1), last);
    }
  }

 private:
  /// Adds the splats [first, skip) and [from, last).
  void addToBlock(const dvRowRun& run, int column, int first, int skip, int from, int last) const {
    if (first == skip && from == last) return;
    float* place = columnAt(sums_, column, planes_);
    Block<Values, Weight> block(place);
    addSplats(run, column, first, skip, block);
    addSplats(run, column, from, last, block);
    block.store(place);
  }

  void addSplats(const dvRowRun& run, int column, int first, int last,
                 Block<Values, Weight>& block) const {
    for (const dvRowRecord* record = run.records + first; record < run.records + last; ++record) {
      const int offset = column - record->x;
      block.add(*record, record->values + first_, run.nearRow + offset, run.farRow + offset);
    }
  }

  float* sums_;
  int first_;
  int planes_;
  int columns_;
};

}  // namespace

void gatherRuns(const dvRowRun* runs, int count, const dvRowTarget& target) {
  eachPlaneGroup<Gather>(runs, count, target);
}

}  // namespace DREVIN_SIMD_LEVEL
}  // namespace drevin

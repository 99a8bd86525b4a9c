/// Runs scattered: a splat is added to all columns that it reaches before the next one's turn.
///
///   for each splat i, each column c in [x_i + begin, x_i + end) but whole cells of the inner part:
///     K(c) = near_i * nearRow[c - x_i] + far_i * farRow[c - x_i]
///     sums[p](c) += K(c) * values_i[p],   weight(c) += K(c)
///
///   x_i, near_i, far_i  column of the centre and shares of splat i
///
/// Whole vectors are added: what they hold beyond [begin, end) are the zeros beside the kernel
/// rows. Products and sums are single precision; where the instruction set has it, multiplication
/// and addition are fused.

#include "engine/RowCode.h"
#include "engine/RowPlanes.h"
#include "engine/RowVector.h"

namespace drevin {
namespace DREVIN_SIMD_LEVEL {

namespace {

template <int Values, bool Weight>
class Scatter {
 public:
  Scatter(const dvRowTarget& target, int first)
      : sums_(target.sums + first * dvCellColumns),
        first_(first),
        planes_(target.channels + 1),
        columns_(target.cells * dvCellColumns) {}

  void add(const dvRowRun& run) const {
    for (int i = 0; i < run.count; ++i) {
      const dvRowRecord& record = run.records[i];
      Vector values[Values];
      for (int p = 0; p < Values; ++p)
        values[p] = filled(record.values[first_ + p]);
      const int begin = larger(record.x + run.begin, 0);
      const int end = smaller(record.x + run.end, columns_);
      const InnerCells inner = innerCells(run, record.x, columns_);
      if (inner.begin < inner.end) {
        addColumns(run, record, values, begin, inner.begin);
        addColumns(run, record, values, inner.end, end);
      } else {
        addColumns(run, record, values, begin, end);
      }
    }
  }

 private:
  void addColumns(const dvRowRun& run, const dvRowRecord& record, const Vector (&values)[Values],
                  int begin, int end) const {
    if (begin >= end) return;
    const Vector near = filled(record.near);
    const Vector far = filled(record.far);
    for (int column = begin & -lanes; column < end; column += lanes) {
      const int offset = column - record.x;
      const Vector kernel =
          near * loadLoose(run.nearRow + offset) + far * loadLoose(run.farRow + offset);
      float* place = columnAt(sums_, column, planes_);
      for (int p = 0; p < Values; ++p)
        vectorAt(place + p * dvCellColumns) += kernel * values[p];
      if (Weight) vectorAt(place + Values * dvCellColumns) += kernel;
    }
  }

  float* sums_;
  int first_;
  int planes_;
  int columns_;
};

}  // namespace

void scatterRuns(const dvRowRun* runs, int count, const dvRowTarget& target) {
  eachPlaneGroup<Scatter>(runs, count, target);
}

}  // namespace DREVIN_SIMD_LEVEL
}  // namespace drevin

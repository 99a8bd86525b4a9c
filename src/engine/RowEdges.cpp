/// The constant inner parts of a run's splats, by the cells at which they begin and end.
///
///   k_i = near_i * nearInner + far_i * farInner
///   edges[p](b_i) += k_i * values_i[p],   edges[p](e_i) -= k_i * values_i[p]
///   edges[weight](b_i) += k_i,            edges[weight](e_i) -= k_i
///   edges[count](b_i) += 1,               edges[count](e_i) -= 1
///
///   [b_i, e_i)  whole cells within x_i + [innerBegin, innerEnd) and within the row; none: nothing
///
/// All in double. Summed up from the left the edges give what each cell has of inner parts; where
/// the count is 0 that is nothing, however the differences round.

#include "engine/RowCode.h"
#include "engine/RowPlanes.h"
#include "engine/RowVector.h"

namespace drevin {
namespace DREVIN_SIMD_LEVEL {

namespace {

/// What begins, or ends, at one cell: gathered in registers, since the splats of a run do so at the
/// same cell many times running.
template <int Count>
class Edge {
 public:
  Edge(double* edges, ptrdiff_t cellEdges, double sign)
      : edges_(edges), cellEdges_(cellEdges), sign_(sign) {}
  ~Edge() {
    if (column_ != none) write();
  }
  Edge(const Edge&) = delete;
  Edge& operator=(const Edge&) = delete;

  void add(int column, const double (&products)[Count]) {
    if (column != column_) {
      if (column_ != none) write();
      column_ = column;
    }
    for (int p = 0; p < Count; ++p)
      sums_[p] += products[p];
  }

 private:
  static constexpr int none = -1;

  void write() {
    double* cell = edges_ + column_ / dvCellColumns * cellEdges_;
    for (int p = 0; p < Count; ++p) {
      cell[p] += sign_ * sums_[p];
      sums_[p] = 0.0;
    }
  }

  double* edges_;
  ptrdiff_t cellEdges_;
  double sign_;
  int column_ = none;
  double sums_[Count] = {};
};

template <int Values, bool Weight>
class EdgeAdder {
 public:
  EdgeAdder(const dvRowTarget& target, int first)
      : edges_(target.edges + first),
        cellEdges_(target.channels + dvEdgeExtras),
        first_(first),
        columns_(target.cells * dvCellColumns) {}

  void add(const dvRowRun& run) const {
    if (run.innerBegin == run.innerEnd) return;
    Edge<count> begin(edges_, cellEdges_, 1.0);
    Edge<count> end(edges_, cellEdges_, -1.0);
    for (int i = 0; i < run.count; ++i) {
      const dvRowRecord& record = run.records[i];
      const InnerCells cells = innerCells(run, record.x, columns_);
      if (cells.begin >= cells.end) continue;
      const double inner = static_cast<double>(record.near) * static_cast<double>(run.nearInner) +
                           static_cast<double>(record.far) * static_cast<double>(run.farInner);
      double products[count];
      for (int p = 0; p < Values; ++p)
        products[p] = inner * static_cast<double>(record.values[first_ + p]);
      if (Weight) {
        products[Values] = inner;
        products[count - 1] = 1.0;
      }
      begin.add(cells.begin, products);
      end.add(cells.end, products);
    }
  }

 private:
  static constexpr int count = Values + (Weight ? dvEdgeExtras : 0);

  double* edges_;
  ptrdiff_t cellEdges_;
  int first_;
  int columns_;
};

}  // namespace

void addInnerEdges(const dvRowRun* runs, int count, const dvRowTarget& target) {
  eachPlaneGroup<EdgeAdder>(runs, count, target);
}

void emptySums(float* sums, double* totals, ptrdiff_t count) {
  for (ptrdiff_t i = 0; i < count; ++i) {
    totals[i] += static_cast<double>(sums[i]);
    sums[i] = 0.0F;
  }
}

}  // namespace DREVIN_SIMD_LEVEL
}  // namespace drevin

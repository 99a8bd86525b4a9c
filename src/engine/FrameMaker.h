#pragma once

/// The defocus of a box at once: slices from the nearest to the farthest, each summed and laid
/// under what is there.

#include <functional>
#include <memory>
#include <vector>

#include "engine/FrameBox.h"
#include "engine/Parallel.h"
#include "engine/RowSums.h"
#include "engine/SplatLine.h"

namespace drevin {

/// The source rows from bottom - padding to top + padding - 1 of a box, bottom first. Null: nothing
/// is known of the row, and it adds nothing.
using dvSplatLines = std::vector<const dvSplatLine*>;

/// One plane for each splatted channel.
using dvFramePlanes = std::vector<dvFramePlane<float>>;

/// Sums and composites; the formulas are those of the row code (convole, compositeSlices).
class dvFrameMaker {
 public:
  /// `padding`: how far a source row reaches, px. All must outlive this.
  dvFrameMaker(const dvLineSettings& settings, int padding, dvParallel& parallel);

  /// Makes the rows of the box, which spans the columns of the planes; the planes hold zeros there.
  /// Calls `progress` on this thread with the share that is done. After an abort the rows are worth
  /// nothing.
  void make(const dvFrameBox& box, const dvSplatLines& lines, dvFramePlanes& planes,
            const std::function<void(double)>& progress);

 private:
  /// What one worker needs for its rows.
  struct Scratch {
    std::unique_ptr<dvRowSums> sums;
    std::vector<std::vector<double>> planes;  ///< values, then weight
  };

  void makeGroup(std::size_t group, dvFramePlanes& planes,
                 const std::function<void(double)>& progress);
  bool sliceIsEmpty(std::size_t group, std::size_t slice) const;
  /// Calls add(splats, dy) for all splats of a group centred in reach of row y, source row by
  /// source row.
  template <typename Add>
  void forEachReaching(std::size_t group, int y, const Add& add) const;
  void sumRow(std::size_t group, std::size_t slice, int y, Scratch& scratch) const;
  void compositeRow(std::size_t group, int y, const Scratch& scratch, dvFramePlanes& planes);
  void normaliseRow(std::size_t group, int y, dvFramePlanes& planes) const;

  const dvLineSettings& settings_;
  int padding_;
  dvParallel& parallel_;
  dvFrameBox box_;
  const dvSplatLines* lines_ = nullptr;
  dvFramePlane<double> coverage_;
};

}  // namespace drevin

#pragma once

/// The defocus of a box at once: slices from the nearest to the farthest, each summed and laid
/// under what is there.

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "engine/FrameBox.h"
#include "engine/Parallel.h"
#include "engine/RowSums.h"
#include "engine/SliceTiles.h"
#include "engine/SplatLine.h"

namespace drevin {

/// The source rows from bottom - padding to top + padding - 1 of a box, bottom first. Null: nothing
/// is known of the row, and it adds nothing.
using dvSplatLines = std::vector<const dvSplatLine*>;

/// When stretches of how many columns are made anew: below this coverage, and where the rounding of
/// transforms may be above these shares, absolute and of the value.
constexpr int dvRepairColumns = dvRoundingCell;
constexpr double dvRepairCoverage = 1e-2;
constexpr double dvRepairAbsolute = 2.5e-6;
constexpr double dvRepairRelative = 2.5e-5;

/// One plane for each splatted channel.
using dvFramePlanes = std::vector<dvFramePlane<float>>;

/// Sums and composites; the formulas are those of the row code (convole, compositeSlices).
///
/// What goes through a transform has its rounding, which where nearly nothing covers a pixel, or
/// beside what is far brighter, is more than the pixel itself. So stretches of dvRepairColumns px
/// in which some coverage is below dvRepairCoverage, or some value too small for the rounding
/// there, are made anew from splats alone, and what nothing covers stays exactly 0.
class dvFrameMaker {
 public:
  /// `padding`: how far a source row reaches, px. All must outlive this.
  dvFrameMaker(const dvLineSettings& settings, int padding, dvParallel& parallel,
               dvTileChoice choice = dvTileChoice::ByCost);

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
  /// What is being summed and composited.
  struct Group {
    std::size_t place = 0;
    std::unique_ptr<dvSpectrumCache> spectra;
    dvFramePlane<double> coverage;
    std::vector<Scratch> scratches;
    std::unique_ptr<dvTransformRounding> rounding;  ///< null: no slice went through a transform
  };
  /// The direct part of a source row, where a part of the slice is transformed.
  struct DirectRow {
    explicit DirectRow(dvSplatRow splats) : row(std::move(splats)), reach(row) {}
    dvSplatRow row;
    dvRowReach reach;
  };
  /// By source row.
  using DirectRows = std::vector<std::optional<DirectRow>>;

  void makeGroup(std::size_t group, dvFramePlanes& planes,
                 const std::function<void(double)>& progress);
  void makeSlice(Group& group, std::size_t slice, dvFramePlanes& planes);
  bool sliceIsEmpty(std::size_t group, std::size_t slice) const;
  DirectRows directRows(const dvSliceTiles& tiles) const;
  /// Calls add(splats, line, dy) for all splats of a group centred in reach of row y, source row by
  /// source row; `line` is the place of theirs in lines_.
  template <typename Add>
  void forEachReaching(std::size_t group, int y, const Add& add) const;
  void sumRow(const Group& group, std::size_t slice, const DirectRows* direct, int y,
              Scratch& scratch) const;
  void addSpecials(const Group& group, std::size_t slice, int y, int left, int right,
                   std::vector<std::vector<double>>& sums) const;
  void compositeRow(Group& group, int y, const Scratch& scratch, dvFramePlanes& planes) const;
  void finishRow(Group& group, int y, dvFramePlanes& planes) const;
  bool isInDoubt(const Group& group, int y, int left, int right, const dvFramePlanes& planes) const;
  void repairSpan(Group& group, int y, int left, int right, dvFramePlanes& planes) const;

  const dvLineSettings& settings_;
  int padding_;
  dvParallel& parallel_;
  dvTileChoice choice_;
  dvFrameBox box_;
  const dvSplatLines* lines_ = nullptr;
};

}  // namespace drevin

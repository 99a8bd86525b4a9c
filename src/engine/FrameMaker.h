#pragma once

/// The defocus of a box at once: slices from the nearest to the farthest, each summed and laid
/// under what is there.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "engine/FrameBox.h"
#include "engine/GroupRows.h"
#include "engine/Parallel.h"
#include "engine/ReadyRow.h"
#include "engine/Repair.h"
#include "engine/RowSums.h"
#include "engine/SliceTiles.h"
#include "engine/SplatLine.h"
#include "engine/TransformRounding.h"

namespace drevin {

/// One plane for each splatted channel.
using dvFramePlanes = std::vector<dvFramePlane<float>>;

/// Memory of the spectra of one kernel table above which none are kept for the next slice, bytes.
constexpr std::size_t dvKeptSpectra = std::size_t{64} << 20;

/// Sums and composites; the formulas are those of the row code (convole, compositeSlices).
///
/// What goes through a transform has its rounding, which where nearly nothing covers a pixel, or
/// beside what is far brighter, is more than the pixel itself. So stretches in doubt (Repair.h) are
/// made anew from splats alone; what nothing covers, or nothing but zeros is added to, is exactly 0
/// (NonZeroReach.h).
class dvFrameMaker {
 public:
  /// `padding`: how far a source row reaches, px. All must outlive this.
  dvFrameMaker(const dvLineSettings& settings, int padding, dvParallel& parallel,
               dvTileChoice choice = dvTileChoice::ByCost);

  /// Makes the rows of the box, which spans the columns of the planes; the planes hold zeros there.
  /// Calls `progress` on this thread with the share that is done. After an abort the rows are worth
  /// nothing. Box after box: what can be kept for the next is kept.
  void make(const dvFrameBox& box, const dvSplatLines& lines, dvFramePlanes& planes,
            const std::function<void(double)>& progress);

 private:
  /// What one worker needs for its rows.
  struct Scratch {
    std::unique_ptr<dvRowSums> sums;
    std::vector<std::vector<double>> planes;  ///< values, then weight
    std::vector<float*> colours;              ///< places in the picture, by channel
  };
  /// By row of splats, the direct part, where a part of the slice is transformed.
  using DirectRows = std::vector<dvReadyRow>;
  /// The transformed part of a slice.
  struct Transformed {
    std::vector<dvFramePlane<float>> planes;  ///< zeros between slices
    std::vector<dvColumnSpan> reached;        ///< columns that may have anything but zeros, by row
    DirectRows direct;                        ///< what is not in the planes

    dvColumnSpan columns(int y) const;
    /// Adds row y to the sums and leaves zeros.
    void moveTo(std::vector<std::vector<double>>& sums, int y);
  };
  /// What is being summed and composited.
  struct Group {
    const dvSplatGroup& settings;
    std::size_t channels;  ///< that are summed: a last one of values 1 is its own weight
    const dvKernelTable& kernels;
    dvSpectrumCache& spectra;
    dvRowCost cost;
    dvGroupRows rows;
    dvFramePlane<double> coverage;
    std::vector<Scratch> scratches;
    Transformed transformed;
    std::unique_ptr<dvTransformRounding> rounding;  ///< null: no slice went through a transform
    std::unique_ptr<dvKernelSigns> signs;           ///< null: all values are finite
  };

  dvSpectrumCache& spectraOf(const dvKernelTable& kernels);
  std::vector<Scratch> scratches(std::size_t channels) const;
  void makeGroup(std::size_t place, const dvSplatLines& lines, dvFramePlanes& planes,
                 const std::function<void(double)>& progress);
  void makeSlice(Group& group, std::size_t slice, dvFramePlanes& planes);
  /// Whether there is a transformed part.
  bool transform(Group& group, std::size_t slice);
  DirectRows directRows(const Group& group, const dvSliceTiles& tiles) const;
  /// Sums a row; gives the columns that may have anything but zeros.
  dvColumnSpan sumRow(const Group& group, std::size_t slice, Transformed* transformed, int y,
                      Scratch& scratch) const;
  static void addDirect(const Group& group, const DirectRows& direct, int y, dvRowSums& sums);
  /// The row's places of the channels that are summed, from column x on.
  static void pointAt(const Group& group, int x, int y, dvFramePlanes& planes,
                      std::vector<float*>& colours);
  /// Repairs and divides all rows.
  void finish(Group& group, dvFramePlanes& planes);
  /// Calls visit(left, right) for the cells of row y, the scratch's colours at their first columns,
  /// for as long as it returns true.
  template <typename Visit>
  void forEachCell(Group& group, int y, dvFramePlanes& planes, Scratch& scratch,
                   const Visit& visit) const;
  bool mayBeNothing(Group& group, int y, dvFramePlanes& planes, Scratch& scratch) const;
  /// `reached`: of the whole row; null: as isInDoubt takes it.
  void repairRow(Group& group, int y, const dvReachedColumns* reached, dvFramePlanes& planes,
                 Scratch& scratch) const;
  void finishRow(Group& group, int y, const dvReachedColumns* reached, dvFramePlanes& planes,
                 Scratch& scratch) const;

  const dvLineSettings& settings_;
  int padding_;
  dvParallel& parallel_;
  dvTileChoice choice_;
  dvFrameBox box_;
  std::map<const dvKernelTable*, dvSpectrumCache> spectra_;
};

}  // namespace drevin

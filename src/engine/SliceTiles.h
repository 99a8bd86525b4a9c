#pragma once

/// One slice of one group in square tiles of sources: in each the kernels that many splats share
/// are summed by Fourier transform, the rest is left to the rows.

#include <memory>
#include <vector>

#include "engine/FrameBox.h"
#include "engine/GroupRows.h"
#include "engine/Parallel.h"
#include "engine/TilePlan.h"
#include "engine/TileSum.h"
#include "engine/TransformRounding.h"

namespace drevin {

/// Source pixels along a tile's side. Larger ones overlap less, but their transforms no longer fit
/// into the caches: 256 was measured to be no faster where one blur fills the picture, 384 slower.
constexpr int dvTileSide = 128;
/// A slice with no larger radius is quicker splatted than sorted into tiles.
constexpr int dvLeastTransformed = 12;
/// A value this many times the mean of its tile is a light: it would drown its neighbours in the
/// rounding of a transform, and is splatted by itself.
constexpr float dvLightRatio = 16.0F;
/// A value above this is a light in any case: the sums of a transform are of all values of a tile,
/// times its length squared, and must stay finite.
constexpr float dvGreatestTransformed = 1e25F;

/// A share above this is a light too. Shares are parts of a pixel, 1 at most, but for those of deep
/// samples whose merge has left negative coverage before them: these may be of any size.
constexpr float dvGreatestShare = 4.0F;

class dvSliceTiles {
 public:
  /// Sums the first `channels` values of the splats. Splats that are centred outside `sources`, as
  /// a chromatic shift may leave them, stay direct. All must outlive this.
  dvSliceTiles(const dvKernelTable& kernels, std::size_t channels, const dvGroupRows& rows,
               std::size_t slice, const dvFrameBox& sources);

  /// Chooses every tile's kernels for a picture of `wanted`. `cost` is that of the group's kernels.
  void choose(dvTileChoice choice, const dvRowCost& cost, const dvFrameBox& wanted,
              dvParallel& parallel);
  /// Whether any tile has kernels to transform.
  bool hasTransforms() const;
  /// The columns of each row of a box that transforms may add to.
  std::vector<dvColumnSpan> reached(const dvFrameBox& box) const;

  /// What 1 in a plane of the transformed part stands for: a power of two at which values are of
  /// the order of the weights. Planes that are transformed as one take each other's rounding.
  float unit(std::size_t plane) const { return units_[plane]; }
  /// Adds the transformed part to the planes (values, then weight), which share a box, and what it
  /// may be off by, in units of 1, to `rounding`. Tiles are summed at once, but added one after the
  /// other in an order of their own, so that threads do not show.
  void sum(dvSpectrumCache& spectra, dvParallel& parallel, std::vector<dvFramePlane<float>>& planes,
           dvTransformRounding& rounding) const;

  /// What of a row is left to be splatted directly, as a row of one slice.
  dvSplatRow directRow(std::size_t row) const;

 private:
  /// Splats of one row, at least one.
  struct Part {
    const dvGroupRows::Row* row;
    dvRecordRange records;
  };
  struct Tile {
    int left = 0;
    int bottom = 0;
    std::vector<Part> parts;  ///< its splats
    dvTilePlan plan;
    std::vector<float> light;  ///< by channel, then of the share: what is above is direct
    bool isWhole = false;      ///< nothing is left to the rows
  };
  /// Neighbours in a row with shares of the same kernels, none of them a light.
  struct Run {
    const dvGroupRows::Row* row;
    std::size_t begin;  ///< of the row's records
    std::size_t end;
  };
  /// What a run adds to one kernel.
  struct Impulse {
    const dvSplatRow* splats;
    std::size_t begin;
    std::size_t end;
    std::ptrdiff_t rowPlace;  ///< in the tile, of column 0 of the picture
    float dvSplatRecord::*share;
  };
  using ImpulseList = std::vector<Impulse>;
  /// A tile being summed, and what that needs.
  struct Impulses {
    std::unique_ptr<dvTileSum> sum;
    std::vector<ImpulseList> byKernel;
    std::vector<float> planes;          ///< of one kernel; zeros in between
    std::vector<double> squares;        ///< of all kernels by plane, times that of the kernels
    std::vector<double> kernelSquares;  ///< of the splats of one kernel
  };

  void findParts(Tile& tile) const;
  template <typename Visit>
  void forEachRecord(const Tile& tile, const Visit& visit) const;
  /// Returns whether there are lights, which are in no run.
  template <typename Visit>
  bool forEachRun(const Tile& tile, const Visit& visit) const;
  void findLights(Tile& tile) const;
  void plan(Tile& tile, const dvRowCost& cost, const dvFrameBox& wanted, dvTileChoice choice) const;
  void findUnits();
  void findOrder();
  void collectImpulses(const Tile& tile, Impulses& impulses) const;
  /// Adds the splats of a kernel to the planes, and their squares to those of all.
  void addToPlanes(const ImpulseList& kernel, double kernelSquare, Impulses& impulses) const;
  void addToPlanes(const Impulse& impulse, float* planes, double* squares) const;
  void clearPlanes(const ImpulseList& kernel, Impulses& impulses) const;
  void sumTile(const Tile& tile, const dvParallel& parallel, Impulses& impulses,
               dvSpectrumCache& spectra, const dvTransformRounding& rounding) const;
  void addRounding(const Tile& tile, const Impulses& impulses, dvTransformRounding& rounding) const;
  void makeSpectra(dvSpectrumCache& spectra, dvParallel& parallel) const;
  void addTile(const Tile& tile, const Impulses& impulses, std::vector<dvFramePlane<float>>& planes,
               dvTransformRounding& rounding) const;
  static dvFrameBox reachOf(const Tile& tile);
  static bool isLight(const Tile& tile, const dvSplatRecord& record, const float* values);
  void append(const dvSplatRow& row, std::size_t begin, std::size_t end, dvSplatRow& direct) const;
  /// Appends what the tile's plan leaves of records of a row.
  void appendLeft(const Tile& tile, const dvGroupRows::Row& from, const dvRecordRange& range,
                  dvSplatRow& direct) const;
  /// Null outside the tiles.
  const Tile* tileOf(int x, int y) const;

  std::size_t channels_;
  const dvGroupRows& rows_;
  std::size_t slice_;
  dvFrameBox sources_;
  dvCutKernels kernels_;
  int across_;
  std::vector<Tile> tiles_;
  std::vector<float> units_;        ///< by plane
  std::vector<float> perUnit_;      ///< by channel, 1 / unit
  std::vector<const Tile*> order_;  ///< in which those with transforms are added
};

}  // namespace drevin

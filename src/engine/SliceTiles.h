#pragma once

/// One slice of one group in square tiles of sources: in each the kernels that many splats share
/// are summed by Fourier transform, the rest is left to the rows.

#include <vector>

#include "engine/FrameBox.h"
#include "engine/GroupRows.h"
#include "engine/Parallel.h"
#include "engine/Spectrum.h"
#include "engine/TileImpulses.h"
#include "engine/TileLights.h"
#include "engine/TilePlan.h"
#include "engine/TileSum.h"
#include "engine/TransformRounding.h"

namespace drevin {

/// A slice with no larger radius is quicker splatted than sorted into tiles.
constexpr int dvLeastTransformed = 12;
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

  /// Adds the transformed part to the planes (values, then weight), which share a box, and what it
  /// may be off by to `rounding`. Tiles are summed at once, but added one after the
  /// other in an order of their own, so that threads do not show.
  void sum(dvSpectrumCache& spectra, dvParallel& parallel, std::vector<dvFramePlane<float>>& planes,
           dvTransformRounding& rounding) const;

  /// What of a row is left to be splatted directly, as a row of one slice.
  dvSplatRow directRow(std::size_t row) const;

 private:
  struct Tile {
    int left = 0;
    int bottom = 0;
    std::vector<dvTilePart> parts;  ///< its splats
    dvTileLights lights;
    dvTilePlan plan;
    std::vector<float> units;  ///< by channel, then of the weight; see dvTileImpulses
    bool isWhole = false;      ///< nothing is left to the rows
  };
  /// A tile being summed, and what that needs.
  struct Work {
    explicit Work(std::size_t channels)
        : impulses(channels), sum(dvTileSide, static_cast<int>(channels) + 1) {}

    dvTileImpulses impulses;
    dvTileSum sum;
    std::vector<double> squares;  ///< of all kernels by plane, times that of the kernels
  };

  void findParts(Tile& tile) const;
  void plan(Tile& tile, const dvRowCost& cost, const dvFrameBox& wanted, dvTileChoice choice) const;
  void findUnits(Tile& tile) const;
  void findOrder();
  void makeSpectra(dvSpectrumCache& spectra, dvParallel& parallel) const;
  void sumTile(const Tile& tile, const dvParallel& parallel, Work& work, dvSpectrumCache& spectra,
               const dvTransformRounding& rounding) const;
  void addTile(const Tile& tile, const Work& work, std::vector<dvFramePlane<float>>& planes,
               dvTransformRounding& rounding) const;
  static void addRounding(const Tile& tile, const Work& work, dvTransformRounding& rounding);
  static dvFrameBox reachOf(const Tile& tile);
  void append(const dvSplatRow& row, const dvRecordRange& range, dvSplatRow& direct) const;
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
  std::vector<const Tile*> order_;  ///< in which those with transforms are added
};

}  // namespace drevin

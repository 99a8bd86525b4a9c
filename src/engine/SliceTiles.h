#pragma once

/// One slice of one group in square tiles of sources: in each the kernels that many splats share are
/// summed by Fourier transform, the rest is left to the rows.

#include <memory>
#include <vector>

#include "engine/FrameBox.h"
#include "engine/GroupRows.h"
#include "engine/Parallel.h"
#include "engine/TilePlan.h"
#include "engine/TileSum.h"
#include "engine/TransformRounding.h"

namespace drevin {

/// Source pixels along the side of the smallest tiles; others have a multiple of it.
constexpr int dvTileSide = 128;
/// The sides to choose from, ascending: where one blur fills a large area, larger tiles overlap
/// less.
const std::vector<int>& tileSides();

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
  /// Splats that are centred outside `sources`, as a chromatic shift may leave them, stay direct.
  /// All must outlive this.
  dvSliceTiles(const dvSplatGroup& group, const dvGroupRows& rows, std::size_t slice,
               const dvFrameBox& sources);

  /// Chooses the tiles' side, of `sides` (multiples of dvTileSide that begin with it), and every
  /// tile's kernels. `cost` is that of the group's kernels.
  void choose(dvTileChoice choice, const dvRowCost& cost, dvParallel& parallel,
              const std::vector<int>& sides = tileSides());
  /// Whether any tile has kernels to transform.
  bool hasTransforms() const;
  /// The pixels that transforms may add to.
  dvFrameBox reached() const;

  int side() const { return side_; }
  /// What 1 in a plane of the transformed part stands for: a power of two at which values are of
  /// the order of the weights. Planes that are transformed as one take each other's rounding.
  float unit(std::size_t plane) const { return units_[plane]; }
  /// Adds the transformed part to the planes (values, then weight), which share a box, and what it
  /// may be off by, in units of 1, to `rounding`. Tiles are summed at once, but added in order, so
  /// that threads do not show.
  void sum(dvSpectrumCache& spectra, dvParallel& parallel, std::vector<dvFramePlane<float>>& planes,
           dvTransformRounding& rounding) const;

  /// What of a row is left to be splatted directly, as a row of one slice.
  dvSplatRow directRow(std::size_t row) const;

 private:
  struct Tile {
    int left = 0;
    int bottom = 0;
    dvTilePlan plan;
    std::vector<float> light;  ///< by channel, then of the share: what is above is direct
  };
  /// A splat's share of one kernel, by its place in the tile.
  struct Impulse {
    int place;
    float share;
    const float* values;
  };
  /// What one worker needs for its tiles.
  struct Impulses {
    std::unique_ptr<dvTileSum> sum;
    std::vector<std::vector<Impulse>> byKernel;
    std::vector<float> planes;    ///< of one kernel
    std::vector<double> squares;  ///< of all kernels by plane, times that of the kernels
  };

  void layOut(int side);
  template <typename Visit>
  void forEachRecord(const Tile& tile, const Visit& visit) const;
  void findLights(Tile& tile) const;
  dvTileCensus census(const Tile& tile) const;
  int chooseSide(const std::vector<dvTileCensus>& parts, const std::vector<int>& sides,
                 const dvRowCost& cost, dvParallel& parallel) const;
  double gainOfSide(const std::vector<dvTileCensus>& parts, int side, const dvRowCost& cost,
                    dvParallel& parallel) const;
  void findUnits();
  void collectImpulses(const Tile& tile, Impulses& impulses) const;
  void fillPlanes(const std::vector<Impulse>& splats, double kernelSquare,
                  Impulses& impulses) const;
  void sumTile(const Tile& tile, const dvParallel& parallel, Impulses& impulses,
               dvSpectrumCache& spectra, const dvTransformRounding& rounding) const;
  void addRounding(const Tile& tile, const Impulses& impulses, dvTransformRounding& rounding) const;
  bool isLight(const Tile& tile, const dvSplatRecord& record, const float* values) const;
  /// Null outside the tiles.
  const Tile* tileOf(int x, int y) const;
  int planes() const { return static_cast<int>(units_.size()); }

  const dvSplatGroup& group_;
  const dvGroupRows& rows_;
  std::size_t slice_;
  dvFrameBox sources_;
  dvCutKernels kernels_;
  int side_ = dvTileSide;
  int across_ = 0;
  std::vector<Tile> tiles_;
  std::vector<float> units_;  ///< by plane
};

}  // namespace drevin

#pragma once

/// One slice of one group in square tiles of sources: in each the radii that many splats share are
/// summed by Fourier transform, the rest is left to the rows.

#include <cstdint>
#include <memory>
#include <vector>

#include "engine/FrameBox.h"
#include "engine/Parallel.h"
#include "engine/SplatLine.h"
#include "engine/TileSum.h"
#include "engine/TransformRounding.h"

namespace drevin {

/// Source pixels along a tile's side.
constexpr int dvTileSide = 128;
/// A value this many times the mean of its tile is a light: it would drown its neighbours in the
/// rounding of a transform, and is splatted by itself.
constexpr float dvLightRatio = 16.0F;
/// A value above this is a light in any case: the sums of a transform are of all values of a tile,
/// times its length squared, and must stay finite.
constexpr float dvGreatestTransformed = 1e25F;

/// A share above this is a light too. Shares are parts of a pixel, 1 at most, but for those of deep
/// samples whose merge has left negative coverage before them: these may be of any size.
constexpr float dvGreatestShare = 4.0F;

/// How a tile's radii are chosen.
enum class dvTileChoice { ByCost, Nothing, Everything };

/// Source rows by their centres. Splats of groups without a chromatic shift only: they are centred
/// on their own row.
class dvSliceTiles {
 public:
  /// `lines[i]` is the source row lines[0]'s y + i; null adds nothing. `columns` are those of the
  /// sources. All must outlive this.
  dvSliceTiles(const dvSplatGroup& group, std::size_t groupPlace, std::size_t slice,
               const std::vector<const dvSplatLine*>& lines, int bottom, int left, int right);

  /// Chooses every tile's radii.
  void choose(dvTileChoice choice, dvParallel& parallel);
  /// Whether any tile has radii to transform.
  bool hasTransforms() const;

  /// What 1 in a plane of the transformed part stands for: a power of two at which values are of
  /// the order of the weights. Planes that are transformed as one take each other's rounding.
  float unit(std::size_t plane) const { return units_[plane]; }
  /// Adds the transformed part to the planes (values, then weight), which share a box, and what it
  /// may be off by, in units of 1, to `rounding`. Tiles are summed at once, but added in order, so
  /// that threads do not show.
  void sum(dvSpectrumCache& spectra, dvParallel& parallel, std::vector<dvFramePlane<float>>& planes,
           dvTransformRounding& rounding) const;

  /// What of a source row is left to be splatted directly, as a row of one slice.
  dvSplatRow directRow(std::size_t line) const;

 private:
  struct Tile {
    int left = 0;
    int bottom = 0;
    int largest = -1;                       ///< largest transformed radius; -1: none
    std::vector<std::uint8_t> transformed;  ///< by radius
    std::vector<float> light;  ///< by channel, then of the share: what is above is direct
  };
  class Turns;
  /// A splat's share of one radius, by its place in the tile.
  struct Impulse {
    int place;
    float share;
    const float* values;
  };
  /// What one worker needs for its tiles.
  struct Impulses {
    std::unique_ptr<dvTileSum> sum;
    std::vector<std::vector<Impulse>> byRadius;
    std::vector<float> planes;    ///< of one radius
    std::vector<double> squares;  ///< of all radii by plane, times that of the kernels
  };

  template <typename Visit>
  void forEachRecord(const Tile& tile, const Visit& visit) const;
  void chooseTile(Tile& tile, dvTileChoice choice) const;
  void findLights(Tile& tile) const;
  void findUnits();
  void collectImpulses(const Tile& tile, Impulses& impulses) const;
  void fillPlanes(const std::vector<Impulse>& splats, double kernelSquare,
                  Impulses& impulses) const;
  void sumTile(const Tile& tile, Impulses& impulses, dvSpectrumCache& spectra,
               const dvTransformRounding& rounding) const;
  void addRounding(const Tile& tile, const Impulses& impulses, dvTransformRounding& rounding) const;
  bool isLight(const Tile& tile, const dvSplatRecord& record, const float* values) const;
  const Tile& tileOf(std::size_t line, int x) const;

  const dvSplatGroup& group_;
  std::size_t groupPlace_;
  std::size_t slice_;
  const std::vector<const dvSplatLine*>& lines_;
  int bottom_;
  int left_;
  int tilesAcross_;
  std::vector<Tile> tiles_;
  std::vector<float> units_;  ///< by plane
};

}  // namespace drevin

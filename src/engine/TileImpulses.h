#pragma once

/// A tile's splats as planes of values: kernel by kernel, what is to be convolved with it.

#include <cstddef>
#include <vector>

#include "engine/CutKernels.h"
#include "engine/TilePlan.h"
#include "engine/TileRuns.h"

namespace drevin {

/// Source pixels along a tile's side. Larger ones overlap less, but their planes no longer fit into
/// the caches, and share fewer kernels: 256 was measured to save a tenth of the time where one
/// large blur or all of them fill the picture, and to take four tenths more for a scene; 384 is
/// slower.
constexpr int dvTileSide = 128;
constexpr std::size_t dvTilePixels = static_cast<std::size_t>(dvTileSide) * dvTileSide;

/// Planes of dvTileSide x dvTileSide, one after the other, of one kernel at a time:
///
///   plane[c](x, y) = sum over splats i at (x, y) of  share_i * value[c]_i / unit[c]
///   weight(x, y)   = sum over splats i at (x, y) of  share_i
///
///   share_i  of the kernel
///   unit[c]  a power of two at which the channel's values are of the order of the shares: planes
///            that go through a transform as one take each other's rounding
class dvTileImpulses {
 public:
  explicit dvTileImpulses(std::size_t channels)
      : planes_((channels + 1) * dvTilePixels), squares_(channels + 1) {}

  /// Takes a tile whose first pixel is (left, bottom), and what of its splats the plan takes but
  /// lights. The splats must outlive what follows.
  void begin(int left, int bottom, const std::vector<dvTilePart>& parts, const dvTileLights& lights,
             const dvTilePlan& plan, const dvCutKernels& kernels);
  /// Whether a kernel has any.
  bool has(int place) const { return !byKernel_[static_cast<std::size_t>(place)].empty(); }
  /// The planes of a kernel. `perUnit` is 1 / unit by channel. Call clear before the next kernel.
  const float* fill(int place, const std::vector<float>& perUnit);
  /// Sums of the squares of the planes, by plane, of the kernel that was filled in.
  const std::vector<double>& squares() const { return squares_; }
  void clear(int place);

 private:
  /// What a run adds to one kernel.
  struct Impulse {
    const dvSplatRow* splats;
    std::size_t begin;
    std::size_t end;
    std::ptrdiff_t rowPlace;  ///< in the tile, of column 0 of the picture
    float dvSplatRecord::*share;
  };

  void add(const Impulse& impulse, const std::vector<float>& perUnit);

  std::vector<std::vector<Impulse>> byKernel_;
  std::vector<float> planes_;  ///< zeros between kernels
  std::vector<double> squares_;
};

}  // namespace drevin

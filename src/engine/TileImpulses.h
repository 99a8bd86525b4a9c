#pragma once

/// A tile's splats as planes of values: kernel by kernel, what is to be convolved with it.

#include <cstddef>
#include <vector>

#include "engine/CutKernels.h"
#include "engine/TilePlan.h"
#include "engine/TileRuns.h"

namespace drevin {

/// Source pixels along a tile's side. Larger ones overlap less, but their transforms no longer fit
/// into the caches: 256 was measured to be no faster where one blur fills the picture, 384 slower.
constexpr int dvTileSide = 128;
constexpr std::size_t dvTilePixels = static_cast<std::size_t>(dvTileSide) * dvTileSide;

/// Planes of dvTileSide x dvTileSide, one after the other: each channel's share * value / unit,
/// then the shares. They are of one kernel at a time.
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

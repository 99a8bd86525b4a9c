#pragma once

/// Which kernels of a tile of sources go through the Fourier transform.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/CutKernels.h"
#include "engine/FrameBox.h"
#include "engine/RowCost.h"
#include "engine/SplatRecords.h"

namespace drevin {

/// How a tile's kernels are chosen.
enum class dvTileChoice { ByCost, Nothing, Everything };

struct dvTilePlan;

/// How many splats of a tile take each kernel.
class dvTileCensus {
 public:
  explicit dvTileCensus(const dvCutKernels& kernels);

  /// Counts splats like `record`, of the same radius and with shares of the same kernels, centred
  /// `shift` rows above their source row.
  void add(const dvCutKernels& kernels, const dvSplatRecord& record, int shift, int count = 1);

  /// Time that the splats of a kernel take when they are added row by row, ns; 0 if there are none.
  /// A splat's two kernels are added together: each is half of its cost.
  double directTime(const dvCutKernels& kernels, int place, int side, const dvRowCost& cost) const;
  bool has(int place) const;
  /// Whether a plan leaves nothing of the splats to the rows.
  bool isWholeBy(const dvTilePlan& plan) const;

 private:
  struct Uses {
    int alone = 0;  ///< splats of this kernel alone
    int near = 0;   ///< of this one and the next radius
    int far = 0;    ///< of this one and the radius before
  };

  /// Of the splats of a nearer size, in columns on a row.
  double spacing(int radius, int side) const;

  bool hasOthers_ = false;   ///< splats of kernels that are not among these
  std::vector<Uses> uses_;   ///< by place among the kernels
  std::vector<int> splats_;  ///< by radius of the nearer size
};

/// How much of what the splats of a tile cover is wanted: rows are added for the box alone, while a
/// transform makes all that its tile reaches.
class dvWantedPart {
 public:
  /// Of a tile at (left, bottom) for a box.
  dvWantedPart(int left, int bottom, int side, const dvFrameBox& box)
      : left_(left), bottom_(bottom), side_(side), box_(box) {}

  /// The share of the rows and columns of kernels of a radius that lie in the box, on average over
  /// the tile. A splat beside the columns takes some time as well.
  double share(int radius) const;

 private:
  int left_;
  int bottom_;
  int side_;
  dvFrameBox box_;
};

struct dvTilePlan {
  std::vector<std::uint8_t> transformed;  ///< by place among the kernels; empty: none
  int largest = -1;                       ///< largest radius of those; -1: none
  int length = 0;                         ///< of the transform
  double gain = 0.0;                      ///< time saved, ns
  double time = 0.0;                      ///< that the transforms are expected to take, ns

  bool takes(int place) const {
    return largest >= 0 && place >= 0 && transformed[static_cast<std::size_t>(place)] != 0;
  }
};

/// The plan of a tile of side x side sources with `planes` planes, the weight included.
///
/// By cost: of all lengths N, each with the kernels that gain by it, the one at which
///
///   gain(N) = sum over kernels of max(0, direct time - fourierAddCost(N)) - fourierFinishCost(N)
///
/// is largest, over kernels whose pictures fit into it, the direct time that of what is wanted;
/// nothing if none gains. Radius 0 is not taken: what is in focus stays as sharp and as exact as it
/// is.
dvTilePlan planTile(const dvTileCensus& census, const dvCutKernels& kernels, int side, int planes,
                    const dvRowCost& cost, dvTileChoice choice, const dvWantedPart& wanted);

}  // namespace drevin

#pragma once

/// The sum over radii of tiles convolved with kernels, by Fourier transform.

#include <cstddef>
#include <vector>

#include "engine/FourierBuffer.h"
#include "engine/Spectrum.h"
#include "engine/Transform.h"

namespace drevin {

/// Pixels [left, right) x [bottom, top), counted from the first pixel of a tile.
struct dvTileBox {
  int left = 0;
  int bottom = 0;
  int right = 0;
  int top = 0;
};

/// For each plane p of a tile
///
///   picture_p(x, y) = sum over R, (i, j) of  value_p,R(i, j) * K_R[R + (j - y)][R + (x - i)]
///
/// Planes are transformed in pairs, as real and imaginary part of one complex plane: kernels are
/// real, so the pair comes through apart,  (A + iB) * K = A * K + i B * K.  The products are summed
/// as frequencies and transformed back once. An odd plane costs about half a pair.
///
/// Error: about 1e-7 of the square root of the summed squares of the tile's values times the
/// kernel's; what is exactly zero in the sum comes out as values of that size. Values must be
/// finite: one NaN or infinity spreads over the whole picture of its pair.
///
/// begin, add for each radius, finish, addInto for each plane; by one thread. All memory is kept
/// for the next tile.
class dvTileSum {
 public:
  /// Tiles of side x side pixels, side >= 1; planes >= 1.
  dvTileSum(int side, int planes);

  /// Starts a tile. `length` is one that transformSide gives, at least the side plus twice the
  /// largest radius to come.
  void begin(int length);
  /// Adds one radius. `planes` are all planes one after the other, rows of `side` values by
  /// ascending y; sparse ones are as welcome. The spectrum is one of this tile's length.
  void add(const float* planes, const dvKernelSpectrum& spectrum);
  /// Transforms the sum back.
  void finish();
  /// Adds the picture of a plane times `scale`, as far as the kernels of `reach` get, within `box`:
  /// the tile's first pixel, which may lie outside the box, would be target[origin]; `stride`
  /// floats to the next row.
  void addInto(int plane, const dvTileBox& box, int reach, float scale, float* target,
               std::ptrdiff_t origin, std::ptrdiff_t stride) const;

 private:
  /// Two planes, or the odd one.
  struct Pair {
    bool odd = false;
    bool empty = true;  ///< nothing but zeros so far; the values are undefined
    dvFourierBuffer sums;
  };

  void addPair(Pair& pair, const dvKernelSpectrum& spectrum);
  const float* block(int plane, int row, int column) const;

  int side_;
  dvForwardTransform transform_;
  dvFourierBuffer strip_;
  std::vector<Pair> pairs_;
};

}  // namespace drevin

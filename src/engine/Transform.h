#pragma once

/// Two-dimensional Fourier transforms of square planes, two real planes at a time as the real and
/// the imaginary part of a complex one.
///
/// The frequencies of a plane of N x N are N / 16 strips one after the other: strip b holds in its
/// lanes the sixteen vertical frequencies of block b, in its positions the horizontal ones, both in
/// the order of dvFourierPlan. A picture lies in the same memory: N / 16 rows of blocks, of which
/// block (i, j) has rows 16 i on as positions and columns 16 j on as lanes. The picture of a single
/// real plane has the columns of every other block as imaginary parts of the block before it.

#include <cstddef>

#include "engine/FourierBuffer.h"
#include "engine/FourierPlan.h"

namespace drevin {

/// Floats of a complex plane of side x side.
constexpr std::size_t transformFloats(int side) {
  return 2 * static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
}

/// Real rows of two planes; the second may be missing (null). Everything outside is zero.
struct dvPlanePair {
  const float* first = nullptr;
  const float* second = nullptr;
  std::ptrdiff_t stride = 0;  ///< floats from row to row
  int width = 0;
  int height = 0;
};

/// Forward transforms of planes, by one thread. Columns first, all of them; then the rows, sixteen
/// vertical frequencies at a time.
///
///   F(u, v) = sum over (x, y) of  f(x, y) * exp(-2 pi i (u x + v y) / side)
class dvForwardTransform {
 public:
  /// Chooses the length, one that transformSide gives, and the vector code. Nothing allocates here
  /// or later unless more is needed than ever before.
  void begin(int side);

  const dvFourierPlan& plan() const { return *plan_; }
  const dvFourierPasses& passes() const { return *passes_; }

  /// Transforms the columns. Width and height are at most the length. Returns false if all values
  /// are zero.
  bool columns(const dvPlanePair& planes);
  /// Transforms the rows of one block of vertical frequencies into `strip`. Where the second plane
  /// is missing, only those that are kept (dvFourierPlan::isKept) are there.
  void rows(int block, float* strip) const;
  /// Likewise, multiplied by the factors and added to `sums`, or stored there for `first`.
  void multiplyRows(int block, const dvStripFactors& factors, bool first, float* sums);

 private:
  bool pairColumns(const dvPlanePair& planes);
  bool realColumns(const dvPlanePair& planes);
  float* turnedColumns(int block, int x);
  void clearColumns(int begin, int end);

  const dvFourierPlan* plan_ = nullptr;
  const dvFourierPasses* passes_ = nullptr;
  dvFourierBuffer line_;   ///< sixteen columns
  dvFourierBuffer strip_;  ///< their transform, or that of rows
  /// By block of vertical frequencies, which are in the lanes, `width_` positions, as many as there
  /// are columns.
  dvFourierBuffer turned_;
  int width_ = 0;       ///< a multiple of sixteen
  int headBlocks_ = 0;  ///< blocks of positions from the first on; what follows is zero
};

/// Transforms the frequencies of a plane back in place, but for a factor of side * side. `strip` is
/// scratch, one strip. `real` is for a single real plane, of which only the blocks that are kept
/// are read.
void inverseTransform(const dvFourierPlan& plan, const dvFourierPasses& passes, bool real,
                      float* frequencies, float* strip);

}  // namespace drevin

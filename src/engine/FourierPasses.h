#pragma once

/// The vector code of the Fourier transform: strips of sixteen lines transformed side by side.
///
/// A strip holds sixteen complex lines, one in each lane: for each position along the lines the
/// sixteen real parts, then the sixteen imaginary parts. It begins on a boundary of 64 bytes. The
/// layout is the same at every instruction set.

#include <cstddef>

namespace drevin {

constexpr int dvStripLanes = 16;
/// Floats from one position of a strip to the next.
constexpr int dvStripStep = 2 * dvStripLanes;
/// Floats of a block: sixteen positions of a strip.
constexpr int dvStripBlock = dvStripLanes * dvStripStep;
/// Alignment of strips, bytes.
constexpr std::size_t dvStripAlignment = 64;

/// A transform of side = outer * inner * 16 positions in three steps: the line splits into `outer`
/// parts, each part into `inner` blocks of sixteen neighbours, and each of those into single
/// values. A step that splits `length` positions by `radix` makes
///
///   part j, position i = w^(i j) * sum over l of  x[i + l * length / radix] * exp(-2 pi i l j /
///   radix)
///
/// with w = exp(-2 pi i / length), the twiddle factors, which are 1 in the last step. Frequencies
/// come out in the order of dvFourierPlan::frequency.
struct dvFourierSteps {
  int side = 16;
  int outer = 1;
  int inner = 1;
  const float* outerTwiddles = nullptr;  ///< real and imaginary part by i, then j from 1
  const float* innerTwiddles = nullptr;
  /// Of both: exp(-2 pi i * i (j + outer k) / side) by j < outer, i < 16, k < inner but for j = k =
  /// 0.
  const float* jointTwiddles = nullptr;
};

/// Factors of a strip of frequencies, themselves a strip.
struct dvStripFactors {
  const float* values = nullptr;
  /// Not null: `values` is the strip of the negated frequencies of a real picture, its positions
  /// negated by blocks of sixteen as listed here, and is to be turned about and conjugated.
  const int* mirroredBlocks = nullptr;
};

/// Which blocks of frequencies are there for real lines; see dvFourierPlan.
struct dvRealBlocks {
  const int* mirrored = nullptr;
  const int* kept = nullptr;
};

/// The same functions for each instruction set.
struct dvFourierPasses {
  /// Fills one part, real or imaginary (from dvStripLanes on), of the first `rows` positions of a
  /// strip from rows `stride` floats apart, and the rest of their last block with zeros. Lanes from
  /// `columns` on are zero, and all where `row` is null. Returns whether any value is not zero; -0
  /// may count.
  bool (*load)(const float* row, std::ptrdiff_t stride, int columns, int rows, float* part);
  /// Transforms a line that is `head` for `headBlocks` blocks, then zero, into `strip`, which is
  /// another place.
  void (*forward)(const dvFourierSteps& steps, const float* head, int headBlocks, float* strip);
  /// As forward, then  sums += strip * factors,  or  sums = strip * factors  for `first`. `strip`
  /// is overwritten.
  void (*forwardMultiply)(const dvFourierSteps& steps, const float* head, int headBlocks,
                          const dvStripFactors& factors, bool first, float* strip, float* sums);
  /// Transposes a block: lanes become positions. Not in place.
  void (*turn)(const float* from, float* to);
  /// A block of the transform of real lines a + i b, and the block with the negated frequencies:
  /// blocks of the transforms of a and of b, transposed. `zeroBlock` tells block 0; b may be null.
  void (*turnReal)(const float* block, const float* negated, bool zeroBlock, float* a, float* b);
  /// Undoes forward in place, but for a factor `side`.
  void (*inverse)(const dvFourierSteps& steps, float* strip);
  /// Likewise sixteen columns of a plane whose rows are strips, in place: block b of the columns'
  /// frequencies, which lie in its lanes, is at columns + b * stride, and that of the result.
  /// `strip` is scratch.
  void (*inverseColumns)(const dvFourierSteps& steps, float* columns, std::ptrdiff_t stride,
                         float* strip);
  /// Likewise real columns, of which only the blocks that are kept are read, and the columns at
  /// `next`, which may be null: the result has those as its imaginary parts.
  void (*inverseRealColumns)(const dvFourierSteps& steps, const dvRealBlocks& blocks,
                             float* columns, const float* next, std::ptrdiff_t stride,
                             float* strip);
  /// Adds `columns` lanes, of one part, of `rows` positions, times `scale`, to rows `stride` floats
  /// apart.
  void (*add)(const float* block, int rows, int columns, float scale, float* to,
              std::ptrdiff_t stride);
};

namespace baseline {
extern const dvFourierPasses fourierPasses;
}
namespace avx2 {
extern const dvFourierPasses fourierPasses;
}
namespace avx512 {
extern const dvFourierPasses fourierPasses;
}

}  // namespace drevin

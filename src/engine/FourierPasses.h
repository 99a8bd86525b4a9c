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

/// The same functions for each instruction set.
struct dvFourierPasses {
  /// Fills `rows` positions of `strip`, and the rest of their last block with zeros, from real rows
  /// `stride` floats apart: real parts from `a`,
  /// imaginary ones from `b`, zeros where that is null; lanes from `columns` on are zero. Returns
  /// whether any value is not zero; -0 may count.
  bool (*load)(const float* a, const float* b, std::ptrdiff_t stride, int columns, int rows,
               float* strip);
  /// Transforms a line that is `head` for `headBlocks` blocks, then zero, into `strip`, which is
  /// another place.
  void (*forward)(const dvFourierSteps& steps, const float* head, int headBlocks, float* strip);
  /// As forward, then  sums += strip * factors,  or  sums = strip * factors  for `first`. `strip`
  /// is overwritten.
  void (*forwardMultiply)(const dvFourierSteps& steps, const float* head, int headBlocks,
                          const dvStripFactors& factors, bool first, float* strip, float* sums);
  /// Undoes forward in place, but for a factor `side`.
  void (*inverse)(const dvFourierSteps& steps, float* strip);
  /// Likewise sixteen columns of a plane whose rows are strips, in place: block b of the columns'
  /// frequencies, which lie in its lanes, is at columns + b * stride, and that of the result.
  /// `strip` is scratch. `keptBlocks` is null, or names for a real plane the block that is to be
  /// read for each: itself or the one with the negated frequencies.
  void (*inverseColumns)(const dvFourierSteps& steps, const int* keptBlocks, float* columns,
                         std::ptrdiff_t stride, float* strip);
  /// Transposes a block: lanes become positions. Not in place.
  void (*turn)(const float* from, float* to);
  /// Adds `columns` lanes, of one part, of `rows` positions to rows `stride` floats apart.
  void (*add)(const float* block, int rows, int columns, float* to, std::ptrdiff_t stride);
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

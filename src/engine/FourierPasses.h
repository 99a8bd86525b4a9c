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

/// One step of a transform: every block of `length` positions splits into `radix` parts,
///   part j, position i = w^(i j) * sum over l of  x[i + l * length / radix] * exp(-2 pi i l j /
///   radix)
/// with w = exp(-2 pi i / length).
struct dvFourierStep {
  int radix = 1;
  int length = 1;
  const float* twiddles = nullptr;  ///< w^(i j), real and imaginary part, j from 1, i outermost
};

/// A transform of `side` positions: the steps, then one of radix 16 on neighbouring positions. The
/// frequencies come out in the order of dvFourierPlan::frequency.
struct dvFourierSteps {
  int side = 0;
  int count = 0;
  const dvFourierStep* steps = nullptr;
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
  /// Fills `rows` positions of `strip` from real rows `stride` floats apart: real parts from `a`,
  /// imaginary ones from `b`, zeros where that is null; lanes from `columns` on are zero. Returns
  /// whether any value is not zero.
  bool (*load)(const float* a, const float* b, std::ptrdiff_t stride, int columns, int rows,
               float* strip);
  /// Transforms a line that is `head` for `support` positions, then zero, into `strip`, which is
  /// another place. 0 <= support <= side.
  void (*forward)(const dvFourierSteps& steps, const float* head, int support, float* strip);
  /// As forward, then  sums += strip * factors,  or  sums = strip * factors  for `first`. `strip`
  /// is overwritten.
  void (*forwardMultiply)(const dvFourierSteps& steps, const float* head, int support,
                          const dvStripFactors& factors, bool first, float* strip, float* sums);
  /// Undoes forward in place, but for a factor `side`.
  void (*inverse)(const dvFourierSteps& steps, float* strip);
  /// Transposes a block: lanes become positions. Not in place.
  void (*turn)(const float* from, float* to);
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

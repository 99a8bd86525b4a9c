#pragma once

/// The outer and the inner step of a transform, by radix.

#include "engine/FourierButterflies.h"

namespace drevin {
namespace DREVIN_SIMD_LEVEL {
namespace {

/// z[j] times the twiddle factors, from j = First on.
template <int First, int Radix>
DREVIN_INLINE void twiddle(Complex* z, const float* twiddles) {
  unrolled<First, Radix>([&](auto j) __attribute__((always_inline)) {
    const float* w = twiddles + 2 * (j.value - First);
    z[j.value] = multiplied(z[j.value], w[0], w[1]);
  });
}

/// One step on Radix parts of `partBlocks` blocks, or that step undone. The blocks of the result
/// are `stride` floats apart.
template <int Radix, bool Inverse>
DREVIN_INLINE void split(const float* from, int partBlocks, const float* twiddles, float* to,
                         std::ptrdiff_t stride) {
  using Part = Parts<Inverse>;
  for (int b = 0; b < partBlocks; ++b) {
    const float* source = from + b * dvStripBlock;
    float* target = to + b * stride;
    for (int i = 0; i < dvStripLanes; ++i, twiddles += 2 * (Radix - 1)) {
      for (int at = i * dvStripStep; at < i * dvStripStep + dvStripLanes; at += width) {
        Complex z[Radix];
        unrolled<0, Radix>([&](auto l) __attribute__((always_inline)) {
          z[l.value] = Part::read(source + l.value * partBlocks * dvStripBlock + at);
        });
        if (Inverse) twiddle<1, Radix>(z, twiddles);
        butterfly<Radix>(z);
        if (!Inverse) twiddle<1, Radix>(z, twiddles);
        unrolled<0, Radix>([&](auto l) __attribute__((always_inline)) {
          Part::write(z[l.value], target + l.value * partBlocks * stride + at);
        });
      }
    }
  }
}

template <int Radix>
void splitOuter(float* strip, int partBlocks, const float* twiddles) {
  split<Radix, false>(strip, partBlocks, twiddles, strip, dvStripBlock);
}

template <int Radix>
void splitInner(float* part, const float* twiddles) {
  split<Radix, false>(part, 1, twiddles, part, dvStripBlock);
}

template <int Radix>
void joinOuter(const float* strip, int partBlocks, const float* twiddles, float* to,
               std::ptrdiff_t stride) {
  split<Radix, true>(strip, partBlocks, twiddles, to, stride);
}

template <int Radix>
void joinInner(const float* part, const float* twiddles, float* to, std::ptrdiff_t stride) {
  split<Radix, true>(part, 1, twiddles, to, stride);
}

alignas(dvStripAlignment) constexpr float nothing[dvStripBlock] = {};

/// A line that is `values` for `blocks` blocks, then zero.
struct Head {
  const float* values;
  int blocks;

  const float* block(int b) const { return b < blocks ? values + b * dvStripBlock : nothing; }
};

/// Part J of the outer step and the inner step on it, from a head of which no more than the first
/// part is there: the outer step is then but a rotation, of which what is the same for all
/// positions is done first, the rest with the twiddle factors of the inner step.
template <int Outer, int Inner, int J>
void splitHead(const Head& head, const float* twiddles, float* part) {
  constexpr int first = J == 0 ? 1 : 0;
  const float* from[Inner];
  for (int l = 0; l < Inner; ++l)
    from[l] = head.block(l);
  for (int i = 0; i < dvStripLanes; ++i, twiddles += 2 * (Inner - first)) {
    for (int at = i * dvStripStep; at < i * dvStripStep + dvStripLanes; at += width) {
      Complex z[Inner];
      unrolled<0, Inner>([&](auto l) __attribute__((always_inline)) {
        z[l.value] = rotated<Outer * Inner, J * l.value>(Parts<false>::read(from[l.value] + at));
      });
      butterfly<Inner>(z);
      twiddle<first, Inner>(z, twiddles);
      unrolled<0, Inner>([&](auto k) __attribute__((always_inline)) {
        Parts<false>::write(z[k.value], part + k.value * dvStripBlock + at);
      });
    }
  }
}

/// The outer step from a head of which no more than the first two parts are there.
template <int Radix>
void splitTwo(const Head& head, int partBlocks, const float* twiddles, float* strip) {
  for (int b = 0; b < partBlocks; ++b) {
    const float* near = head.block(b);
    const float* far = head.block(partBlocks + b);
    for (int i = 0; i < dvStripLanes; ++i, twiddles += 2 * (Radix - 1)) {
      for (int at = i * dvStripStep; at < i * dvStripStep + dvStripLanes; at += width) {
        const Complex x = Parts<false>::read(near + at);
        const Complex y = Parts<false>::read(far + at);
        Complex z[Radix];
        unrolled<0, Radix>([&](auto j) __attribute__((always_inline)) {
          z[j.value] = x + rotated<Radix, j.value>(y);
        });
        twiddle<1, Radix>(z, twiddles);
        unrolled<0, Radix>([&](auto j) __attribute__((always_inline)) {
          Parts<false>::write(z[j.value], strip + (j.value * partBlocks + b) * dvStripBlock + at);
        });
      }
    }
  }
}

/// The steps of one radix.
struct Splits {
  void (*two)(const Head& head, int partBlocks, const float* twiddles, float* strip);
  void (*outer)(float* strip, int partBlocks, const float* twiddles);
  void (*inner)(float* part, const float* twiddles);
  void (*outerBack)(const float* strip, int partBlocks, const float* twiddles, float* to,
                    std::ptrdiff_t stride);
  void (*innerBack)(const float* part, const float* twiddles, float* to, std::ptrdiff_t stride);
};

template <int Radix>
const Splits& splits() {
  static constexpr Splits made = {splitTwo<Radix>, splitOuter<Radix>, splitInner<Radix>,
                                  joinOuter<Radix>, joinInner<Radix>};
  return made;
}

/// Of a radix that a plan has; see FourierPlan.cpp.
inline const Splits& splitsOf(int radix) {
  switch (radix) {
    case 1:
      return splits<1>();
    case 2:
      return splits<2>();
    case 3:
      return splits<3>();
    case 4:
      return splits<4>();
    case 5:
      return splits<5>();
    case 6:
      return splits<6>();
    case 8:
      return splits<8>();
    case 9:
      return splits<9>();
    default:
      return splits<10>();
  }
}

/// Both steps from a head, by part.
using HeadSplit = void (*)(const Head& head, const float* twiddles, float* part);

template <int Outer, int Inner>
struct HeadSplits {
  HeadSplit parts[Outer] = {};

  constexpr HeadSplits() {
    unrolled<0, Outer>([&](auto j) { parts[j.value] = splitHead<Outer, Inner, j.value>; });
  }
};

template <int Outer, int Inner>
const HeadSplit* headSplits() {
  static constexpr HeadSplits<Outer, Inner> made;
  return made.parts;
}

/// Of the radices of a plan; see FourierPlan.cpp.
inline const HeadSplit* headSplitsOf(int outer, int inner) {
  switch (100 * outer + inner) {
    case 101:
      return headSplits<1, 1>();
    case 102:
      return headSplits<1, 2>();
    case 103:
      return headSplits<1, 3>();
    case 104:
      return headSplits<1, 4>();
    case 105:
      return headSplits<1, 5>();
    case 106:
      return headSplits<1, 6>();
    case 108:
      return headSplits<1, 8>();
    case 109:
      return headSplits<1, 9>();
    case 110:
      return headSplits<1, 10>();
    case 304:
      return headSplits<3, 4>();
    case 305:
      return headSplits<3, 5>();
    case 208:
      return headSplits<2, 8>();
    case 306:
      return headSplits<3, 6>();
    case 405:
      return headSplits<4, 5>();
    case 308:
      return headSplits<3, 8>();
    case 310:
      return headSplits<3, 10>();
    case 408:
      return headSplits<4, 8>();
    case 409:
      return headSplits<4, 9>();
    case 508:
      return headSplits<5, 8>();
    case 608:
      return headSplits<6, 8>();
    case 610:
      return headSplits<6, 10>();
    case 808:
      return headSplits<8, 8>();
    default:
      return headSplits<8, 9>();
  }
}

}  // namespace
}  // namespace DREVIN_SIMD_LEVEL
}  // namespace drevin

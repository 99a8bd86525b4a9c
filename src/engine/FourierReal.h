#pragma once

/// Real lines two at a time, a + i b, of which the frequencies are told apart and put together by
/// their symmetry,  F(-k) = conj F(k).

#include "engine/FourierTurn.h"

namespace drevin {
namespace DREVIN_SIMD_LEVEL {
namespace {

/// The positions of a block by those of the block with the negated frequencies.
constexpr int mirroredPosition(int position, bool zeroBlock) {
  return zeroBlock ? (dvStripLanes - position) % dvStripLanes : dvStripLanes - 1 - position;
}

/// From a block of the transform of a + i b and the block with the negated frequencies those of
///   a = (Z(k) + conj Z(-k)) / 2,   b = (Z(k) - conj Z(-k)) / 2i
inline void part(const float* block, const float* negated, bool zeroBlock, float* a, float* b) {
  for (int i = 0; i < dvStripLanes; ++i) {
    const float* mirrored = negated + mirroredPosition(i, zeroBlock) * dvStripStep;
    for (int at = i * dvStripStep, lane = 0; lane < dvStripLanes; at += width, lane += width) {
      const Complex z = Parts<false>::read(block + at) * 0.5F;
      const Complex m = Parts<false>::read(mirrored + lane) * 0.5F;
      Parts<false>::write({z.re + m.re, z.im - m.im}, a + at);
      Parts<false>::write({z.im + m.im, m.re - z.re}, b + at);
    }
  }
}

/// The other way: the block of a + i b in place of a's, and the block with the negated frequencies.
inline void join(float* a, const float* b, float* negated) {
  for (int i = 0; i < dvStripLanes; ++i) {
    float* mirrored = negated + mirroredPosition(i, false) * dvStripStep;
    for (int at = i * dvStripStep, lane = 0; lane < dvStripLanes; at += width, lane += width) {
      const Complex x = Parts<false>::read(a + at);
      const Complex y = Parts<false>::read(b + at);
      Parts<false>::write(plusTurned(x, y), a + at);
      Parts<false>::write({x.re + y.im, y.re - x.im}, mirrored + lane);
    }
  }
}

/// Parted, then lanes and positions exchanged; b may be missing (null).
inline void turnReal(const float* block, const float* negated, bool zeroBlock, float* a, float* b) {
  alignas(dvStripAlignment) float first[dvStripBlock];
  alignas(dvStripAlignment) float second[dvStripBlock];
  part(block, negated, zeroBlock, first, second);
  turnBlock(first, a);
  if (b != nullptr) turnBlock(second, b);
}

/// The vertical frequencies of two times sixteen real columns, the second in place of imaginary
/// parts, from rows of the kept blocks; a block that is its own partner is whole as it is.
inline void gatherReal(const dvFourierSteps& plan, const dvRealBlocks& blocks, const float* a,
                       const float* b, std::ptrdiff_t stride, float* strip) {
  alignas(dvStripAlignment) float second[dvStripBlock];
  alignas(dvStripAlignment) float unused[dvStripBlock];
  for (int i = 0; i < dvStripBlock; i += width)
    lanes(second + i) = Vector{};
  for (int block = 0; block < plan.outer * plan.inner; ++block) {
    if (blocks.kept[block] != block) continue;
    float* first = strip + block * dvStripBlock;
    turnBlock(a + block * stride, first);
    if (b != nullptr) turnBlock(b + block * stride, second);
    const int partner = blocks.mirrored[block];
    join(first, second, partner == block ? unused : strip + partner * dvStripBlock);
  }
}

}  // namespace
}  // namespace DREVIN_SIMD_LEVEL
}  // namespace drevin

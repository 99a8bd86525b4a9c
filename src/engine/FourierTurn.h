#pragma once

/// Blocks of sixteen positions turned: lanes become positions.

#include "engine/FourierVector.h"

namespace drevin {
namespace DREVIN_SIMD_LEVEL {
namespace {

DREVIN_INLINE Vector reversed(Vector v) {
#if defined(__AVX512F__)
  return __builtin_shufflevector(v, v, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
#elif defined(__AVX2__)
  return __builtin_shufflevector(v, v, 7, 6, 5, 4, 3, 2, 1, 0);
#else
  return __builtin_shufflevector(v, v, 3, 2, 1, 0);
#endif
}

/// The lanes of a and b by turns, from the first halves.
DREVIN_INLINE Vector firstByTurns(Vector a, Vector b) {
#if defined(__AVX512F__)
  return __builtin_shufflevector(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
#elif defined(__AVX2__)
  return __builtin_shufflevector(a, b, 0, 8, 1, 9, 2, 10, 3, 11);
#else
  return __builtin_shufflevector(a, b, 0, 4, 1, 5);
#endif
}

/// And from the second halves.
DREVIN_INLINE Vector secondByTurns(Vector a, Vector b) {
#if defined(__AVX512F__)
  return __builtin_shufflevector(a, b, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15,
                                 31);
#elif defined(__AVX2__)
  return __builtin_shufflevector(a, b, 4, 12, 5, 13, 6, 14, 7, 15);
#else
  return __builtin_shufflevector(a, b, 2, 6, 3, 7);
#endif
}

/// Each round shuffles all values once like two halves of a pack of cards; after log2 of the width
/// of them rows have become columns.
template <int Rounds>
DREVIN_INLINE void shuffleRows(Vector* rows) {
  if constexpr (Rounds > 1) {
    Vector next[width];
    unrolled<0, width / 2>([&](auto i) __attribute__((always_inline)) {
      next[2 * i.value] = firstByTurns(rows[i.value], rows[i.value + width / 2]);
      next[2 * i.value + 1] = secondByTurns(rows[i.value], rows[i.value + width / 2]);
    });
    unrolled<0, width>([&](auto i)
                           __attribute__((always_inline)) { rows[i.value] = next[i.value]; });
    shuffleRows<Rounds / 2>(rows);
  }
}

inline void turnBlock(const float* from, float* to) {
  for (int part = 0; part < dvStripStep; part += dvStripLanes) {
    for (int row = 0; row < dvStripLanes; row += width) {
      for (int lane = 0; lane < dvStripLanes; lane += width) {
        const float* source = from + part + row * dvStripStep + lane;
        float* target = to + part + lane * dvStripStep + row;
        Vector rows[width];
        unrolled<0, width>([&](auto i) __attribute__((always_inline)) {
          rows[i.value] = lanes(source + i.value * dvStripStep);
        });
        shuffleRows<width>(rows);
        unrolled<0, width>([&](auto i) __attribute__((always_inline)) {
          lanes(target + i.value * dvStripStep) = rows[i.value];
        });
      }
    }
  }
}

}  // namespace
}  // namespace DREVIN_SIMD_LEVEL
}  // namespace drevin

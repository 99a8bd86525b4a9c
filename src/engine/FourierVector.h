#pragma once

/// Vectors of complex values, for FourierPasses.cpp, which is compiled once for each instruction
/// set.

#include "engine/FourierPasses.h"

namespace drevin {
namespace DREVIN_SIMD_LEVEL {
namespace {

#define DREVIN_INLINE inline __attribute__((always_inline))

#if defined(__AVX512F__)
constexpr int width = 16;
#elif defined(__AVX2__)
constexpr int width = 8;
#else
constexpr int width = 4;
#endif

// NOLINTNEXTLINE(modernize-use-using): the attributes of a vector need a typedef.
typedef float Vector __attribute__((vector_size(width * sizeof(float)), may_alias));

// NOLINTNEXTLINE(modernize-use-using)
typedef Vector AnyVector __attribute__((aligned(sizeof(float)), may_alias));
// NOLINTNEXTLINE(modernize-use-using)
typedef int Bits __attribute__((vector_size(sizeof(Vector)), may_alias));

struct Complex {
  Vector re;
  Vector im;
};

DREVIN_INLINE Complex operator+(const Complex& a, const Complex& b) {
  return {a.re + b.re, a.im + b.im};
}
DREVIN_INLINE Complex operator-(const Complex& a, const Complex& b) {
  return {a.re - b.re, a.im - b.im};
}
DREVIN_INLINE Complex operator*(const Complex& a, float factor) {
  return {a.re * factor, a.im * factor};
}
DREVIN_INLINE Complex multiplied(const Complex& a, float re, float im) {
  return {a.re * re - a.im * im, a.im * re + a.re * im};
}
/// a - i b and a + i b
DREVIN_INLINE Complex minusTurned(const Complex& a, const Complex& b) {
  return {a.re + b.im, a.im - b.re};
}
DREVIN_INLINE Complex plusTurned(const Complex& a, const Complex& b) {
  return {a.re - b.im, a.im + b.re};
}

template <int Value>
struct Index {
  static constexpr int value = Value;
};

/// body(Index<Begin>) to body(Index<End - 1>): places in arrays stay known, arrays in registers.
template <int Begin, int End, class Body>
constexpr DREVIN_INLINE void unrolled(Body body) {
  if constexpr (Begin < End) {
    body(Index<Begin>{});
    unrolled<Begin + 1, End>(body);
  }
}

DREVIN_INLINE Vector& lanes(float* at) {
  return *reinterpret_cast<Vector*>(at);
}
DREVIN_INLINE const Vector& lanes(const float* at) {
  return *reinterpret_cast<const Vector*>(at);
}

/// Where the parts of a position lie. An inverse transform is a forward one with the real and
/// imaginary parts exchanged before and after.
template <bool Inverse>
struct Parts {
  static constexpr int re = Inverse ? dvStripLanes : 0;
  static constexpr int im = dvStripLanes - re;

  static DREVIN_INLINE Complex read(const float* at) { return {lanes(at + re), lanes(at + im)}; }
  static DREVIN_INLINE void write(const Complex& z, float* at) {
    lanes(at + re) = z.re;
    lanes(at + im) = z.im;
  }
};

}  // namespace
}  // namespace DREVIN_SIMD_LEVEL
}  // namespace drevin

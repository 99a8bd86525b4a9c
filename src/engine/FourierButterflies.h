#pragma once

/// Discrete Fourier transforms of a handful of values in registers.
///
///   X[k] = sum over n of  x[n] * exp(-2 pi i n k / R)

#include "engine/FourierVector.h"

namespace drevin {
namespace DREVIN_SIMD_LEVEL {
namespace {

/// Series about 0 to full precision for |x| <= 2 pi.
constexpr double sineOrCosine(double x, bool cosine) {
  double term = cosine ? 1.0 : x;
  double sum = term;
  for (int n = cosine ? 1 : 2; n < 60; n += 2) {
    term *= -x * x / (static_cast<double>(n) * static_cast<double>(n + 1));
    sum += term;
  }
  return sum;
}

/// exp(-2 pi i power / order) = re + i im, from an angle of at most pi.
template <int Order, int Power>
struct Root {
  static constexpr int nearest = 2 * Power > Order ? Power - Order : Power;
  static constexpr double angle = 2.0 * 3.14159265358979323846 * nearest / Order;
  static constexpr float re = static_cast<float>(sineOrCosine(angle, true));
  static constexpr float im = static_cast<float>(-sineOrCosine(angle, false));
};

/// z * exp(-2 pi i power / order)
template <int Order, int Power>
DREVIN_INLINE Complex rotated(const Complex& z) {
  constexpr int power = Power % Order;
  using Factor = Root<Order, power>;
  if constexpr (power == 0) {
    return z;
  } else if constexpr (4 * power == Order) {
    return {z.im, -z.re};
  } else if constexpr (2 * power == Order) {
    return {-z.re, -z.im};
  } else if constexpr (4 * power == 3 * Order) {
    return {-z.im, z.re};
  } else if constexpr (8 * power == Order) {
    return Complex{z.re + z.im, z.im - z.re} * Factor::re;
  } else if constexpr (8 * power == 3 * Order) {
    return Complex{z.re - z.im, z.re + z.im} * Factor::re;
  } else {
    return multiplied(z, Factor::re, Factor::im);
  }
}

constexpr int greatestDivisor(int a, int b) {
  return b == 0 ? a : greatestDivisor(b, a % b);
}

/// The number below p * q that leaves the remainders a and b; p and q have no common divisor.
constexpr int fromRemainders(int a, int p, int b, int q) {
  int n = a;
  while (n % q != b)
    n += p;
  return n;
}

/// Radices are split into P groups of Q; sides without common divisor need no rotation between.
template <int P, int Q>
struct Split {
  static constexpr bool coprime = greatestDivisor(P, Q) == 1;
  static constexpr int input(int p, int q) {
    return coprime ? (Q * p + P * q) % (P * Q) : Q * p + q;
  }
  static constexpr int rotation(int p, int q) { return coprime ? 0 : p * q; }
  static constexpr int output(int p, int q) {
    return coprime ? fromRemainders(p, P, q, Q) : p + P * q;
  }
};

template <int Radix>
struct Factors;
template <>
struct Factors<6> : Split<2, 3> {
  static constexpr int p = 2, q = 3;
};
template <>
struct Factors<8> : Split<2, 4> {
  static constexpr int p = 2, q = 4;
};
template <>
struct Factors<9> : Split<3, 3> {
  static constexpr int p = 3, q = 3;
};
template <>
struct Factors<10> : Split<2, 5> {
  static constexpr int p = 2, q = 5;
};
template <>
struct Factors<16> : Split<4, 4> {
  static constexpr int p = 4, q = 4;
};

/// In place.
template <int Radix>
DREVIN_INLINE void butterfly(Complex* z);

template <>
DREVIN_INLINE void butterfly<1>(Complex*) {}

template <>
DREVIN_INLINE void butterfly<2>(Complex* z) {
  const Complex difference = z[0] - z[1];
  z[0] = z[0] + z[1];
  z[1] = difference;
}

template <>
DREVIN_INLINE void butterfly<4>(Complex* z) {
  const Complex even = z[0] + z[2];
  const Complex odd = z[1] + z[3];
  const Complex evenTurn = z[0] - z[2];
  const Complex oddTurn = z[1] - z[3];
  z[0] = even + odd;
  z[2] = even - odd;
  z[1] = minusTurned(evenTurn, oddTurn);
  z[3] = plusTurned(evenTurn, oddTurn);
}

/// For odd primes: sums and differences of the values at equal distance from both ends.
template <int Radix>
DREVIN_INLINE void oddButterfly(Complex* z) {
  constexpr int half = Radix / 2;
  Complex sums[half];
  Complex differences[half];
  Complex total = z[0];
  unrolled<0, half>([&](auto l) __attribute__((always_inline)) {
    sums[l.value] = z[l.value + 1] + z[Radix - 1 - l.value];
    differences[l.value] = z[l.value + 1] - z[Radix - 1 - l.value];
    total = total + sums[l.value];
  });
  unrolled<1, half + 1>([&](auto k) __attribute__((always_inline)) {
    Complex middle = z[0];
    Complex turn{};
    unrolled<0, half>([&](auto l) __attribute__((always_inline)) {
      using Factor = Root<Radix, k.value*(l.value + 1) % Radix>;
      middle = middle + sums[l.value] * Factor::re;
      turn =
          l.value == 0 ? differences[0] * -Factor::im : turn + differences[l.value] * -Factor::im;
    });
    z[k.value] = minusTurned(middle, turn);
    z[Radix - k.value] = plusTurned(middle, turn);
  });
  z[0] = total;
}

template <>
DREVIN_INLINE void butterfly<3>(Complex* z) {
  oddButterfly<3>(z);
}

template <>
DREVIN_INLINE void butterfly<5>(Complex* z) {
  oddButterfly<5>(z);
}

template <int Radix>
DREVIN_INLINE void butterfly(Complex* z) {
  using F = Factors<Radix>;
  constexpr int P = F::p;
  constexpr int Q = F::q;
  Complex grid[Q][P];
  unrolled<0, Q>([&](auto q) __attribute__((always_inline)) {
    unrolled<0, P>([&](auto p) __attribute__((always_inline)) {
      grid[q.value][p.value] = z[F::input(p.value, q.value)];
    });
    butterfly<P>(grid[q.value]);
  });
  unrolled<0, P>([&](auto p) __attribute__((always_inline)) {
    Complex line[Q];
    unrolled<0, Q>([&](auto q) __attribute__((always_inline)) {
      line[q.value] = rotated<Radix, F::rotation(p.value, q.value)>(grid[q.value][p.value]);
    });
    butterfly<Q>(line);
    unrolled<0, Q>([&](auto q) __attribute__((always_inline)) {
      z[F::output(p.value, q.value)] = line[q.value];
    });
  });
}

}  // namespace
}  // namespace DREVIN_SIMD_LEVEL
}  // namespace drevin

#include "engine/FourierPasses.h"

#include "engine/FourierButterflies.h"

namespace drevin {
namespace DREVIN_SIMD_LEVEL {
namespace {

constexpr int lastRadix = 16;

// NOLINTNEXTLINE(modernize-use-using): the attributes of a vector need a typedef.
typedef Vector AnyVector __attribute__((aligned(sizeof(float)), may_alias));

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

template <int Radix>
DREVIN_INLINE void twiddle(Complex* z, const float* twiddles) {
  unrolled<1, Radix>([&](auto j) __attribute__((always_inline)) {
    const float* w = twiddles + 2 * (j.value - 1);
    z[j.value] = multiplied(z[j.value], w[0], w[1]);
  });
}

/// One step on the block of `length` positions at `block`.
template <int Radix, bool Inverse>
void splitBlock(float* block, int length, const float* twiddles) {
  using Part = Parts<Inverse>;
  const int part = length / Radix;
  for (int i = 0; i < part; ++i) {
    for (int lane = 0; lane < dvStripLanes; lane += width) {
      float* at = block + i * dvStripStep + lane;
      Complex z[Radix];
      unrolled<0, Radix>([&](auto l) __attribute__((always_inline)) {
        z[l.value] = Part::read(at + l.value * part * dvStripStep);
      });
      if (Inverse) twiddle<Radix>(z, twiddles);
      butterfly<Radix>(z);
      if (!Inverse) twiddle<Radix>(z, twiddles);
      unrolled<0, Radix>([&](auto l) __attribute__((always_inline)) {
        Part::write(z[l.value], at + l.value * part * dvStripStep);
      });
    }
    twiddles += 2 * (Radix - 1);
  }
}

/// The first step where only the first `Known` parts of the line are there, and only `count`
/// positions of them.
template <int Radix, int Known>
void splitFew(const float* head, float* strip, int begin, int end, const dvFourierStep& step) {
  const int part = step.length / Radix;
  for (int i = begin; i < end; ++i) {
    const float* twiddles = step.twiddles + 2 * (Radix - 1) * i;
    for (int lane = 0; lane < dvStripLanes; lane += width) {
      const int at = i * dvStripStep + lane;
      Complex x[Known];
      Complex z[Radix];
      unrolled<0, Known>([&](auto l) __attribute__((always_inline)) {
        x[l.value] = Parts<false>::read(head + at + l.value * part * dvStripStep);
      });
      butterflyOfFew<Radix, Known>(x, z);
      twiddle<Radix>(z, twiddles);
      unrolled<0, Radix>([&](auto l) __attribute__((always_inline)) {
        Parts<false>::write(z[l.value], strip + at + l.value * part * dvStripStep);
      });
    }
  }
}

void copy(const float* from, int positions, float* to) {
  for (int i = 0; i < positions * dvStripStep; i += width)
    lanes(to + i) = lanes(from + i);
}

void clear(float* at, int positions) {
  for (int i = 0; i < positions * dvStripStep; i += width)
    lanes(at + i) = Vector{};
}

/// The first step from a line that is `head` for `support` positions, then zero.
template <int Radix>
void splitHead(const float* head, int support, float* strip, const dvFourierStep& step) {
  const int part = step.length / Radix;
  if (support <= part) {
    splitFew<Radix, 1>(head, strip, 0, support, step);
    for (int j = 0; j < Radix; ++j)
      clear(strip + (j * part + support) * dvStripStep, part - support);
  } else if (support <= 2 * part && Radix > 2) {
    splitFew<Radix, 2>(head, strip, 0, support - part, step);
    splitFew<Radix, 1>(head, strip, support - part, part, step);
  } else {
    copy(head, support, strip);
    clear(strip + support * dvStripStep, step.length - support);
    splitBlock<Radix, false>(strip, step.length, step.twiddles);
  }
}

using HeadSplit = void (*)(const float*, int, float*, const dvFourierStep&);
using BlockSplit = void (*)(float*, int, const float*);

/// The steps of one radix.
struct Splits {
  HeadSplit head;
  BlockSplit forward;
  BlockSplit inverse;
};

template <int Radix>
Splits splits() {
  return {splitHead<Radix>, splitBlock<Radix, false>, splitBlock<Radix, true>};
}

Splits splitsOf(int radix) {
  switch (radix) {
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
    case 10:
      return splits<10>();
    case 12:
      return splits<12>();
    default:
      return splits<15>();
  }
}

/// The steps up to the last, then last(block) for every block of sixteen neighbours. What the first
/// step parts is carried to the end part by part, while it is in the nearest cache.
template <class Last>
DREVIN_INLINE void forwardSteps(const dvFourierSteps& steps, const float* head, int support,
                                float* strip, Last last) {
  int part = steps.side;
  if (steps.count == 0) {
    copy(head, support, strip);
    clear(strip + support * dvStripStep, steps.side - support);
  } else {
    splitsOf(steps.steps[0].radix).head(head, support, strip, steps.steps[0]);
    part /= steps.steps[0].radix;
  }
  for (int begin = 0; begin < steps.side; begin += part) {
    for (int s = 1; s < steps.count; ++s) {
      const dvFourierStep& step = steps.steps[s];
      const BlockSplit split = splitsOf(step.radix).forward;
      for (int i = begin; i < begin + part; i += step.length)
        split(strip + i * dvStripStep, step.length, step.twiddles);
    }
    for (int i = begin; i < begin + part; i += lastRadix)
      last(i / lastRadix);
  }
}

/// The step of radix 16 on lanes of a block.
template <bool Inverse>
DREVIN_INLINE void lastSplit(const float* block, Complex* z) {
  unrolled<0, lastRadix>([&](auto l) __attribute__((always_inline)) {
    z[l.value] = Parts<Inverse>::read(block + l.value * dvStripStep);
  });
  butterfly<lastRadix>(z);
}

template <bool Inverse>
void lastStep(float* block) {
  for (int lane = 0; lane < dvStripLanes; lane += width) {
    Complex z[lastRadix];
    lastSplit<Inverse>(block + lane, z);
    unrolled<0, lastRadix>([&](auto l) __attribute__((always_inline)) {
      Parts<Inverse>::write(z[l.value], block + lane + l.value * dvStripStep);
    });
  }
}

void forward(const dvFourierSteps& steps, const float* head, int support, float* strip) {
  forwardSteps(steps, head, support, strip,
               [=](int block) { lastStep<false>(strip + block * dvStripBlock); });
}

void inverse(const dvFourierSteps& steps, float* strip) {
  for (int i = 0; i < steps.side; i += lastRadix)
    lastStep<true>(strip + i * dvStripStep);
  for (int s = steps.count - 1; s >= 0; --s) {
    const dvFourierStep& step = steps.steps[s];
    const BlockSplit split = splitsOf(step.radix).inverse;
    for (int i = 0; i < steps.side; i += step.length)
      split(strip + i * dvStripStep, step.length, step.twiddles);
  }
}

DREVIN_INLINE Vector reversed(Vector v) {
#if defined(__AVX512F__)
  return __builtin_shufflevector(v, v, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
#elif defined(__AVX2__)
  return __builtin_shufflevector(v, v, 7, 6, 5, 4, 3, 2, 1, 0);
#else
  return __builtin_shufflevector(v, v, 3, 2, 1, 0);
#endif
}

/// Factors as they lie.
struct PlainFactors {
  template <int Position>
  static DREVIN_INLINE Complex read(const float* block, int lane) {
    return Parts<false>::read(block + Position * dvStripStep + lane);
  }
};

/// The factors of the negated frequencies: the conjugates, lanes and positions turned about. In the
/// block of frequency 0 the first position stays where it is.
template <bool Zero>
struct MirroredFactors {
  template <int Position>
  static DREVIN_INLINE Complex read(const float* block, int lane) {
    constexpr int position = Zero ? (lastRadix - Position) % lastRadix : lastRadix - 1 - Position;
    const float* at = block + position * dvStripStep + (dvStripLanes - width - lane);
    const Complex z = Parts<false>::read(at);
    return {reversed(z.re), -reversed(z.im)};
  }
};

template <class Factor, bool First>
void multiplyBlock(const float* block, const float* factors, float* sums) {
  for (int lane = 0; lane < dvStripLanes; lane += width) {
    Complex z[lastRadix];
    lastSplit<false>(block + lane, z);
    unrolled<0, lastRadix>([&](auto l) __attribute__((always_inline)) {
      const Complex factor = Factor::template read<l.value>(factors, lane);
      float* at = sums + lane + l.value * dvStripStep;
      Complex sum{};
      if (!First) sum = Parts<false>::read(at);
      sum.re += z[l.value].re * factor.re - z[l.value].im * factor.im;
      sum.im += z[l.value].re * factor.im + z[l.value].im * factor.re;
      Parts<false>::write(sum, at);
    });
  }
}

template <bool First>
void multiplyAll(const dvFourierSteps& steps, const float* head, int support,
                 const dvStripFactors& factors, float* strip, float* sums) {
  forwardSteps(steps, head, support, strip, [&](int block) {
    const float* from = strip + block * dvStripBlock;
    float* to = sums + block * dvStripBlock;
    const float* values = factors.values;
    if (factors.mirroredBlocks == nullptr) {
      multiplyBlock<PlainFactors, First>(from, values + block * dvStripBlock, to);
    } else if (block == 0) {
      multiplyBlock<MirroredFactors<true>, First>(from, values, to);
    } else {
      values += factors.mirroredBlocks[block] * dvStripBlock;
      multiplyBlock<MirroredFactors<false>, First>(from, values, to);
    }
  });
}

void forwardMultiply(const dvFourierSteps& steps, const float* head, int support,
                     const dvStripFactors& factors, bool first, float* strip, float* sums) {
  if (first) {
    multiplyAll<true>(steps, head, support, factors, strip, sums);
  } else {
    multiplyAll<false>(steps, head, support, factors, strip, sums);
  }
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

void turn(const float* from, float* to) {
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

/// One part, real or imaginary, of every position.
bool loadPart(const float* row, std::ptrdiff_t stride, int columns, int rows, float* at) {
  bool any = false;
  for (int y = 0; y < rows; ++y, at += dvStripStep) {
    for (int lane = 0; lane < dvStripLanes; ++lane) {
      at[lane] = row != nullptr && lane < columns ? row[lane] : 0.0F;
      any |= at[lane] != 0.0F;
    }
    if (row != nullptr) row += stride;
  }
  return any;
}

bool load(const float* a, const float* b, std::ptrdiff_t stride, int columns, int rows,
          float* strip) {
  const bool real = loadPart(a, stride, columns, rows, strip);
  const bool imaginary = loadPart(b, stride, columns, rows, strip + dvStripLanes);
  return real || imaginary;
}

}  // namespace

const dvFourierPasses fourierPasses = {load, forward, forwardMultiply, inverse, turn};

}  // namespace DREVIN_SIMD_LEVEL
}  // namespace drevin

#include "engine/FourierPasses.h"

#include "engine/FourierReal.h"
#include "engine/FourierSplits.h"

namespace drevin {
namespace DREVIN_SIMD_LEVEL {
namespace {

constexpr int lastRadix = dvStripLanes;

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

/// The outer step.
void startOuter(const dvFourierSteps& plan, const Head& head, float* strip) {
  const Splits& outer = splitsOf(plan.outer);
  if (head.blocks <= 2 * plan.inner) {
    outer.two(head, plan.inner, plan.outerTwiddles, strip);
    return;
  }
  for (int b = 0; b < plan.outer * plan.inner; ++b) {
    for (int i = 0; i < dvStripBlock; i += width)
      lanes(strip + b * dvStripBlock + i) = lanes(head.block(b) + i);
  }
  outer.outer(strip, plan.inner, plan.outerTwiddles);
}

/// All steps but the last one, then last(block) for every block of sixteen neighbours. What the
/// outer step parts is carried to the end part by part, while it is in the nearest cache.
template <class Last>
DREVIN_INLINE void forwardSteps(const dvFourierSteps& plan, const Head& head, float* strip,
                                Last last) {
  const HeadSplit* headSplits = headSplitsOf(plan.outer, plan.inner);
  const bool onePart = head.blocks <= plan.inner;
  const float* twiddles = plan.jointTwiddles;
  if (!onePart) startOuter(plan, head, strip);
  for (int j = 0; j < plan.outer; ++j) {
    float* part = strip + j * plan.inner * dvStripBlock;
    if (onePart) {
      headSplits[j](head, twiddles, part);
      twiddles += 2 * (j == 0 ? plan.inner - 1 : plan.inner) * dvStripLanes;
    } else {
      splitsOf(plan.inner).inner(part, plan.innerTwiddles);
    }
    for (int k = 0; k < plan.inner; ++k)
      last(j * plan.inner + k);
  }
}

void forward(const dvFourierSteps& plan, const float* head, int headBlocks, float* strip) {
  forwardSteps(plan, {head, headBlocks}, strip,
               [=](int block) { lastStep<false>(strip + block * dvStripBlock); });
}

/// Undoes the steps: last(block), which undoes the last one, then the others; the blocks of the
/// result are `stride` floats apart.
template <class Last>
DREVIN_INLINE void inverseSteps(const dvFourierSteps& plan, float* strip, float* to,
                                std::ptrdiff_t stride, Last last) {
  const Splits& inner = splitsOf(plan.inner);
  const bool direct = plan.outer == 1;
  for (int j = 0; j < plan.outer; ++j) {
    float* part = strip + j * plan.inner * dvStripBlock;
    for (int k = 0; k < plan.inner; ++k)
      last(j * plan.inner + k);
    inner.innerBack(part, plan.innerTwiddles, direct ? to : part, direct ? stride : dvStripBlock);
  }
  if (!direct) {
    splitsOf(plan.outer).outerBack(strip, plan.inner, plan.outerTwiddles, to, stride);
  }
}

void inverse(const dvFourierSteps& plan, float* strip) {
  inverseSteps(plan, strip, strip, dvStripBlock,
               [=](int block) { lastStep<true>(strip + block * dvStripBlock); });
}

void inverseColumns(const dvFourierSteps& plan, float* columns, std::ptrdiff_t stride,
                    float* strip) {
  inverseSteps(plan, strip, columns, stride, [=](int block) {
    float* at = strip + block * dvStripBlock;
    turnBlock(columns + block * stride, at);
    lastStep<true>(at);
  });
}

void inverseRealColumns(const dvFourierSteps& plan, const dvRealBlocks& blocks, float* columns,
                        const float* next, std::ptrdiff_t stride, float* strip) {
  gatherReal(plan, blocks, columns, next, stride, strip);
  inverseSteps(plan, strip, columns, stride,
               [=](int block) { lastStep<true>(strip + block * dvStripBlock); });
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
void multiplyAll(const dvFourierSteps& plan, const float* head, int headBlocks,
                 const dvStripFactors& factors, float* strip, float* sums) {
  forwardSteps(plan, {head, headBlocks}, strip, [&](int block) {
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

void forwardMultiply(const dvFourierSteps& plan, const float* head, int headBlocks,
                     const dvStripFactors& factors, bool first, float* strip, float* sums) {
  if (first) {
    multiplyAll<true>(plan, head, headBlocks, factors, strip, sums);
  } else {
    multiplyAll<false>(plan, head, headBlocks, factors, strip, sums);
  }
}

void turn(const float* from, float* to) {
  turnBlock(from, to);
}

/// All lanes of one part, real or imaginary, of each position.
bool loadLanes(const float* row, std::ptrdiff_t stride, int rows, float* at) {
  Bits any{};
  for (int y = 0; y < rows; ++y, at += dvStripStep, row += stride) {
    for (int lane = 0; lane < dvStripLanes; lane += width) {
      const Vector values = *reinterpret_cast<const AnyVector*>(row + lane);
      lanes(at + lane) = values;
      any |= reinterpret_cast<const Bits&>(values);
    }
  }
  int found = 0;
  for (int lane = 0; lane < width; ++lane)
    found |= any[lane];
  return found != 0;
}

/// The lanes before `columns` only.
bool loadSome(const float* row, std::ptrdiff_t stride, int columns, int rows, float* at) {
  bool any = false;
  for (int y = 0; y < rows; ++y, at += dvStripStep, row += stride) {
    for (int lane = 0; lane < dvStripLanes; ++lane) {
      at[lane] = lane < columns ? row[lane] : 0.0F;
      any |= at[lane] != 0.0F;
    }
  }
  return any;
}

bool load(const float* row, std::ptrdiff_t stride, int columns, int rows, float* part) {
  bool any = false;
  if (row != nullptr && columns >= dvStripLanes) any = loadLanes(row, stride, rows, part);
  if (row != nullptr && columns < dvStripLanes) any = loadSome(row, stride, columns, rows, part);
  for (int y = row == nullptr ? 0 : rows; y < rows || y % dvStripLanes != 0; ++y) {
    for (int lane = 0; lane < dvStripLanes; lane += width)
      lanes(part + y * dvStripStep + lane) = Vector{};
  }
  return any;
}

void add(const float* block, int rows, int columns, float scale, float* to, std::ptrdiff_t stride) {
  for (int y = 0; y < rows; ++y, block += dvStripStep, to += stride) {
    if (columns == dvStripLanes) {
      // The next block's pixels: the rows are too many for the processor to foresee them.
      __builtin_prefetch(to + 2 * dvStripLanes, 1);
      for (int lane = 0; lane < dvStripLanes; lane += width)
        *reinterpret_cast<AnyVector*>(to + lane) +=
            scale * *reinterpret_cast<const AnyVector*>(block + lane);
    } else {
      for (int lane = 0; lane < columns; ++lane)
        to[lane] += scale * block[lane];
    }
  }
}

}  // namespace

const dvFourierPasses fourierPasses = {load,    forward,        forwardMultiply,    turn, turnReal,
                                       inverse, inverseColumns, inverseRealColumns, add};

}  // namespace DREVIN_SIMD_LEVEL
}  // namespace drevin

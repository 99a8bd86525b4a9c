#include "engine/FourierPlan.h"

#include <cmath>
#include <map>
#include <mutex>

#include "engine/Simd.h"

namespace drevin {

namespace {

/// How a number of blocks is split. FourierPasses.cpp has code for these pairs.
struct BlockFactors {
  int outer;
  int inner;
};

constexpr BlockFactors blockFactors[] = {{1, 1}, {1, 2}, {1, 3},  {1, 4},  {1, 5}, {1, 6},
                                         {1, 8}, {1, 9}, {1, 10}, {3, 4},  {3, 5}, {2, 8},
                                         {3, 6}, {4, 5}, {3, 8},  {3, 10}, {4, 8}, {4, 9},
                                         {5, 8}, {6, 8}, {6, 10}, {8, 8},  {8, 9}};

const BlockFactors* factorsOf(int blocks) {
  for (const BlockFactors& factors : blockFactors) {
    if (factors.outer * factors.inner >= blocks) return &factors;
  }
  return nullptr;
}

/// Appends exp(-2 pi i power / order).
void addRoot(int power, int order, std::vector<float>& roots) {
  const double angle = -2.0 * M_PI * static_cast<double>(power % order) / order;
  roots.push_back(static_cast<float>(std::cos(angle)));
  roots.push_back(static_cast<float>(std::sin(angle)));
}

std::vector<float> stepTwiddles(int radix, int part) {
  std::vector<float> twiddles;
  for (int i = 0; i < part; ++i) {
    for (int j = 1; j < radix; ++j)
      addRoot(i * j, radix * part, twiddles);
  }
  return twiddles;
}

std::vector<float> jointTwiddles(const BlockFactors& factors) {
  const int side = factors.outer * factors.inner * dvStripLanes;
  std::vector<float> twiddles;
  for (int j = 0; j < factors.outer; ++j) {
    for (int i = 0; i < dvStripLanes; ++i) {
      for (int k = j == 0 ? 1 : 0; k < factors.inner; ++k)
        addRoot(i * (j + factors.outer * k), side, twiddles);
    }
  }
  return twiddles;
}

}  // namespace

int transformSide(int least) {
  if (least > dvLargestTransform) return 0;
  const BlockFactors* factors = factorsOf((least + dvStripLanes - 1) / dvStripLanes);
  return factors == nullptr ? 0 : factors->outer * factors->inner * dvStripLanes;
}

dvFourierPlan::dvFourierPlan(int side) : side_(side) {
  const BlockFactors factors = *factorsOf(blocks());
  outerTwiddles_ = stepTwiddles(factors.outer, factors.inner * dvStripLanes);
  innerTwiddles_ = stepTwiddles(factors.inner, dvStripLanes);
  jointTwiddles_ = jointTwiddles(factors);
  steps_ = {side,
            factors.outer,
            factors.inner,
            outerTwiddles_.data(),
            innerTwiddles_.data(),
            jointTwiddles_.data()};
  std::vector<int> blockOf(static_cast<std::size_t>(blocks()));
  for (int block = 0; block < blocks(); ++block)
    blockOf[static_cast<std::size_t>(lowFrequency(block))] = block;
  for (int block = 0; block < blocks(); ++block) {
    const int negated = (blocks() - lowFrequency(block)) % blocks();
    mirroredBlocks_.push_back(blockOf[static_cast<std::size_t>(negated)]);
    keptBlocks_.push_back(isKept(block) ? block : mirroredBlocks_.back());
  }
}

int dvFourierPlan::frequency(int position) const {
  const int block = position / dvStripLanes;
  const int low = block / steps_.inner + block % steps_.inner * steps_.outer;
  return low + position % dvStripLanes * blocks();
}

const dvFourierPlan& fourierPlan(int side) {
  static std::mutex mutex;
  static std::map<int, dvFourierPlan> plans;
  const std::lock_guard<std::mutex> lock(mutex);
  return plans.try_emplace(side, side).first->second;
}

const dvFourierPasses& fourierPasses() {
#ifdef __x86_64__
  switch (simdLevel()) {
    case dvSimdLevel::Avx512:
      return avx512::fourierPasses;
    case dvSimdLevel::Avx2:
      return avx2::fourierPasses;
    case dvSimdLevel::Baseline:
      break;
  }
#endif
  return baseline::fourierPasses;
}

}  // namespace drevin

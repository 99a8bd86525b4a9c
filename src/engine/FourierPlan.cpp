#include "engine/FourierPlan.h"

#include <cmath>
#include <map>
#include <mutex>

#include "engine/Simd.h"

namespace drevin {

namespace {

/// How a number of blocks is split; a factor of 1 is left out. The first step gains from zeros
/// behind the values, so odd factors lead.
struct BlockFactors {
  int blocks;
  int first;
  int second;
};

constexpr BlockFactors blockFactors[] = {
    {1, 1, 1},  {2, 2, 1},  {3, 3, 1},   {4, 4, 1},   {5, 5, 1},   {6, 6, 1},
    {8, 8, 1},  {9, 9, 1},  {10, 10, 1}, {12, 12, 1}, {15, 15, 1}, {16, 4, 4},
    {18, 3, 6}, {20, 5, 4}, {24, 3, 8},  {30, 5, 6},  {32, 4, 8},  {36, 4, 9},
    {40, 5, 8}, {48, 6, 8}, {60, 6, 10}, {64, 8, 8},  {72, 9, 8}};

const BlockFactors* factorsOf(int blocks) {
  for (const BlockFactors& factors : blockFactors) {
    if (factors.blocks >= blocks) return &factors;
  }
  return nullptr;
}

}  // namespace

int transformSide(int least) {
  if (least > dvLargestTransform) return 0;
  const BlockFactors* factors = factorsOf((least + dvStripLanes - 1) / dvStripLanes);
  return factors == nullptr ? 0 : factors->blocks * dvStripLanes;
}

dvFourierPlan::dvFourierPlan(int side) : side_(side) {
  const BlockFactors factors = *factorsOf(blocks());
  addStep(factors.first, side);
  addStep(factors.second, side / factors.first);
  std::vector<int> blockOf(static_cast<std::size_t>(blocks()));
  for (int block = 0; block < blocks(); ++block)
    blockOf[static_cast<std::size_t>(lowFrequency(block))] = block;
  for (int block = 0; block < blocks(); ++block) {
    const int negated = (blocks() - lowFrequency(block)) % blocks();
    mirroredBlocks_.push_back(blockOf[static_cast<std::size_t>(negated)]);
  }
}

void dvFourierPlan::addStep(int radix, int length) {
  if (radix == 1) return;
  std::vector<float> twiddles;
  for (int i = 0; i < length / radix; ++i) {
    for (int j = 1; j < radix; ++j) {
      const double angle = -2.0 * M_PI * static_cast<double>(i * j % length) / length;
      twiddles.push_back(static_cast<float>(std::cos(angle)));
      twiddles.push_back(static_cast<float>(std::sin(angle)));
    }
  }
  twiddles_.push_back(std::move(twiddles));
  steps_.push_back({radix, length, twiddles_.back().data()});
}

int dvFourierPlan::frequency(int position) const {
  int frequency = 0;
  int scale = 1;
  int length = side_;
  for (const dvFourierStep& step : steps_) {
    length /= step.radix;
    frequency += position / length * scale;
    position %= length;
    scale *= step.radix;
  }
  return frequency + position * scale;
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

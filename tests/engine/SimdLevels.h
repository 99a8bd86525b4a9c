#pragma once

/// Tests at each instruction set of this processor.

#include <vector>

#include "engine/Simd.h"

namespace drevin::test {

/// The levels that can be used here, ascending.
inline std::vector<dvSimdLevel> usableLevels() {
  std::vector<dvSimdLevel> levels;
  for (const dvSimdLevel level : {dvSimdLevel::Baseline, dvSimdLevel::Avx2, dvSimdLevel::Avx512}) {
    if (level <= supportedSimdLevel()) levels.push_back(level);
  }
  return levels;
}

/// Sets a level for as long as it lives.
class SimdLevelInUse {
 public:
  explicit SimdLevelInUse(dvSimdLevel level) : before_(simdLevel()) { setSimdLevel(level); }
  ~SimdLevelInUse() { setSimdLevel(before_); }
  SimdLevelInUse(const SimdLevelInUse&) = delete;
  SimdLevelInUse& operator=(const SimdLevelInUse&) = delete;

 private:
  dvSimdLevel before_;
};

}  // namespace drevin::test

#include "engine/Simd.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>

namespace drevin {

namespace {

constexpr int notChosen = -1;

std::atomic<int> chosenLevel{notChosen};

dvSimdLevel fromEnvironment() {
  const char* name = std::getenv("DREVIN_SIMD");
  if (name == nullptr) return dvSimdLevel::Avx512;
  for (const dvSimdLevel level : {dvSimdLevel::Baseline, dvSimdLevel::Avx2}) {
    if (simdLevelName(level) == name) return level;
  }
  return dvSimdLevel::Avx512;
}

}  // namespace

dvSimdLevel supportedSimdLevel() {
#ifdef __x86_64__
  if (__builtin_cpu_supports("avx2") == 0 || __builtin_cpu_supports("fma") == 0) {
    return dvSimdLevel::Baseline;
  }
  const bool wide =
      __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512dq") != 0 &&
      __builtin_cpu_supports("avx512bw") != 0 && __builtin_cpu_supports("avx512vl") != 0;
  return wide ? dvSimdLevel::Avx512 : dvSimdLevel::Avx2;
#else
  return dvSimdLevel::Baseline;
#endif
}

dvSimdLevel simdLevel() {
  // Once: every row asks, and others may change the environment meanwhile.
  static const dvSimdLevel atStart = std::min(fromEnvironment(), supportedSimdLevel());
  const int chosen = chosenLevel;
  if (chosen == notChosen) return atStart;
  return std::min(static_cast<dvSimdLevel>(chosen), supportedSimdLevel());
}

void setSimdLevel(dvSimdLevel level) {
  chosenLevel = static_cast<int>(level);
}

std::string simdLevelName(dvSimdLevel level) {
  switch (level) {
    case dvSimdLevel::Baseline:
      return "baseline";
    case dvSimdLevel::Avx2:
      return "avx2";
    case dvSimdLevel::Avx512:
      break;
  }
  return "avx512";
}

}  // namespace drevin

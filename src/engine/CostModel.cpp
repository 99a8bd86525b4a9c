#include "engine/CostModel.h"

#include <cmath>

#include "engine/Simd.h"

namespace drevin {

namespace {

double transformWork(int length, int planes) {
  const auto n = static_cast<double>(length);
  return planes * n * n * std::log2(n);
}

/// Of other instruction sets in times of the widest.
double slowness() {
  switch (simdLevel()) {
    case dvSimdLevel::Baseline:
      return 4.0;
    case dvSimdLevel::Avx2:
      return 1.7;
    case dvSimdLevel::Avx512:
      break;
  }
  return 1.0;
}

}  // namespace

double fourierAddCost(int length, int planes) {
  return 0.05 * slowness() * transformWork(length, planes);
}

double fourierFinishCost(int length, int planes) {
  return 0.10 * slowness() * transformWork(length, planes);
}

double spectrumCost(int length) {
  return 0.15 * slowness() * transformWork(length, 1);
}

}  // namespace drevin

#include "engine/CostModel.h"

#include <cmath>

#include "engine/Simd.h"

namespace drevin {

namespace {

/// Of `lines` lines.
double transformWork(int length, double lines) {
  const auto n = static_cast<double>(length);
  return lines * n * std::log2(n);
}

/// Of other instruction sets in times of the widest.
double slowness() {
  switch (simdLevel()) {
    case dvSimdLevel::Baseline:
      return 2.4;
    case dvSimdLevel::Avx2:
      return 1.1;
    case dvSimdLevel::Avx512:
      break;
  }
  return 1.0;
}

}  // namespace

double fourierAddCost(int side, int length, int planes) {
  return 0.05 * slowness() * transformWork(length, planes * static_cast<double>(side + length));
}

double fourierFinishCost(int length, int planes) {
  return 0.08 * slowness() * transformWork(length, planes * static_cast<double>(length));
}

}  // namespace drevin

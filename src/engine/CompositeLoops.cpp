#include "engine/CompositeCode.h"

namespace drevin {
namespace DREVIN_SIMD_LEVEL {

namespace {

void takeRoom(const double* __restrict weights, double* __restrict coverage,
              double* __restrict shares, int count) {
  for (int i = 0; i < count; ++i) {
    const double room = 1.0 - coverage[i];
    const bool full = room < weights[i];
    shares[i] = full ? room / weights[i] : 1.0;
    coverage[i] += full ? room : weights[i];
  }
}

void layUnder(const double* __restrict sums, const double* __restrict shares,
              float* __restrict colours, int count) {
  for (int i = 0; i < count; ++i)
    colours[i] += static_cast<float>(shares[i] * sums[i]);
}

void divide(float* __restrict colours, const double* __restrict coverage, int count) {
  for (int i = 0; i < count; ++i) {
    const double divisor = coverage[i] > 0.0 ? coverage[i] : 1.0;
    colours[i] = static_cast<float>(static_cast<double>(colours[i]) / divisor);
  }
}

void move(float* __restrict from, double* __restrict to, int count) {
  for (int i = 0; i < count; ++i) {
    to[i] += static_cast<double>(from[i]);
    from[i] = 0.0F;
  }
}

bool anyBelow(const double* coverage, double least, int count) {
  int below = 0;
  for (int i = 0; i < count; ++i)
    below |= static_cast<int>(coverage[i] < least);
  return below != 0;
}

// Both sides times the coverage.
bool anyInDoubt(const float* __restrict colours, const double* __restrict coverage,
                const dvDoubtLimits& limits, int count) {
  int doubtful = 0;
  for (int i = 0; i < count; ++i) {
    const double sum = static_cast<double>(colours[i] < 0.0F ? -colours[i] : colours[i]);
    const double allowed = limits.absolute * coverage[i] + limits.relative * sum;
    const double error = limits.error * coverage[i] + limits.weightError * sum;
    doubtful |= static_cast<int>(error > allowed * coverage[i]);
  }
  return doubtful != 0;
}

bool anyNearZero(const float* colours, float limit, int count) {
  int near = 0;
  for (int i = 0; i < count; ++i)
    near |= static_cast<int>(colours[i] != 0.0F) & static_cast<int>(colours[i] <= limit) &
            static_cast<int>(colours[i] >= -limit);
  return near != 0;
}

}  // namespace

extern const dvCompositeCode compositeCode;
const dvCompositeCode compositeCode{takeRoom, layUnder,   divide,     move,
                                    anyBelow, anyInDoubt, anyNearZero};

}  // namespace DREVIN_SIMD_LEVEL
}  // namespace drevin

#pragma once

/// The widest vector of floats of the instruction set that a file is compiled for. For the vector
/// code alone: everything is in the namespace of its copy.

#include <stddef.h>

namespace drevin {
namespace DREVIN_SIMD_LEVEL {

#if defined(__AVX512F__)
constexpr int vectorBytes = 64;
#elif defined(__AVX2__)
constexpr int vectorBytes = 32;
#else
constexpr int vectorBytes = 16;
#endif
constexpr int lanes = vectorBytes / static_cast<int>(sizeof(float));

using Vector = float __attribute__((vector_size(vectorBytes), may_alias));
/// A vector anywhere in memory.
using LooseVector = float __attribute__((vector_size(vectorBytes), may_alias, aligned(4)));

inline Vector loadLoose(const float* from) {
  return *reinterpret_cast<const LooseVector*>(from);
}
/// At an address that is a multiple of the vector's size.
inline Vector& vectorAt(float* place) {
  return *reinterpret_cast<Vector*>(place);
}
inline Vector filled(float value) {
  return value - Vector{};
}

}  // namespace DREVIN_SIMD_LEVEL
}  // namespace drevin

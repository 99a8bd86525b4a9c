#pragma once

/// The widest vector of floats of the instruction set that a file is compiled for. For the vector
/// code alone: everything is in the namespace of its copy.

#include "engine/RowRun.h"

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

/// Place of a column of a row's first plane.
inline float* columnAt(float* sums, int column, int planes) {
  return sums + static_cast<ptrdiff_t>(column / dvCellColumns) * (planes * dvCellColumns) +
         column % dvCellColumns;
}

inline int smaller(int a, int b) {
  return a < b ? a : b;
}
inline int larger(int a, int b) {
  return a < b ? b : a;
}

/// The inner cells of a splat of the run at column x, as columns; none if end <= begin.
struct InnerCells {
  int begin;
  int end;
};
inline InnerCells innerCells(const dvRowRun& run, int x, int columns) {
  const int begin = larger(x + run.innerBegin, 0) + dvCellColumns - 1;
  const int end = smaller(x + run.innerEnd, columns);
  return {begin & -dvCellColumns, end & -dvCellColumns};
}

}  // namespace DREVIN_SIMD_LEVEL
}  // namespace drevin

/// Tells whoever loads the plug-in by hand which instruction set its vector code uses.

#include <string>

#include "engine/Simd.h"

/// "baseline", "avx2" or "avx512".
extern "C" __attribute__((visibility("default"))) const char* drevinSimdName() {
  static const std::string name = drevin::simdLevelName(drevin::simdLevel());
  return name.c_str();
}

/// All that DREVIN_SIMD may name, by blanks, the least first.
extern "C" __attribute__((visibility("default"))) const char* drevinSimdNames() {
  static const std::string names = drevin::simdLevelName(drevin::dvSimdLevel::Baseline) + " " +
                                   drevin::simdLevelName(drevin::dvSimdLevel::Avx2) + " " +
                                   drevin::simdLevelName(drevin::dvSimdLevel::Avx512);
  return names.c_str();
}

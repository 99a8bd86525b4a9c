/// Tells whoever loads the plug-in by hand which instruction set its vector code uses.

#include <string>

#include "engine/Simd.h"

/// "baseline", "avx2" or "avx512".
extern "C" __attribute__((visibility("default"))) const char* drevinSimdName() {
  static const std::string name = drevin::simdLevelName(drevin::simdLevel());
  return name.c_str();
}

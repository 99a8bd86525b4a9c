#include "engine/CompositeCode.h"

#include "engine/Simd.h"

// The copies of CompositeLoops.cpp.
#define DREVIN_COMPOSITE_CODE(level)          \
  namespace level {                           \
  extern const dvCompositeCode compositeCode; \
  }

namespace drevin {

DREVIN_COMPOSITE_CODE(baseline)
#ifdef __x86_64__
DREVIN_COMPOSITE_CODE(avx2)
DREVIN_COMPOSITE_CODE(avx512)
#endif

const dvCompositeCode& compositeCode() {
#ifdef __x86_64__
  if (simdLevel() == dvSimdLevel::Avx512) return avx512::compositeCode;
  if (simdLevel() == dvSimdLevel::Avx2) return avx2::compositeCode;
#endif
  return baseline::compositeCode;
}

}  // namespace drevin

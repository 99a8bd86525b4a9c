#include "engine/RowCode.h"

#include "engine/Simd.h"

// The copies of ScatterSplats.cpp.
#define DREVIN_ROW_CODE(level)                                                         \
  namespace level {                                                                    \
  void scatterSplats(const dvRowSplat* splats, int count, int channels, float* sums);  \
  void scatterEdges(const dvRowSplat* splats, int count, int channels, double* edges); \
  void emptySums(float* sums, double* totals, std::ptrdiff_t count);                   \
  constexpr dvRowCode rowCode{scatterSplats, scatterEdges, emptySums};                 \
  }

namespace drevin {

DREVIN_ROW_CODE(baseline)
#ifdef __x86_64__
DREVIN_ROW_CODE(avx2)
DREVIN_ROW_CODE(avx512)
#endif

const dvRowCode& rowCode(dvSimdLevel level) {
#ifdef __x86_64__
  if (level == dvSimdLevel::Avx512) return avx512::rowCode;
  if (level == dvSimdLevel::Avx2) return avx2::rowCode;
#endif
  static_cast<void>(level);
  return baseline::rowCode;
}

}  // namespace drevin

#include "engine/RowCode.h"

#include "engine/Simd.h"

// The copies of ScatterRuns.cpp, GatherRuns.cpp and RowEdges.cpp.
#define DREVIN_ROW_CODE(level)                                                    \
  namespace level {                                                               \
  void scatterRuns(const dvRowRun* runs, int count, const dvRowTarget& target);   \
  void gatherRuns(const dvRowRun* runs, int count, const dvRowTarget& target);    \
  void addInnerEdges(const dvRowRun* runs, int count, const dvRowTarget& target); \
  void emptySums(float* sums, double* totals, std::ptrdiff_t count);              \
  constexpr dvRowCode rowCode{scatterRuns, gatherRuns, addInnerEdges, emptySums}; \
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

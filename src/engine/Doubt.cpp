#include "engine/Doubt.h"

#include <cstddef>

#include "engine/CompositeCode.h"

namespace drevin {

bool isInDoubt(const std::vector<float*>& colours, const double* coverage, int count,
               const dvTransformRounding& rounding, int x, int y) {
  const dvCompositeCode& code = compositeCode();
  if (code.anyBelow(coverage, dvRepairCoverage, count)) return true;
  const double weightError = rounding.error(static_cast<int>(colours.size()), x, y);
  for (std::size_t c = 0; c < colours.size(); ++c) {
    const double error = rounding.error(static_cast<int>(c), x, y);
    const dvDoubtLimits limits{error, weightError, dvRepairAbsolute, dvRepairRelative};
    if (code.anyInDoubt(colours[c], coverage, limits, count)) return true;
  }
  return false;
}

}  // namespace drevin

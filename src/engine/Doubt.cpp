#include "engine/Doubt.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace drevin {

bool isInDoubt(const std::vector<float*>& colours, const double* coverage, int count,
               const dvTransformRounding& rounding, int x, int y) {
  if (std::any_of(coverage, coverage + count, [](double c) { return c < dvRepairCoverage; }))
    return true;
  const double weightError = rounding.error(static_cast<int>(colours.size()), x, y);
  for (std::size_t c = 0; c < colours.size(); ++c) {
    const double error = rounding.error(static_cast<int>(c), x, y);
    for (int i = 0; i < count; ++i) {
      const double sum = std::fabs(static_cast<double>(colours[c][i]));
      const double allowed = dvRepairAbsolute * coverage[i] + dvRepairRelative * sum;
      if (error + weightError * sum / coverage[i] > allowed) return true;
    }
  }
  return false;
}

}  // namespace drevin

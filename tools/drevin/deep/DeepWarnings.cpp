#include "deep/DeepWarnings.h"

#include "terminal/OneLine.h"

namespace drevintool {

std::string opaqueWarning(const DeepExrSource& deep) {
  if (deep.hasAlpha()) return {};
  return oneLine(deep.path()) +
         ": its deep image has no channel A; every sample counts as opaque (alpha 1)";
}

std::string thickWarning(const DeepExrSource& deep, embedded::DeepOrder order) {
  const DeepSampleCounts counts = deep.counts();
  if (counts.thick == 0 || order != embedded::DeepOrder::NearFirst) return {};
  return oneLine(deep.path()) + ": " + std::to_string(counts.thick) + " of " +
         std::to_string(counts.samples) +
         " samples are thick; near-first order cuts them against nearer ones, which can give wild "
         "values: --deep-order far-first cuts them in depth order, as general-purpose tools serve "
         "them";
}

std::string notFiniteWarning(const DeepExrSource& deep) {
  const DeepSampleCounts counts = deep.counts();
  if (counts.notFinite == 0) return {};
  return std::to_string(counts.notFinite) + " of " + std::to_string(counts.samples) +
         " samples of " + oneLine(deep.path()) +
         " are not finite (NaN or infinite), and so may be what their kernels reach";
}

}  // namespace drevintool

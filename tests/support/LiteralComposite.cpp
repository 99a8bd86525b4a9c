#include "support/LiteralComposite.h"

#include <cmath>

namespace drevin::test {

LiteralValue literalComposite(const LiteralSums& sums, int channel, std::size_t at) {
  double out = 0.0;
  double coverage = 0.0;
  double outSlack = 0.0;       // of out
  double coverageSlack = 0.0;  // of coverage
  bool settled = true;
  for (const auto& slice : sums) {
    const LiteralSum& sum = slice.at(channel)[at];
    const double room = 1.0 - coverage;
    double w = sum.weight;
    double f = 1.0;
    double weightSlack = literalRounding * sum.absoluteWeight;
    double shareSlack = 0.0;
    if (room < w) {
      f = room / w;
      shareSlack = (coverageSlack + std::fabs(f) * weightSlack) / w;
      settled = settled && (std::isfinite(sum.colour) || std::fabs(room) > 2.0 * coverageSlack);
      w = room;
      weightSlack = coverageSlack;
    }
    out += f * sum.colour;
    coverage += w;
    outSlack +=
        std::fabs(f) * literalRounding * sum.absoluteColour + shareSlack * std::fabs(sum.colour);
    coverageSlack += weightSlack;
  }
  LiteralValue result{out, outSlack, true};
  if (coverage > 0.0) {
    result.value = out / coverage;
    result.slack = (outSlack + std::fabs(result.value) * coverageSlack) / coverage;
  }
  result.settled = settled && (coverageSlack == 0.0 || std::fabs(coverage) > 2.0 * coverageSlack);
  return result;
}

}  // namespace drevin::test

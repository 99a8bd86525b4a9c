#pragma once

/// What the samples of a deep pixel of the demo come to.

#include <vector>

#include "demo/DemoLayers.h"

namespace drevintool::testing {

/// Twice what rounding to half precision may change, of 1.
constexpr double kHalfStep = 0x1p-10;

using DemoSamples = std::vector<DemoDeepSample>;

/// Front to back: the share of the pixel that each sample takes.
inline std::vector<double> sharesOf(const DemoSamples& samples) {
  std::vector<double> shares;
  double open = 1.0;
  for (const DemoDeepSample& sample : samples) {
    shares.push_back(open * sample.alpha);
    open *= 1.0 - sample.alpha;
  }
  return shares;
}

/// The samples one under another, front to back.
inline DemoVector compositeOf(const DemoSamples& samples) {
  DemoVector colour;
  double open = 1.0;
  for (const DemoDeepSample& sample : samples) {
    colour = colour + DemoVector{sample.red, sample.green, sample.blue} * open;
    open *= 1.0 - sample.alpha;
  }
  return colour;
}

/// Sum of the shares of the samples whose fronts are in [from, to).
inline double shareBetween(const DemoSamples& samples, double from, double to) {
  const std::vector<double> shares = sharesOf(samples);
  double sum = 0.0;
  for (std::size_t i = 0; i < samples.size(); ++i)
    sum += samples[i].front >= from && samples[i].front < to ? shares[i] : 0.0;
  return sum;
}

}  // namespace drevintool::testing

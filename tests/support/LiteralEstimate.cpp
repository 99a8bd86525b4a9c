#include "support/LiteralEstimate.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "support/LiteralBlur.h"

namespace drevin::test {

namespace {

/// Rounded up; NaN counts as 0 and more than an int holds as the largest int.
int wholePixels(float diameter) {
  const float up = std::ceil(diameter);
  if (!(up > 0.0F)) return 0;
  return up < 2147483648.0F ? static_cast<int>(up) : std::numeric_limits<int>::max();
}

/// The diameter of a depth's blur; the infinitely far have none.
int wholePixels(float depth, const LiteralBlur& blur, const LiteralSettings& settings) {
  if (std::fabs(depth - std::numeric_limits<float>::max()) < 1e-5F) return 0;
  return wholePixels(blur.coc * settings.contextScale);
}

}  // namespace

int literalDeepDiameter(float depth, const LiteralSettings& settings, const LiteralLens& lens) {
  return wholePixels(depth, literalUnclampedCircle(depth, settings, lens), settings);
}

LiteralEstimate literalEstimateOf(int largest, const LiteralSettings& settings) {
  LiteralEstimate estimate;
  estimate.largest = largest;
  estimate.warned = settings.maxKernelSize < largest;
  estimate.kernelSize = std::min(settings.maxKernelSize, largest);
  estimate.padding = estimate.kernelSize / 2 + 2;
  return estimate;
}

LiteralEstimate literalEstimate(const LiteralSettings& settings, const LiteralLens& lens,
                                const LiteralPicture& image) {
  int largest = 0;
  for (int y = 0; y < image.formatHeight; ++y) {
    for (int x = 0; x < image.formatWidth; ++x) {
      const float d = literalDepth(image.at(x, y, settings.depthChannel), settings);
      largest = std::max(largest, wholePixels(d, literalCircle(d, settings, lens), settings));
    }
  }
  return literalEstimateOf(largest, settings);
}

}  // namespace drevin::test

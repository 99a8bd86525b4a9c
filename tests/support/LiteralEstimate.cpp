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

}  // namespace

LiteralEstimate literalEstimate(const LiteralSettings& settings, const LiteralLens& lens,
                                const LiteralPicture& image) {
  LiteralEstimate estimate;
  for (int y = 0; y < image.formatHeight; ++y) {
    for (int x = 0; x < image.formatWidth; ++x) {
      const float d = literalDepth(image.at(x, y, settings.depthChannel), settings);
      if (std::fabs(d - std::numeric_limits<float>::max()) < 1e-5F) {
        continue;
      }
      const float c = literalCircle(d, settings, lens).coc * settings.contextScale;
      estimate.largest = std::max(estimate.largest, wholePixels(c));
    }
  }
  estimate.warned = settings.maxKernelSize < estimate.largest;
  estimate.kernelSize = std::min(settings.maxKernelSize, estimate.largest);
  estimate.padding = estimate.kernelSize / 2 + 2;
  return estimate;
}

}  // namespace drevin::test

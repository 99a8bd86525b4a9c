#include "support/LiteralPassValue.h"

#include <algorithm>

namespace drevin::test {

namespace {

float inFocusIndicator(float coc) {
  const float t = 2.0F * coc;
  if (t <= 0.0F) return 1.0F;
  if (t >= 1.0F) return 0.0F;
  return std::max(0.0F, 1.0F - (3.0F - (t + t)) * t * t);
}

}  // namespace

void literalPassValue(const LiteralSettings& settings, int kernelSize, float coc, int region,
                      int channel, float& out) {
  const bool distance = settings.outputType == 2;
  const bool matte = settings.outputType == 4;
  const int regionOfChannel = channel - 1;
  if (channel >= 1 && channel <= 3) {
    if (distance) {
      out = channel == 1 ? inFocusIndicator(coc) : (region == regionOfChannel ? coc : 0.0F);
    }
    if (matte) {
      out = region == regionOfChannel ? 1.0F : 0.0F;
    }
  }
  if (channel != 1 && settings.normalizeVisualization && distance) {
    out = out / static_cast<float>(kernelSize);
  }
}

}  // namespace drevin::test

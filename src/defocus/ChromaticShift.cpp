#include "defocus/ChromaticShift.h"

#include <cmath>

#include "defocus/FloatRules.h"

namespace drevin {

float channelShift(const dvChromaticAberration& aberration, int channel) {
  const float k = aberration.amount;
  const bool moves = channel == 1 || (channel == 2 && k > 0.0F) || (channel == 3 && k < 0.0F);
  if (!moves || k == 0.0F) return 0.0F;
  return std::fabs(aberration.offset[channel - 1] * k) - std::fabs(k) * 0.5F;
}

float shiftDistance(float shift, float coc, float matte) {
  const float s = coc * matte * 0.5F - 1.0F;
  return s > 0.0F ? s * shift * 0.1F : 0.0F;
}

int shiftedPlace(int place, float distance) {
  // Unshifted places stay exact beyond the 24 bits of a float.
  if (distance == 0.0F) return place;
  return truncateToInt(static_cast<float>(place) + distance);
}

}  // namespace drevin

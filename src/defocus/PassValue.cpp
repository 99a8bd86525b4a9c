#include "defocus/PassValue.h"

namespace drevin {

namespace {

constexpr int red = 1;
constexpr int green = 2;
constexpr int blue = 3;

/// Red shows unordered depths, green the front, blue the back.
dvFocusRegion shownRegion(int channel) {
  if (channel == green) return dvFocusRegion::Front;
  if (channel == blue) return dvFocusRegion::Back;
  return dvFocusRegion::Unordered;
}

void focusMatteValue(dvFocusRegion region, int channel, float* out) {
  if (channel < red || channel > blue) return;
  *out = region == shownRegion(channel) ? 1.0F : 0.0F;
}

void focalDistanceValue(float coc, dvFocusRegion region, int channel,
                        const dvPassSettings& settings, float* out) {
  if (channel == red) {
    *out = inFocus(coc);
    return;
  }
  if (channel == green || channel == blue) *out = region == shownRegion(channel) ? coc : 0.0F;
  if (settings.normalize) *out = *out / static_cast<float>(settings.kernelSize);
}

}  // namespace

float inFocus(float coc) {
  const float t = 2.0F * coc;
  if (t <= 0.0F) return 1.0F;
  if (t >= 1.0F) return 0.0F;
  const float rest = 1.0F - (3.0F - (t + t)) * t * t;
  return rest > 0.0F ? rest : 0.0F;
}

void getPassValue(float coc, dvFocusRegion region, int channel, const dvPassSettings& settings,
                  float* out) {
  if (settings.outputType == dvOutputType::FocalDistance) {
    focalDistanceValue(coc, region, channel, settings, out);
  } else if (settings.outputType == dvOutputType::FocusMatte) {
    focusMatteValue(region, channel, out);
  }
}

}  // namespace drevin

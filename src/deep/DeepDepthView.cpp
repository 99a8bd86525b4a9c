#include "deep/DeepDepthView.h"

#include "defocus/FloatRules.h"

namespace drevin {

namespace {

float passValue(float depth, int channel, const dvDeepSettings& settings,
                const dvPassSettings& pass) {
  const dvDeepBlur blur = deepBlur(depth, settings);
  float value = 0.0F;
  getPassValue(blur.coc, blur.region, channel, pass, &value);
  return maxKeepingNaN(0.0F, value);
}

}  // namespace

float deepDepthValue(const std::vector<dvDepthSample>& samples, int channel,
                     const dvDeepSettings& settings, const dvPassSettings& pass) {
  float value = 0.0F;
  float coverage = 0.0F;
  float room = 1.0F;
  for (const dvDepthSample& sample : samples) {
    const float weight = (1.0F - coverage) * sample.alpha;
    value += passValue(sample.depth, channel, settings, pass) * weight;
    coverage += weight;
    room = 1.0F - coverage;
    if (!(room > 0.0F)) break;
  }
  if (samples.empty() || coverage < 1.0F) {
    value += passValue(dvInfinitelyFar, channel, settings, pass) * room;
  }
  return value;
}

}  // namespace drevin

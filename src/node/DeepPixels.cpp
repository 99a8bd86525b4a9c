#include "node/DeepPixels.h"

#include "defocus/FloatRules.h"
#include "node/HostConversions.h"

namespace drevin {

using DD::Image::Chan_Alpha;
using DD::Image::Chan_DeepBack;
using DD::Image::Chan_DeepFront;
using DD::Image::Chan_Z;
using DD::Image::Channel;
using DD::Image::ChannelSet;
using DD::Image::DeepPixel;

dvDeepLayout deepLayout(const ChannelSet& channels) {
  dvDeepLayout layout;
  layout.channels = channelNumbers(channels);
  int place = 0;
  foreach (z, channels) {
    if (z == Chan_DeepFront) layout.front = place;
    if (z == Chan_DeepBack) layout.back = place;
    if (z == Chan_Z) layout.depth = place;
    if (z == Chan_Alpha) layout.alpha = place;
    ++place;
  }
  return layout;
}

dvHostPixel::dvHostPixel(const DeepPixel& pixel, const ChannelSet& channels)
    : pixel_(pixel), channels_(channels), count_(pixel.getSampleCount()) {
  if (count_ < 2) return;
  const float first = sortedDepth(hostValue(0, Chan_DeepFront));
  const float last = sortedDepth(hostValue(count_ - 1, Chan_DeepFront));
  // A point may stand where a volume begins: then the backs decide.
  farFirst_ = first != last ? first > last
                            : sortedDepth(hostValue(0, Chan_DeepBack)) >
                                  sortedDepth(hostValue(count_ - 1, Chan_DeepBack));
}

float dvHostPixel::hostValue(std::size_t i, Channel z) const {
  if (channels_.contains(z)) return pixel_.getOrderedSample(i, z);
  if (z == Chan_Alpha) return 1.0F;
  return z == Chan_DeepBack ? hostValue(i, Chan_DeepFront) : 0.0F;
}

void readSamples(const dvHostPixel& pixel, const dvDeepLayout& layout, dvDeepSamples& samples) {
  samples.clear();
  for (std::size_t i = 0; i < pixel.count(); ++i) {
    samples.fronts.push_back(pixel.hostValue(i, Chan_DeepFront));
    samples.backs.push_back(pixel.hostValue(i, Chan_DeepBack));
    for (const int channel : layout.channels)
      samples.values.push_back(pixel.hostValue(i, static_cast<Channel>(channel)));
  }
}

std::vector<dvDepthSample> depthSamples(const dvHostPixel& pixel, bool useBackDepth) {
  const Channel depth = useBackDepth ? Chan_DeepBack : Chan_DeepFront;
  std::vector<dvDepthSample> samples;
  samples.reserve(pixel.count());
  for (std::size_t i = 0; i < pixel.count(); ++i) {
    samples.push_back({pixel.nearestFirstValue(i, depth), pixel.nearestFirstValue(i, Chan_Alpha)});
  }
  return samples;
}

float farthestBack(const dvHostPixel& pixel) {
  return pixel.nearestFirstValue(pixel.count() - 1, Chan_DeepBack);
}

}  // namespace drevin

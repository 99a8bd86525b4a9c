#include "DDImage/DeepComposite.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <vector>

#include "DepthSort.h"
#include "TidySamples.h"

namespace DD {
namespace Image {

namespace {

bool isDepth(Channel z) {
  return z == Chan_DeepFront || z == Chan_DeepBack || z == Chan_Z;
}

/// Appends the samples unchanged, sorted by the depths that they have.
void copySorted(const ChannelMap& channels, const DeepPixel& in, DeepOutPixel& out) {
  const auto range = [&](std::size_t i) {
    return embedded::DepthRange{in.getUnorderedSample(i, Chan_DeepFront),
                                in.getUnorderedSample(i, Chan_DeepBack)};
  };
  std::vector<std::size_t> order(in.getSampleCount());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return embedded::isNearer(range(a), range(b));
  });
  const ChannelSet& wanted = channels;
  for (const std::size_t i : order) {
    for (const Channel z : wanted)
      out.push_back(in.getUnorderedSample(i, z));
  }
}

embedded::SampleList readSamples(const ChannelSet& colours, const DeepPixel& in) {
  embedded::SampleList samples(colours.size());
  const Channel back = in.channels().contains(Chan_DeepBack) ? Chan_DeepBack : Chan_DeepFront;
  for (std::size_t i = 0; i < in.getSampleCount(); ++i) {
    samples.extents.push_back({in.getUnorderedSample(i, Chan_DeepFront),
                               in.getUnorderedSample(i, back),
                               in.getUnorderedSample(i, Chan_Alpha)});
    for (const Channel z : colours)
      samples.colours.push_back(in.getUnorderedSample(i, z));
  }
  return samples;
}

void writeSample(const ChannelSet& channels, const embedded::DeepExtent& extent,
                 const double* colours, DeepOutPixel& out) {
  for (const Channel z : channels) {
    if (z == Chan_Alpha) {
      out.push_back(static_cast<float>(extent.alpha));
    } else if (isDepth(z)) {
      out.push_back(static_cast<float>(z == Chan_DeepBack ? extent.back : extent.front));
    } else {
      out.push_back(static_cast<float>(*colours++));
    }
  }
}

}  // namespace

void CombineOverlappingSamples(const ChannelMap& channels, const DeepPixel& in, DeepOutPixel& out) {
  if (!in.channels().contains(Chan_DeepFront) || !in.channels().contains(Chan_Alpha)) {
    copySorted(channels, in, out);
    return;
  }
  const ChannelSet& written = channels;
  const ChannelSet colours = written - ChannelSet(Mask_Alpha | Mask_Z | Mask_Deep);
  const embedded::SampleList tidy = embedded::tidied(readSamples(colours, in));
  for (std::size_t i = 0; i < tidy.extents.size(); ++i)
    writeSample(written, tidy.extents[i], tidy.coloursOf(i), out);
}

}  // namespace Image
}  // namespace DD

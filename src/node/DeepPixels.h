#pragma once

/// Deep pixels of the host as plain sample lists.

#include <cstddef>
#include <vector>

#include "DDImage/ChannelSet.h"
#include "DDImage/DeepPixel.h"
#include "deep/DeepDepthView.h"
#include "deep/DeepSamples.h"

namespace drevin {

/// Places of the channels of a set among the values of a sample.
dvDeepLayout deepLayout(const DD::Image::ChannelSet& channels);

/// A pixel of the host together with the channels of its samples, in the order of the host or
/// nearest first. Of the wanted channels that the samples lack alpha reads 1, a back reads as the
/// front, and any other reads 0.
class dvHostPixel {
 public:
  /// `channels` are those of the pixel and must outlive this.
  dvHostPixel(const DD::Image::DeepPixel& pixel, const DD::Image::ChannelSet& channels);

  std::size_t count() const { return count_; }
  /// A value of the sample at that place in the host's order as it stands.
  float hostValue(std::size_t i, DD::Image::Channel z) const;
  /// A value of the i-th nearest sample. Which end of the host's order is the nearest is the host's
  /// affair; it shows in the fronts, then the backs, of the first and the last sample.
  float nearestFirstValue(std::size_t i, DD::Image::Channel z) const {
    return hostValue(farFirst_ ? count_ - 1 - i : i, z);
  }

 private:
  const DD::Image::DeepPixel& pixel_;
  const DD::Image::ChannelSet& channels_;
  std::size_t count_;
  bool farFirst_ = false;
};

/// Replaces `samples` by those of the pixel, in the host's order as it stands.
void readSamples(const dvHostPixel& pixel, const dvDeepLayout& layout, dvDeepSamples& samples);

/// The depths and alphas of a pixel, nearest first; the back or the front as the depth.
std::vector<dvDepthSample> depthSamples(const dvHostPixel& pixel, bool useBackDepth);

/// Depth of the farthest sample's back; the pixel has some.
float farthestBack(const dvHostPixel& pixel);

}  // namespace drevin

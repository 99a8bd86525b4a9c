#pragma once

/// Reading the samples of a deep part, one band of rows after the other.

#include <OpenEXR/ImfHeader.h>

#include <cstddef>
#include <memory>
#include <string>

#include "DDImage/ChannelSet.h"
#include "deep/DeepBand.h"
#include "deep/DeepBandPlan.h"
#include "deep/DeepChannels.h"
#include "picture/ExrHeaderScan.h"

namespace drevintool {

/// A deep part that is open: scanlines or tiles (of several levels the first), with half, float or
/// unsigned integer channels. One thread at a time may use it. Failures are std::runtime_error with
/// one line that names the file.
class DeepBandReader {
 public:
  DeepBandReader(const std::string& path, const ExrPartFacts& facts, std::size_t part,
                 DeepChannels channels);
  ~DeepBandReader();

  const Imf::Header& header() const;
  /// Reads the band with `wanted` of the served channels, and front and back among them. Sample
  /// counts come first; they must be those that the band was planned with, and within
  /// kMostPixelSamples, before samples get memory. Where the part has no back it is the front;
  /// where it has no alpha that is 1. No pixel may have more than kMostThickSamples thick ones.
  std::shared_ptr<const DeepBand> read(const DeepBandRows& rows,
                                       const DD::Image::ChannelSet& wanted);

 private:
  class Part;

  std::string path_;
  ExrPartFacts facts_;
  DeepChannels channels_;
  std::unique_ptr<Part> part_;
};

}  // namespace drevintool

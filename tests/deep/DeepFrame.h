#pragma once

/// A deep scene rendered by the imaging code alone, with no host in between.

#include <map>
#include <vector>

#include "deep/DeepDefocus.h"
#include "defocus/ImagingFrame.h"
#include "support/LiteralDeepFrame.h"

namespace drevin::test {

/// Where each channel number stands.
dvDeepLayout layoutOf(const std::vector<int>& channels);

/// A pixel's samples as the imaging code takes them, one value for each of `channels`.
dvDeepSamples samplesOf(const LiteralDeepPixel& pixel, const std::vector<int>& channels);

class DeepFrame {
 public:
  /// `scene` must outlive the frame.
  explicit DeepFrame(const LiteralDeepScene& scene);

  /// Columns [left, right) of row y for every requested channel that is processed.
  std::map<int, std::vector<float>> row(int y, int left, int right) const;

  const dvDeepSettings& settings() const { return settings_; }
  int padding() const { return imaging_.estimate().padding; }

 private:
  dvDeepRecordRow records(int y, const dvColumns& columns) const;
  void splatRow(dvDeepDefocus& defocus, int sy) const;
  std::vector<float> read(const LiteralPicture& picture, int y, const dvColumns& columns,
                          int channel) const;

  const LiteralDeepScene& scene_;
  ImagingFrame imaging_;
  dvDeepSettings settings_;
  std::vector<dvDeepChannel> channels_;
  std::vector<std::size_t> splatted_;  ///< places of the deep channels that are splatted
};

}  // namespace drevin::test

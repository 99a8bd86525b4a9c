#pragma once

/// A deep picture with the same number of samples in every pixel.

#include <cstddef>
#include <vector>

#include "EmbeddedHost/DeepInput.h"
#include "EmbeddedHost/ImageInput.h"

namespace drevin::bench {

class DeepGrid : public embedded::DeepSource {
 public:
  /// Floats of a sample: red, green, blue, alpha, front, back.
  static constexpr std::size_t sampleSize = 6;

  /// Samples one scene unit apart from the depth of each pixel of `flat` on, in its colours: half
  /// transparent, the farthest opaque. Points, or, if `thick`, each 1.5 units thick, so that they
  /// overlap.
  DeepGrid(const embedded::Image& flat, int samples, bool thick);

  int samples() const { return samples_; }
  /// The samples of a pixel inside the box, one after the other, nearest first.
  const float* pixel(int x, int y) const;

  const DD::Image::Format& format() const override { return format_; }
  const DD::Image::Box& box() const override { return box_; }
  const DD::Image::ChannelSet& channels() const override { return channels_; }
  void readRow(int y, int x, int r, const DD::Image::ChannelSet& channels,
               embedded::DeepRow& row) override;
  void append(DD::Image::Hash& hash) const override;

 private:
  void addSample(const embedded::Image& flat, std::size_t at, int index, bool thick);

  DD::Image::Format format_;
  DD::Image::Box box_;
  DD::Image::ChannelSet channels_;
  int samples_;
  std::vector<float> values_;
};

}  // namespace drevin::bench

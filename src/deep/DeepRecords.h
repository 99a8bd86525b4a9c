#pragma once

/// Deep records: what each merged sample of a source row adds to the picture, made once a row.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "deep/DeepSamples.h"
#include "deep/SampleMerge.h"
#include "defocus/BlurRecords.h"

namespace drevin {

/// Which samples of a deep pixel are taken.
enum class dvDeepMode { Both = 0, Front = 1, Back = 2 };

/// How deep samples become records; fixed while rows are produced.
struct dvDeepSettings {
  dvLens lens;
  int slices = 1;
  std::vector<float> sliceStarts;
  bool useBackDepth = false;  ///< blur by the back of a sample instead of its front
  dvDeepMode mode = dvDeepMode::Both;
};

/// Blur of a depth in scene units, with its slice.
struct dvDeepBlur {
  float coc = 0.0F;         ///< px, before the defocus matte and the least blur
  std::uint64_t slice = 0;  ///< dvNoSlice in front of the first
  dvFocusRegion region = dvFocusRegion::Back;
};

/// Converts the depth of a deep sample: clamp to the focus region in the artistic mode, kernelSize
/// for the infinitely far, interface scale. No 1/z style and no rule for non-finite depths; a NaN
/// depth counts as back.
dvDeepBlur deepBlur(float depth, const dvDeepSettings& settings);

/// One composited sample.
struct dvDeepRecord {
  float coc = 0.0F;     ///< px, before the defocus matte
  float weight = 0.0F;  ///< share of the pixel, (1 - coverage in front) * alpha; above 0, or NaN
  std::uint64_t slice = 0;
};

/// The records of one source row of the image, pixel by pixel.
class dvDeepRecordRow {
 public:
  /// `layout` tells the samples' channels; `splatted` are the places of those whose values are
  /// kept.
  dvDeepRecordRow(const dvDeepLayout& layout, const std::vector<std::size_t>& splatted);

  /// Composites the next pixel to the right from its merged pieces, nearest first:
  ///   w = (1 - A) * a,  A += w     until 1 - A < 1e-6
  /// over the pieces that the mode takes. Pieces in no slice or of weight 0 or less leave no
  /// record but count in A. Values are divided by alpha.
  void addPixel(const dvDeepSamples& samples, const std::vector<dvDeepPiece>& pieces,
                const dvDeepSettings& settings);
  /// A pixel of which nothing is known: neither samples nor the background are splatted.
  void addHole();

  std::size_t pixels() const { return firstRecord_.size() - 1; }
  /// Of all pixels.
  std::size_t records() const { return records_.size(); }
  /// Records of a pixel are those from recordsBegin to recordsEnd.
  std::size_t recordsBegin(std::size_t pixel) const { return firstRecord_[pixel]; }
  std::size_t recordsEnd(std::size_t pixel) const { return firstRecord_[pixel + 1]; }
  const dvDeepRecord& record(std::size_t i) const { return records_[i]; }
  /// Values of a record, un-premultiplied, in the order of `splatted`.
  const float* values(std::size_t i) const { return values_.data() + i * splatted_.size(); }
  /// What the samples leave to the background, 1 - A; 0 where it is not splatted.
  float background(std::size_t pixel) const { return background_[pixel]; }

 private:
  void addPiece(const dvDeepSamples& samples, const dvDeepPiece& piece, const dvDeepBlur& blur,
                float alpha, float weight);

  dvDeepLayout layout_;
  std::vector<std::size_t> splatted_;
  std::vector<std::size_t> firstRecord_{0};
  std::vector<dvDeepRecord> records_;
  std::vector<float> values_;
  std::vector<float> background_;
};

}  // namespace drevin

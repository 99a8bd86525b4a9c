#pragma once

/// The plain row-by-row form in single precision, with nothing kept from one output row to the
/// next: what the times of the frame table are compared with.
///
/// For one output row, every pixel of every source row in reach: depth to blur, slice, then two
/// passes, the kernels on either side of the blur, each
///
///   colour[c] += (k * w) * v[c]    weight[c] += k * w    for every channel c and kernel column
///
/// and then the slices are composited. A deep pixel is merged and composited to weighted samples
/// first, once more for every output row. Its file is compiled with all vector instructions of this
/// machine and with fused multiply-adds.
///
/// The literal frame of the tests is the same in double, over lists and maps, which takes several
/// times as long: fit to tell errors, not to compare times with. Long single-precision sums stray:
/// beyond blurs of about 100 px by more than a picture may.

#include <array>
#include <cstddef>
#include <vector>

#include "deep/SampleMerge.h"
#include "frames/FramePictures.h"
#include "frames/PlainLens.h"
#include "support/LiteralDeepFrame.h"

namespace drevin::bench {

class LiteralRows {
 public:
  /// Everything must outlive the rows. Chromatic aberration, bloom and mattes are left out: throws
  /// std::invalid_argument for a scene with them.
  LiteralRows(const test::LiteralScene& scene, const test::LiteralFrame& frame,
              const DeepGrid* deep);

  /// Row y of RGBA, one plane after the other. One thread.
  std::vector<float> row(int y);

 private:
  static constexpr std::size_t channels = 4;
  using Values = std::array<float, channels>;

  /// A source on its way to the output row.
  struct Source {
    int x = 0;           ///< its own column
    int rowsAbove = 0;   ///< its own row less the output row
    std::size_t at = 0;  ///< the pixel that is read for it
  };

  std::size_t pixelAt(int x, int y) const;
  void addFlatPixel(const Source& source);
  void addDeepPixel(const Source& source);
  void readSamples(std::size_t at);
  void splat(const Source& source, const PlainBlur& blur, float weight, const Values& values);
  void addPass(const Source& source, int index, float weight, const Values& values, float* sums);
  std::vector<float> composited() const;
  void compositeChannel(std::size_t channel, float* values, float* coverage) const;

  const test::LiteralScene& scene_;
  const test::LiteralFrame& frame_;
  const DeepGrid* deep_;
  PlainLens lens_;
  int width_;
  int height_;
  std::array<const float*, channels> colour_{};
  const float* depth_;
  std::vector<int> sides_;                                   ///< of kernels by index in the bank
  std::vector<std::array<const float*, channels>> kernels_;  ///< their planes
  std::vector<float> sums_;  ///< by slice and channel, a row of colours, then one of weights
  dvDeepLayout layout_;
  dvDeepSamples samples_;
  std::vector<dvDeepPiece> pieces_;
};

}  // namespace drevin::bench

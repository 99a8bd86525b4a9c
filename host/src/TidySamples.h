#pragma once

/// Deep samples cut and mixed until no two share a stretch of depth.

#include <cstddef>
#include <vector>

namespace embedded {

/// Where a sample lies and how much it hides. A point has its back at its front.
struct DeepExtent {
  double front = 0.0;
  double back = 0.0;
  double alpha = 0.0;
};

/// The samples of a pixel.
struct SampleList {
  explicit SampleList(std::size_t count) : colourCount(count) {}

  std::size_t colourCount;
  std::vector<DeepExtent> extents;
  std::vector<double> colours;  ///< premultiplied, `colourCount` for each sample

  const double* coloursOf(std::size_t sample) const {
    return colours.data() + sample * colourCount;
  }
};

/// NaN depths become infinitely far, a back in front of the front becomes the front, alpha is
/// limited to [0, 1], and NaN alpha becomes 0.
DeepExtent limited(const DeepExtent& extent);

/// The share of a volume's depth that lies between `from` and `to`, both inside it. A volume
/// without end is the limit of longer and longer ones: what is bounded has no share of it, and two
/// open ends have a half each. Depths are finite floats or infinite.
double shareOfDepth(const DeepExtent& volume, double from, double to);

/// The tidy pixel of any samples, limited first; nearest first. Between two neighbours among all
/// fronts and backs there is one sample, the mix of the shares of all volumes that reach across;
/// at each depth with points there is one, the points composited over one another as they stand,
/// between the volume that ends and the one that begins there.
///
/// Time: n log n for n samples, and the number of pairs of a stretch and a volume across it.
SampleList tidied(const SampleList& samples);

}  // namespace embedded

#pragma once

/// Media that share a stretch of depth.

#include <cstddef>
#include <vector>

namespace embedded {

/// A medium of opacity a and premultiplied colour c, in the terms in which media that share a space
/// add up:
///   u = -log(1 - a)    optical depth; infinite for a = 1
///   e = c * u / a      colour before the medium hides any of itself; c for a = 0
/// and back:
///   a = 1 - exp(-u),   c = e * a / u   (e for u = 0)
/// u and e grow with the share f of the medium's depth, so that its alpha is 1 - (1 - a)^f.

/// u, for alpha from 0 to 1.
double opticalDepth(double alpha);
/// The factor from c to e: u / a. 1 for alpha 0 and, since e has no end there, for alpha 1.
double unhiddenFactor(double alpha);

/// The sum of media. Opaque ones hide all others, by which their shares do not count; of several
/// the colour is the mean.
class MediaMix {
 public:
  explicit MediaMix(std::size_t colours) : sums_(colours, 0.0) {}

  void clear();
  /// Adds the share of a medium, from 0 to 1, by its optical depth and its unhidden colours. A
  /// share of 0 of a medium that is not opaque adds nothing, whatever its colours.
  void add(double depth, const double* unhidden, double share);

  double alpha() const;
  /// Appends the premultiplied colours.
  void appendColours(std::vector<double>& colours) const;

 private:
  double factor() const;

  double opticalDepth_ = 0.0;
  int opaque_ = 0;            ///< number of opaque media
  std::vector<double> sums_;  ///< unhidden colours; of the opaque media only, where there are any
};

}  // namespace embedded

#include "MediaMix.h"

#include <algorithm>
#include <cmath>

namespace embedded {

double opticalDepth(double alpha) {
  return -std::log1p(-alpha);
}

double unhiddenFactor(double alpha) {
  return alpha > 0.0 && alpha < 1.0 ? opticalDepth(alpha) / alpha : 1.0;
}

void MediaMix::clear() {
  opticalDepth_ = 0.0;
  opaque_ = 0;
  std::fill(sums_.begin(), sums_.end(), 0.0);
}

void MediaMix::add(double depth, const double* unhidden, double share) {
  const bool opaque = std::isinf(depth);
  if (opaque && opaque_++ == 0) std::fill(sums_.begin(), sums_.end(), 0.0);
  if (!opaque && (opaque_ > 0 || share == 0.0)) return;
  const double part = opaque ? 1.0 : share;
  if (!opaque) opticalDepth_ += depth * part;
  for (std::size_t i = 0; i < sums_.size(); ++i)
    sums_[i] += unhidden[i] * part;
}

double MediaMix::alpha() const {
  return opaque_ > 0 ? 1.0 : -std::expm1(-opticalDepth_);
}

double MediaMix::factor() const {
  if (opaque_ > 0) return 1.0 / opaque_;
  return opticalDepth_ > 0.0 ? alpha() / opticalDepth_ : 1.0;
}

void MediaMix::appendColours(std::vector<double>& colours) const {
  const double scale = factor();
  for (const double sum : sums_)
    colours.push_back(sum * scale);
}

}  // namespace embedded

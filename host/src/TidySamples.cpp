#include "TidySamples.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <numeric>
#include <utility>

#include "MediaMix.h"

namespace embedded {

namespace {

constexpr double farthest = std::numeric_limits<double>::infinity();

/// Points at one depth, each behind those that were added before.
class PointStack {
 public:
  explicit PointStack(std::size_t colours) : colours_(colours, 0.0) {}

  void add(double alpha, const double* colours) {
    const double seen = 1.0 - alpha_;
    ++count_;
    if (seen == 0.0) return;
    alpha_ += seen * alpha;
    for (std::size_t i = 0; i < colours_.size(); ++i)
      colours_[i] += seen * colours[i];
  }

  /// Appends them as one sample, if there are any, and begins anew.
  void moveTo(double depth, SampleList& out) {
    if (count_ == 0) return;
    out.extents.push_back({depth, depth, alpha_});
    out.colours.insert(out.colours.end(), colours_.begin(), colours_.end());
    count_ = 0;
    alpha_ = 0.0;
    std::fill(colours_.begin(), colours_.end(), 0.0);
  }

 private:
  std::size_t count_ = 0;
  double alpha_ = 0.0;
  std::vector<double> colours_;
};

/// Walks from the nearest front or back to the farthest.
class Sweep {
 public:
  explicit Sweep(const SampleList& samples);

  SampleList run();

 private:
  void addSample(const DeepExtent& extent, const double* colours);
  void leaveVolumes(double depth);
  void beginSamples(double depth);
  void addStretch(double from, double to);

  std::size_t colourCount_;
  std::vector<DeepExtent> extents_;    ///< sorted by front, then back, else as they stood
  std::vector<double> opticalDepths_;  ///< of each
  std::vector<double> colours_;        ///< of each; unhidden for volumes
  std::vector<double> depths_;         ///< all fronts and backs, each once
  std::size_t begun_ = 0;              ///< how many samples begin at the depth reached or before
  std::vector<std::size_t> inside_;    ///< the volumes that reach behind the depth reached
  PointStack points_;
  MediaMix mix_;
  SampleList out_;
};

Sweep::Sweep(const SampleList& samples)
    : colourCount_(samples.colourCount),
      points_(samples.colourCount),
      mix_(samples.colourCount),
      out_(samples.colourCount) {
  std::vector<DeepExtent> unsorted;
  std::transform(samples.extents.begin(), samples.extents.end(), std::back_inserter(unsorted),
                 limited);
  std::vector<std::size_t> order(unsorted.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    const DeepExtent& first = unsorted[a];
    const DeepExtent& second = unsorted[b];
    return first.front != second.front ? first.front < second.front : first.back < second.back;
  });
  for (const std::size_t sample : order)
    addSample(unsorted[sample], samples.coloursOf(sample));
  std::sort(depths_.begin(), depths_.end());
  depths_.erase(std::unique(depths_.begin(), depths_.end()), depths_.end());
}

void Sweep::addSample(const DeepExtent& extent, const double* colours) {
  extents_.push_back(extent);
  opticalDepths_.push_back(opticalDepth(extent.alpha));
  depths_.push_back(extent.front);
  depths_.push_back(extent.back);
  const double factor = extent.front < extent.back ? unhiddenFactor(extent.alpha) : 1.0;
  for (std::size_t i = 0; i < colourCount_; ++i)
    colours_.push_back(colours[i] * factor);
}

SampleList Sweep::run() {
  for (std::size_t i = 0; i < depths_.size(); ++i) {
    leaveVolumes(depths_[i]);
    beginSamples(depths_[i]);
    if (!inside_.empty()) addStretch(depths_[i], depths_[i + 1]);
  }
  return std::move(out_);
}

void Sweep::leaveVolumes(double depth) {
  const auto ended = [&](std::size_t volume) { return extents_[volume].back <= depth; };
  inside_.erase(std::remove_if(inside_.begin(), inside_.end(), ended), inside_.end());
}

void Sweep::beginSamples(double depth) {
  for (; begun_ < extents_.size() && extents_[begun_].front == depth; ++begun_) {
    const DeepExtent& extent = extents_[begun_];
    if (extent.front < extent.back) {
      inside_.push_back(begun_);
    } else {
      points_.add(extent.alpha, colours_.data() + begun_ * colourCount_);
    }
  }
  points_.moveTo(depth, out_);
}

void Sweep::addStretch(double from, double to) {
  mix_.clear();
  for (const std::size_t volume : inside_) {
    mix_.add(opticalDepths_[volume], colours_.data() + volume * colourCount_,
             shareOfDepth(extents_[volume], from, to));
  }
  out_.extents.push_back({from, to, mix_.alpha()});
  mix_.appendColours(out_.colours);
}

}  // namespace

DeepExtent limited(const DeepExtent& extent) {
  const double front = std::isnan(extent.front) ? farthest : extent.front;
  const double back = std::isnan(extent.back) ? farthest : extent.back;
  const double alpha = std::isnan(extent.alpha) ? 0.0 : extent.alpha;
  return {front, std::max(front, back), std::clamp(alpha, 0.0, 1.0)};
}

double shareOfDepth(const DeepExtent& volume, double from, double to) {
  const int openEnds = (std::isinf(volume.front) ? 1 : 0) + (std::isinf(volume.back) ? 1 : 0);
  if (openEnds == 0) return (to - from) / (volume.back - volume.front);
  const int open = (std::isinf(from) ? 1 : 0) + (std::isinf(to) ? 1 : 0);
  return static_cast<double>(open) / openEnds;
}

SampleList tidied(const SampleList& samples) {
  return Sweep(samples).run();
}

}  // namespace embedded

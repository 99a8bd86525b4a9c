#pragma once

/// The finished deep defocus of the requested box, made when the node opens.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "DDImage/Box.h"
#include "DDImage/ChannelSet.h"
#include "DDImage/Row.h"
#include "node/DeepPlan.h"

namespace drevin {

/// Rows are made in bands from the bottom up. Every deep pixel in reach is read, merged and
/// composited once, and forgotten when the rows that it reaches are done, so that memory follows
/// the reach of the blur and not the picture.
class dvDeepPicture {
 public:
  /// Makes the picture on all processors; `box` has the plan's columns. Calls `progress` on this
  /// thread with the share that is done. After an abort the picture stays empty.
  void make(const dvDeepPlan& plan, const DD::Image::Box& box,
            const std::function<void(double)>& progress);
  void clear();

  /// Whether columns [x, r) of row y are there for the mode and all of `channels`.
  bool has(int y, int x, int r, const DD::Image::ChannelSet& channels, dvDeepMode mode) const;
  /// Copies them; they must be there.
  void copy(int y, int x, int r, const DD::Image::ChannelSet& channels, dvDeepMode mode,
            DD::Image::Row& out) const;

  /// Deep pixels that went through the merge for this picture.
  std::uint64_t mergedPixels() const { return mergedPixels_; }

 private:
  class Making;
  using Plane = std::vector<float>;
  using Planes = std::map<DD::Image::Channel, Plane>;

  std::ptrdiff_t offset(int y) const;

  DD::Image::Box box_;
  DD::Image::ChannelSet channels_;
  std::map<dvDeepMode, Planes> modes_;
  std::uint64_t mergedPixels_ = 0;
};

}  // namespace drevin

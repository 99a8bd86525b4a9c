#pragma once

/// What a deep operator says of its picture: box, formats and channels.

#include "DDImage/ChannelSet.h"
#include "DDImage/Format.h"

namespace DD {
namespace Image {

class DD_EXPORT DeepInfo {
 public:
  DeepInfo() = default;
  DeepInfo(const FormatPair& formats, const Box& box, const ChannelSet& channels)
      : formats_(formats), box_(box), channels_(channels) {}

  const FormatPair& formats() const { return formats_; }
  const Format* format() const { return formats_.format(); }
  const Box& box() const { return box_; }
  int x() const { return box_.x(); }
  int y() const { return box_.y(); }
  int r() const { return box_.r(); }
  int t() const { return box_.t(); }
  const ChannelSet& channels() const { return channels_; }

 private:
  FormatPair formats_;
  Box box_;
  ChannelSet channels_;
};

}  // namespace Image
}  // namespace DD

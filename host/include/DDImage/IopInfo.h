#pragma once

/// What an image operator says of its picture: box, formats and channels.

#include "DDImage/ChannelSet.h"
#include "DDImage/Info2D.h"

namespace DD {
namespace Image {

class DD_EXPORT IopInfo : public Info2D {
 public:
  ChannelSet& channels() { return channels_; }
  ChannelMask channels() const { return channels_; }
  void channels(ChannelMask channels) { channels_ = channels; }
  void turn_on(ChannelMask channels) { channels_ += channels; }
  void turn_off(ChannelMask channels) { channels_ -= channels; }

  /// True as a promise that everything outside the box is black. It blackens nothing by itself.
  bool black_outside() const { return blackOutside_; }
  void black_outside(bool value) { blackOutside_ = value; }

 private:
  ChannelSet channels_;
  bool blackOutside_ = false;
};

}  // namespace Image
}  // namespace DD

#pragma once

/// The black picture that stands in for an image input that is not connected.

#include "DDImage/Iop.h"

namespace embedded {

/// Black in the colour channels over a format of 1920 x 1080 pixels.
class BlackIop : public DD::Image::Iop {
 public:
  BlackIop();
  const char* Class() const override;
  const char* node_help() const override;

 protected:
  void _validate(bool for_real) override;
  void engine(int y, int x, int r, DD::Image::ChannelMask channels, DD::Image::Row& row) override;
};

}  // namespace embedded

#pragma once

/// A mark on the part of an input that is about to be read.

#include "DDImage/Box.h"
#include "DDImage/ChannelSet.h"
#include "DDImage/Iop.h"

namespace DD {
namespace Image {

class InterestRatchet;

/// This host has no row cache to hold on to, so that the mark is only its region.
class DD_EXPORT Interest : public Box {
 public:
  Interest(Iop& iop, ChannelMask channels, bool mt = false, InterestRatchet* ratchet = nullptr,
           float fracCPU = 1.0F);
  Interest(Iop& iop, int x, int y, int r, int t, ChannelMask channels, bool mt = false,
           InterestRatchet* ratchet = nullptr, float fracCPU = 1.0F);
  Interest(Iop& iop, const Box& box, ChannelMask channels, bool mt = false,
           InterestRatchet* ratchet = nullptr, float fracCPU = 1.0F);
  ~Interest() = default;
  Interest(const Interest&) = delete;
  Interest& operator=(const Interest&) = delete;
};

}  // namespace Image
}  // namespace DD

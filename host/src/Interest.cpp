#include "DDImage/Interest.h"

namespace DD {
namespace Image {

Interest::Interest(Iop& iop, ChannelMask channels, bool mt, InterestRatchet* ratchet, float fracCPU)
    : Interest(iop, static_cast<const Box&>(iop.info()), channels, mt, ratchet, fracCPU) {}

Interest::Interest(Iop& iop, int x, int y, int r, int t, ChannelMask channels, bool mt,
                   InterestRatchet* ratchet, float fracCPU)
    : Interest(iop, Box(x, y, r, t), channels, mt, ratchet, fracCPU) {}

Interest::Interest(Iop& /*iop*/, const Box& box, ChannelMask /*channels*/, bool /*mt*/,
                   InterestRatchet* /*ratchet*/, float /*fracCPU*/)
    : Box(box) {}

}  // namespace Image
}  // namespace DD

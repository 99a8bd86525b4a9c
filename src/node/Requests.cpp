/// Requests: what the node reads of its inputs for an output box.

#include "DDImage/DeepInfo.h"
#include "DDImage/DeepOp.h"
#include "node/Drevin.h"

namespace drevin {

using DD::Image::Box;
using DD::Image::Chan_Alpha;
using DD::Image::Chan_DeepBack;
using DD::Image::Chan_DeepFront;
using DD::Image::Chan_Z;
using DD::Image::ChannelMask;
using DD::Image::ChannelSet;
using DD::Image::DeepOp;

void Drevin::in_channels(ChannelSet& channels) const {
  channels += settings_.processChannels;
  channels += settings_.depthChannel;
  channels += Chan_Alpha;
}

void Drevin::deep_in_channels(ChannelSet& channels) const {
  channels += settings_.processChannels;
  channels -= Chan_Z;
  channels += Chan_Alpha;
  channels += Chan_DeepFront;
  channels += Chan_DeepBack;
}

void Drevin::_request(int x, int y, int r, int t, ChannelMask channels, int count) {
  settings_.processChannels =
      settings_.bokehChannels.all() ? ChannelSet(channels) : settings_.bokehChannels;
  const Box box(x, y, r, t);
  if (requestedBox_) {
    requestedBox_->merge(box);
  } else {
    requestedBox_ = box;
  }
  requestedChannels_ += channels;
  const Box padded(x - padding_, y - padding_, r + padding_, t + padding_);
  if (Iop* image = input(dvInput::image)) {
    ChannelSet read(channels);
    in_channels(read);
    image->request(padded, read, count);
  }
  if (Iop* kernel = input(dvInput::kernel)) kernel->request(settings_.processChannels, count);
  if (Iop* mattes = input(dvInput::mattes)) mattes->request(padded, matteChannels_, count);
  if (settings_.deepInput) requestDeepInput(padded, channels, count);
}

void Drevin::requestDeepInput(const Box& box, const ChannelSet& channels, int count) {
  auto* deep = dynamic_cast<DeepOp*>(Op::input(dvInput::deep));
  if (deep == nullptr) return;
  ChannelSet read(channels);
  deep_in_channels(read);
  deep->validate(true);
  read &= deep->deepInfo().channels();
  deep->deepRequest(box, read, count);
}

}  // namespace drevin

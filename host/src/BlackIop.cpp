#include "BlackIop.h"

namespace embedded {

BlackIop::BlackIop() : Iop(nullptr) {
  inputs(0);
}

const char* BlackIop::Class() const {
  return "Black";
}
const char* BlackIop::node_help() const {
  return "A black picture";
}

void BlackIop::_validate(bool /*for_real*/) {
  const DD::Image::Format hd(1920, 1080);
  info_.setFormats(DD::Image::FormatPair(hd));
  info_.set(hd);
  info_.channels(DD::Image::Mask_RGBA);
}

void BlackIop::engine(int /*y*/, int /*x*/, int /*r*/, DD::Image::ChannelMask channels,
                      DD::Image::Row& row) {
  row.erase(channels);
}

}  // namespace embedded

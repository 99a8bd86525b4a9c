#include "DDImage/Iop.h"

#include "BlackIop.h"
#include "OpState.h"

namespace DD {
namespace Image {

Iop::Iop(Node* node) : Op(node) {
  inputs(1);
}
Iop::~Iop() = default;

Iop* Iop::input(int n) const {
  Op* op = Op::input(n);
  return op == nullptr ? nullptr : op->iop();
}

bool Iop::test_input(int /*n*/, Op* op) const {
  return dynamic_cast<Iop*>(op) != nullptr;
}

Op* Iop::default_input(int /*n*/) const {
  return new embedded::BlackIop;
}

void Iop::in_channels(int /*n*/, ChannelSet& /*channels*/) const {}

void Iop::request(int x, int y, int r, int t, ChannelMask channels, int count) {
  request(Box(x, y, r, t), channels, count);
}

void Iop::request(ChannelMask channels, int count) {
  request(Box(info_), channels, count);
}

void Iop::request(const Box& box, ChannelMask channels, int count) {
  Box clipped(box);
  clipped.intersect(info_);
  ChannelSet wanted(channels);
  wanted &= info_.channels();
  if (clipped.empty() || wanted.empty()) return;
  hostState().recordRequest(clipped, wanted);
  _request(clipped.x(), clipped.y(), clipped.r(), clipped.t(), wanted, count);
}

float Iop::at(int x, int y, Channel z) {
  if (info_.empty() || inError() || !info_.channels().contains(z)) return 0.0F;
  const int column = clampx(x);
  const int row = clampy(y);
  const float* direct = directRow(row, z);
  if (direct != nullptr) return direct[column];
  Row made(column, column + 1);
  made.get(*this, row, column, column + 1, ChannelSet(z));
  return made[z][column];
}

void Iop::_validate(bool /*for_real*/) {
  copy_info();
}

void Iop::copy_info(int n) {
  Iop* source = input(n);
  if (source == nullptr) {
    info_ = Info();
    return;
  }
  source->validate(true);
  info_ = source->info();
}

void Iop::_request(int x, int y, int r, int t, ChannelMask channels, int count) {
  for (int n = 0; n < inputs(); ++n) {
    Iop* source = input(n);
    if (source == nullptr) continue;
    ChannelSet needed(channels);
    in_channels(n, needed);
    source->request(x, y, r, t, needed, count);
  }
}

void Iop::_open() {}
void Iop::_close() {}

const float* Iop::directRow(int /*y*/, Channel /*z*/) const {
  return nullptr;
}

}  // namespace Image
}  // namespace DD

#include "DDImage/Row.h"

#include <algorithm>

#include "DDImage/Iop.h"

namespace DD {
namespace Image {

namespace {

/// Biased so that index x is the first element. Rows are addressed by absolute column; an offset
/// outside the memory is never dereferenced.
template <class Float>
Float* biased(Float* data, int x) {
  return data - static_cast<std::ptrdiff_t>(x);
}

}  // namespace

Row::Row(int x, int r) : x_(x), r_(r) {}
Row::~Row() = default;

const float* Row::zeros() const {
  if (wideZeros_.empty()) wideZeros_.resize(std::max<std::size_t>(width(), 1), 0.0F);
  return biased(wideZeros_.data(), x_);
}

Row::Slot& Row::slot(Channel z) {
  const auto n = static_cast<std::size_t>(z);
  if (n >= slots_.size()) slots_.resize(n + 1);
  return slots_[n];
}

float* Row::writable(Channel z) {
  Slot& s = slot(z);
  if (s.own == nullptr) s.own = std::make_unique<float[]>(std::max<std::size_t>(width(), 1));
  float* data = biased(s.own.get(), x_);
  s.data = data;
  return data;
}

void Row::get(Iop& iop, int y, int x, int r, ChannelMask channels) {
  if (r <= x) return;
  const IopInfo& info = iop.info();
  ChannelSet made(channels);
  made &= info.channels();
  ChannelSet absent(channels);
  absent -= made;
  erase(absent);
  if (info.empty() || iop.inError()) {
    erase(made);
    return;
  }
  const int row = info.clampy(y);
  ChannelSet indirect;
  for (const Channel z : made) {
    if (!readDirectly(iop, row, x, r, z)) indirect += z;
  }
  if (!indirect.empty()) readThroughEngine(iop, row, x, r, indirect);
}

bool Row::readDirectly(Iop& iop, int y, int x, int r, Channel z) {
  const float* direct = iop.directRow(y, z);
  if (direct == nullptr) return false;
  const IopInfo& info = iop.info();
  if (x >= info.x() && r <= info.r() && x == x_ && r == r_) {
    slot(z).data = direct;
  } else {
    copyPadded(z, direct, info.x(), info.r(), x, r);
  }
  return true;
}

void Row::readThroughEngine(Iop& iop, int y, int x, int r, const ChannelSet& channels) {
  const IopInfo& info = iop.info();
  // A span beside the box still needs the edge pixel that it repeats.
  const int left = info.clampx(x);
  const int right = info.clampx(r - 1) + 1;
  iop.open();
  Row made(left, right);
  iop.engine(y, left, right, channels, made);
  if (iop.inError()) {
    erase(channels);
    return;
  }
  for (const Channel z : channels)
    copyPadded(z, made[z], left, right, x, r);
}

void Row::copyPadded(Channel z, const float* source, int left, int right, int x, int r) {
  float* data = writable(z);
  const int first = std::max(x, std::min(left, r));
  const int last = std::max(first, std::min(right, r));
  std::fill(data + x, data + first, source[left]);
  std::copy(source + first, source + last, data + first);
  std::fill(data + last, data + r, source[right - 1]);
}

void Row::copy(const Row& from, ChannelMask channels, int x, int r) {
  for (const Channel z : channels)
    copy(z, from, z, x, r);
}

void Row::copy(Channel to, const Row& from, Channel source, int x, int r) {
  if (r <= x) return;
  const float* data = from[source];
  float* own = writable(to);
  if (own != data) std::copy(data + x, data + r, own + x);
}

void Row::erase(ChannelMask channels) {
  for (const Channel z : channels)
    erase(z);
}

void Row::erase(Channel z) {
  const auto n = static_cast<std::size_t>(z);
  if (n < slots_.size()) slots_[n].data = nullptr;
}

bool Row::is_zero(Channel z) const {
  const auto n = static_cast<std::size_t>(z);
  return n >= slots_.size() || slots_[n].data == nullptr;
}

}  // namespace Image
}  // namespace DD

#include "DDImage/ChannelSet.h"

#include <algorithm>

#include "DDImage/Hash.h"

namespace DD {
namespace Image {

ChannelSet::ChannelSet(ChannelSetInit mask) {
  if (mask == Mask_All) {
    words_.fill(~std::uint64_t{0});
    words_[0] &= ~bit(Chan_Black);
    return;
  }
  // Bit n - 1 of the mask is channel n.
  words_[0] = static_cast<std::uint64_t>(mask) << 1U;
}

ChannelSet::ChannelSet(const Channel* channels, int count) {
  for (int i = 0; i < count; ++i)
    *this += channels[i];
}

bool ChannelSet::empty() const {
  return std::all_of(words_.begin(), words_.end(), [](std::uint64_t word) { return word == 0; });
}

bool ChannelSet::all() const {
  return *this == ChannelSet(Mask_All);
}

std::size_t ChannelSet::size() const {
  std::size_t count = 0;
  for (const std::uint64_t word : words_) {
    count += static_cast<std::size_t>(__builtin_popcountll(word));
  }
  return count;
}

bool ChannelSet::contains(const ChannelSet& other) const {
  for (std::size_t i = 0; i < kWords; ++i) {
    if ((other.words_[i] & ~words_[i]) != 0) return false;
  }
  return true;
}

void ChannelSet::operator+=(const ChannelSet& other) {
  for (std::size_t i = 0; i < kWords; ++i)
    words_[i] |= other.words_[i];
}

void ChannelSet::operator-=(const ChannelSet& other) {
  for (std::size_t i = 0; i < kWords; ++i)
    words_[i] &= ~other.words_[i];
}

void ChannelSet::operator&=(const ChannelSet& other) {
  for (std::size_t i = 0; i < kWords; ++i)
    words_[i] &= other.words_[i];
}

Channel ChannelSet::next(Channel z) const {
  const auto from = static_cast<std::size_t>(z) + 1;
  for (std::size_t i = from / kWordBits; i < kWords; ++i) {
    std::uint64_t word = words_[i];
    if (i == from / kWordBits) word &= ~std::uint64_t{0} << (from % kWordBits);
    if (word == 0) continue;
    return static_cast<Channel>(i * kWordBits + static_cast<std::size_t>(__builtin_ctzll(word)));
  }
  return Chan_Black;
}

void ChannelSet::append(Hash& hash) const {
  hash.append(words_.data(), words_.size() * sizeof(words_[0]));
}

}  // namespace Image
}  // namespace DD

#pragma once

/// Sets of channels, visited in ascending order of their numbers.

#include <array>
#include <cstddef>
#include <cstdint>

#include "DDImage/Channel.h"

namespace DD {
namespace Image {

class Hash;

/// Sets that can be named without a program: bit n - 1 stands for channel n.
enum ChannelSetInit : unsigned {
  Mask_None = 0,
  Mask_Red = 1U << (Chan_Red - 1),
  Mask_Green = 1U << (Chan_Green - 1),
  Mask_Blue = 1U << (Chan_Blue - 1),
  Mask_Alpha = 1U << (Chan_Alpha - 1),
  Mask_Z = 1U << (Chan_Z - 1),
  Mask_DeepFront = 1U << (Chan_DeepFront - 1),
  Mask_DeepBack = 1U << (Chan_DeepBack - 1),
  Mask_RGB = Mask_Red | Mask_Green | Mask_Blue,
  Mask_RGBA = Mask_RGB | Mask_Alpha,
  Mask_Deep = Mask_DeepFront | Mask_DeepBack,
  Mask_All = ~0U  ///< every channel, also those that get their name later
};

constexpr ChannelSetInit operator|(ChannelSetInit a, ChannelSetInit b) {
  return static_cast<ChannelSetInit>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

/// A set of the channels 1 to Chan_Last; Chan_Black is never in it.
class DD_EXPORT ChannelSet {
 public:
  class const_iterator {
   public:
    const_iterator(const ChannelSet* set, Channel at) : set_(set), at_(at) {}
    Channel operator*() const { return at_; }
    const_iterator& operator++() {
      at_ = set_->next(at_);
      return *this;
    }
    bool operator==(const const_iterator& other) const { return at_ == other.at_; }
    bool operator!=(const const_iterator& other) const { return at_ != other.at_; }

   private:
    const ChannelSet* set_;
    Channel at_;
  };
  using iterator = const_iterator;

  ChannelSet() = default;
  ChannelSet(ChannelSetInit mask);                   // NOLINT(google-explicit-constructor)
  ChannelSet(Channel channel) { *this += channel; }  // NOLINT(google-explicit-constructor)
  ChannelSet(const Channel* channels, int count);

  void clear() { words_.fill(0); }
  bool empty() const;
  /// True if every channel is in the set, as in Mask_All.
  bool all() const;
  explicit operator bool() const { return !empty(); }
  std::size_t size() const;

  bool contains(Channel z) const { return inRange(z) && (word(z) & bit(z)) != 0; }
  /// True if all of `other` is in this set.
  bool contains(const ChannelSet& other) const;

  void insert(Channel z) { *this += z; }
  void erase(Channel z) { *this -= z; }

  void operator+=(Channel z) {
    if (inRange(z)) word(z) |= bit(z);
  }
  void operator-=(Channel z) {
    if (inRange(z)) word(z) &= ~bit(z);
  }
  void operator&=(Channel z) { *this &= ChannelSet(z); }
  void operator+=(const ChannelSet& other);
  void operator-=(const ChannelSet& other);
  void operator&=(const ChannelSet& other);

  bool operator==(const ChannelSet& other) const { return words_ == other.words_; }
  bool operator!=(const ChannelSet& other) const { return words_ != other.words_; }
  bool operator&(Channel z) const { return contains(z); }

  /// The lowest channel, or Chan_Black if the set is empty.
  Channel first() const { return next(Chan_Black); }
  /// The lowest channel above `z`, or Chan_Black after the last.
  Channel next(Channel z) const;
  const_iterator begin() const { return {this, first()}; }
  const_iterator end() const { return {this, Chan_Black}; }

  void append(Hash& hash) const;

 private:
  static constexpr std::size_t kWordBits = 64;
  static constexpr std::size_t kWords = (Chan_Last + 1) / kWordBits;

  static bool inRange(Channel z) { return z > Chan_Black && z <= Chan_Last; }
  static std::uint64_t bit(Channel z) {
    return std::uint64_t{1} << (static_cast<std::size_t>(z) % kWordBits);
  }
  std::uint64_t& word(Channel z) { return words_[static_cast<std::size_t>(z) / kWordBits]; }
  std::uint64_t word(Channel z) const { return words_[static_cast<std::size_t>(z) / kWordBits]; }

  std::array<std::uint64_t, kWords> words_{};
};

/// The type of nearly every parameter that names channels.
typedef const ChannelSet& ChannelMask;  // NOLINT(modernize-use-using)

inline ChannelSet operator+(ChannelSet a, const ChannelSet& b) {
  a += b;
  return a;
}
inline ChannelSet operator-(ChannelSet a, const ChannelSet& b) {
  a -= b;
  return a;
}

}  // namespace Image
}  // namespace DD

/// Runs the statement after it with VAR as each channel of the set, in ascending order.
#define foreach(VAR, CHANNELS) for (const DD::Image::Channel VAR : (CHANNELS))

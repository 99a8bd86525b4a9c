#include "DDImage/Hash.h"

#include <cstring>

namespace DD {
namespace Image {

namespace {

/// Finaliser of a 64-bit multiplicative hash: every input bit reaches every output bit.
U64 scramble(U64 x) {
  x ^= x >> 30U;
  x *= 0xbf58476d1ce4e5b9ULL;
  x ^= x >> 27U;
  x *= 0x94d049bb133111ebULL;
  return x ^ (x >> 31U);
}

U64 mixed(U64 state, U64 word) {
  return scramble(state ^ (word + 0x9e3779b97f4a7c15ULL));
}

}  // namespace

void Hash::mix(U64 word) {
  state_ = mixed(state_, word);
  ++words_;
}

U64 Hash::value() const {
  return words_ == 0 ? 0 : scramble(state_ + words_);
}

void Hash::append(const void* data, std::size_t bytes) {
  const auto* from = static_cast<const unsigned char*>(data);
  // Four words side by side: pictures are long, and one word after the other has to wait for it.
  constexpr std::size_t lanes = 4;
  if (bytes >= lanes * sizeof(U64)) {
    U64 states[lanes] = {0, 1, 2, 3};
    for (; bytes >= sizeof(states); bytes -= sizeof(states), from += sizeof(states)) {
      U64 words[lanes];
      std::memcpy(words, from, sizeof(words));
      for (std::size_t i = 0; i < lanes; ++i)
        states[i] = mixed(states[i], words[i]);
    }
    for (const U64 state : states)
      mix(state);
  }
  for (; bytes >= sizeof(U64); bytes -= sizeof(U64), from += sizeof(U64)) {
    U64 word = 0;
    std::memcpy(&word, from, sizeof(word));
    mix(word);
  }
  if (bytes == 0) return;
  // At most seven bytes are left: the eighth says how many, so that a zero byte at the end counts.
  U64 rest = static_cast<U64>(bytes) << 56U;
  std::memcpy(&rest, from, bytes);
  mix(rest);
}

void Hash::append(const char* text) {
  append(std::string(text == nullptr ? "" : text));
}

void Hash::append(const std::string& text) {
  append(static_cast<U64>(text.size()));
  append(text.data(), text.size());
}

void Hash::append(bool value) {
  mix(value ? 1U : 0U);
}
void Hash::append(int value) {
  mix(static_cast<U64>(static_cast<std::int64_t>(value)));
}
void Hash::append(unsigned value) {
  mix(value);
}
void Hash::append(U64 value) {
  mix(value);
}

void Hash::append(float value) {
  append(&value, sizeof(value));
}
void Hash::append(double value) {
  append(&value, sizeof(value));
}

}  // namespace Image
}  // namespace DD

#pragma once

/// A 64-bit hash that stands for the data of an operator: equal hashes are taken as equal data.

#include <cstddef>
#include <cstdint>
#include <string>

#include "DDImage/Export.h"

namespace DD {
namespace Image {

using U64 = std::uint64_t;

class DD_EXPORT Hash {
 public:
  Hash() = default;

  void append(const void* data, std::size_t bytes);
  void append(const char* text);
  void append(const std::string& text);
  void append(bool value);
  void append(int value);
  void append(unsigned value);
  void append(float value);
  void append(double value);
  void append(U64 value);
  void append(const Hash& other) { append(other.value()); }

  void reset() { *this = Hash(); }
  U64 value() const;
  U64 getHash() const { return value(); }

  bool operator==(const Hash& other) const { return value() == other.value(); }
  bool operator!=(const Hash& other) const { return value() != other.value(); }
  bool operator<(const Hash& other) const { return value() < other.value(); }

 private:
  void mix(U64 word);

  U64 state_ = 0;
  U64 words_ = 0;
};

}  // namespace Image
}  // namespace DD

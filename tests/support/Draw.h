#pragma once

/// Random numbers that are the same on every machine: the library's distributions are not.

#include <cstdint>
#include <random>

namespace drevin::test {

class Draw {
 public:
  explicit Draw(unsigned seed) : generator_(seed) {}

  /// Evenly from [low, high).
  float real(float low, float high) { return low + (high - low) * unit(); }
  /// Evenly from low to high inclusive.
  int whole(int low, int high) {
    return low + static_cast<int>(generator_() % static_cast<std::uint32_t>(high - low + 1));
  }
  bool chance(double probability) { return static_cast<double>(unit()) < probability; }

 private:
  float unit() { return static_cast<float>(generator_() >> 8U) * 0x1p-24F; }

  std::mt19937 generator_;
};

}  // namespace drevin::test

#pragma once

/// Repeatable randomness for the demo scene: the same numbers on every machine and thread.

#include <cstdint>

namespace drevintool {

/// A number in [0, 1) that depends on its arguments alone, well mixed.
double demoHash(std::int64_t a, std::int64_t b = 0, std::int64_t c = 0);

/// Smooth noise in [0, 1]: hashed values at whole (x, y), cubic between them. Finite x, y below
/// 2^62.
double demoNoise(double x, double y);

/// Four octaves of demoNoise, each of half the size and half the strength; in [0, 1].
double demoFractal(double x, double y);

}  // namespace drevintool

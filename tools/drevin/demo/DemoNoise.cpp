#include "demo/DemoNoise.h"

#include "demo/DemoVector.h"

namespace drevintool {
namespace {

// The finaliser of the splitmix64 generator (Steele, Lea, Flood 2014).
std::uint64_t mixed(std::uint64_t v) {
  v = (v ^ (v >> 30U)) * 0xbf58476d1ce4e5b9U;
  v = (v ^ (v >> 27U)) * 0x94d049bb133111ebU;
  return v ^ (v >> 31U);
}

}  // namespace

double demoHash(std::int64_t a, std::int64_t b, std::int64_t c) {
  constexpr std::uint64_t kStep = 0x9e3779b97f4a7c15U;
  std::uint64_t v = mixed(static_cast<std::uint64_t>(a) + kStep);
  v = mixed(v + static_cast<std::uint64_t>(b) + kStep);
  v = mixed(v + static_cast<std::uint64_t>(c) + kStep);
  return static_cast<double>(v >> 11U) * 0x1p-53;
}

double demoNoise(double x, double y) {
  const auto column = static_cast<std::int64_t>(std::floor(x));
  const auto row = static_cast<std::int64_t>(std::floor(y));
  const double tx = smoothStep(0.0, 1.0, fraction(x));
  const double ty = smoothStep(0.0, 1.0, fraction(y));
  return mix(mix(demoHash(column, row), demoHash(column + 1, row), tx),
             mix(demoHash(column, row + 1), demoHash(column + 1, row + 1), tx), ty);
}

double demoFractal(double x, double y) {
  constexpr int kOctaves = 4;
  double sum = 0.0;
  double strength = 0.5;
  double whole = 0.0;
  for (int octave = 0; octave < kOctaves; ++octave) {
    sum += strength * demoNoise(x, y);
    whole += strength;
    strength *= 0.5;
    x = x * 2.0 + 17.0;
    y = y * 2.0 + 31.0;
  }
  return sum / whole;
}

}  // namespace drevintool

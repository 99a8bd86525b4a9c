#include "support/LiteralBank.h"

#include <algorithm>
#include <map>

#include "support/LiteralKernelBank.h"

namespace drevin::test {

namespace {

LiteralKernel resampled(const LiteralKernel& hero, int side) {
  LiteralKernel entry;
  entry.side = side;
  for (const auto& [channel, plane] : hero.planes) {
    for (int row = 0; row < side; ++row) {
      for (int column = 0; column < side; ++column) {
        entry.planes[channel].push_back(
            literalResample<float>(plane.data(), hero.side, hero.side, side, column, row));
      }
    }
  }
  return entry;
}

void normalise(LiteralKernel& entry) {
  std::map<int, double> sums;
  double largest = 0.0;
  for (const auto& [channel, plane] : entry.planes) {
    for (const float value : plane) {
      sums[channel] += static_cast<double>(value);
    }
    largest = std::max(largest, sums[channel]);
  }
  for (auto& [channel, plane] : entry.planes) {
    for (float& value : plane) {
      if (largest > 0.0 && sums[channel] > 0.0) {
        value = static_cast<float>(static_cast<double>(value) * (1.0 / largest));
      }
    }
  }
}

}  // namespace

int literalSide(int index) {
  return std::max(1, index % 2 == 1 ? index : index - 1);
}

std::vector<LiteralKernel> literalBank(const LiteralKernel& hero, int kernelSize) {
  std::vector<LiteralKernel> bank;
  for (int index = 0; index < kernelSize + 5; ++index) {
    bank.push_back(resampled(hero, literalSide(index)));
    normalise(bank.back());
  }
  return bank;
}

}  // namespace drevin::test

#pragma once

/// A small stage for splats: a bank of known kernels and accumulators of one slice or more.

#include <vector>

#include "defocus/SliceAccumulators.h"
#include "defocus/Splat.h"
#include "support/LiteralSplat.h"

namespace drevin::test {

/// Entries 0 to size - 1 with planes for `channels`; every value is different, so that a mistaken
/// row, column or entry shows. Entry i, place j, channel c holds 1 + i / 8 + j / 512 + c / 4096.
inline dvKernelBank countingBank(int size, const std::vector<int>& channels) {
  dvKernelBank bank(static_cast<std::size_t>(size));
  for (int i = 0; i < size; ++i) {
    dvChannelFloatBuffer& entry = bank[static_cast<std::size_t>(i)];
    entry.resize(kernelSide(i), channels);
    for (const int channel : channels) {
      for (int j = 0; j < entry.count; ++j) {
        entry.plane(channel)[j] = 1.0F + static_cast<float>(i) / 8.0F +
                                  static_cast<float>(j) / 512.0F +
                                  static_cast<float>(channel) / 4096.0F;
      }
    }
  }
  return bank;
}

/// The same bank for the literal splat.
inline std::vector<LiteralKernel> literalBankOf(const dvKernelBank& bank,
                                                const std::vector<int>& channels) {
  std::vector<LiteralKernel> literal;
  for (const dvChannelFloatBuffer& entry : bank) {
    LiteralKernel kernel;
    kernel.side = entry.width;
    for (const int channel : channels) {
      kernel.planes[channel] = entry.channels[static_cast<std::size_t>(channel)];
    }
    literal.push_back(kernel);
  }
  return literal;
}

/// One splat onto columns [left, right) of a row, and the sums that it leaves.
class SplatBench {
 public:
  SplatBench(const std::vector<int>& channels, const dvOutputSpan& span, int slices = 1)
      : span_(span), channels_(channels), accumulators_(slices, channels, span.left, span.right) {
    for (int s = 0; s < slices; ++s) {
      accumulators_.use(static_cast<std::uint64_t>(s));
    }
  }

  dvSplatSettings settings;

  void splat(const dvKernelBank& bank, dvSplatSource source, const std::vector<float>& pixel) {
    source.pixel = pixel.data();
    convole(settings, bank, span_, source, channels_, accumulators_.colour(),
            accumulators_.weight());
  }

  float colour(int channel, int x, std::size_t slice = 0) {
    return accumulators_.colour()[slice][static_cast<std::size_t>(channel)][x];
  }
  float weight(int channel, int x, std::size_t slice = 0) {
    return accumulators_.weight()[slice][static_cast<std::size_t>(channel)][x];
  }
  /// Sum of all weights of a channel.
  float totalWeight(int channel, std::size_t slice = 0) {
    float total = 0.0F;
    for (int x = span_.left; x < span_.right; ++x) {
      total += weight(channel, x, slice);
    }
    return total;
  }

 private:
  dvOutputSpan span_;
  std::vector<int> channels_;
  dvSliceAccumulators accumulators_;
};

}  // namespace drevin::test

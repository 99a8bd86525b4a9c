#include "defocus/Splat.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace drevin {

namespace {

/// The bank entries whose mean size is the blur, and their shares.
struct KernelPair {
  std::size_t index[2];
  float share[2];
  int count;
};

KernelPair kernelPair(float coc, const dvKernelBank& bank) {
  const float floored = std::floor(coc);
  const std::size_t last = bank.size() - 1;
  if (!(floored >= 0.0F && floored < static_cast<float>(bank.size()))) {
    return {{last, last}, {1.0F, 0.0F}, 1};
  }
  const auto k = static_cast<std::size_t>(floored);
  const float first = 1.0F - (coc - static_cast<float>(bank[k].width)) * 0.5F;
  return {{k, std::min(k + 2, last)}, {first, 1.0F - first}, 2};
}

/// Columns of a kernel row that fall into the output span.
struct Overlap {
  int output;  ///< first output column
  int kernel;  ///< first kernel column
  int count;
};

Overlap overlap(int x, const dvChannelFloatBuffer& kernel, const dvOutputSpan& out) {
  const int start = x - kernel.centre;
  const int cut = std::min(0, start - out.left);
  const int first = std::max(out.left, start);
  return {first, -cut, std::min(kernel.width + cut, out.right - first)};
}

/// In 64 bits, because a shifted place may be the least int.
bool reaches(std::int64_t x, std::int64_t y, int reach, const dvOutputSpan& out) {
  return std::abs(y - out.y) <= reach && x - out.right <= reach && out.left - x <= reach;
}

void accumulate(const float* __restrict kernel, float value, float weight, int count,
                float* __restrict colour, float* __restrict weights) {
  for (int j = 0; j < count; ++j) {
    colour[j] += kernel[j] * value * weight;
    weights[j] += kernel[j] * weight;
  }
}

/// One source pixel on one output row, with what all its channels and passes share.
class PixelSplat {
 public:
  PixelSplat(const dvSplatSettings& settings, const dvOutputSpan& out, const dvSplatSource& source)
      : settings_(settings),
        out_(out),
        source_(source),
        bloom_(bloomAmount(settings.bloom, source.clampedX, source.clampedY)) {}

  void addChannel(const dvChannelFloatBuffer& kernel, int channel, float weight, float* colour,
                  float* weights) const {
    const float distance = shiftOf(channel);
    const int x = shiftedPlace(source_.x, distance);
    const int y = shiftedPlace(source_.y, distance);
    if (!reaches(x, y, kernel.centre, out_)) return;
    const Overlap columns = overlap(x, kernel, out_);
    if (columns.count <= 0) return;
    const int row = y + kernel.centre - out_.y;
    const float* values = kernel.channels[static_cast<std::size_t>(channel)].data() +
                          static_cast<std::ptrdiff_t>(row) * kernel.width + columns.kernel;
    accumulate(values, valueOf(channel), weight, columns.count, colour + columns.output,
               weights + columns.output);
  }

 private:
  float shiftOf(int channel) const {
    if (settings_.chromatic.amount == 0.0F) return 0.0F;
    const float shift = channelShift(settings_.chromatic, channel);
    return shift == 0.0F ? 0.0F : shiftDistance(shift, source_.coc, source_.chromaticMatte);
  }

  float valueOf(int channel) const {
    const float value = source_.pixel[channel];
    if (channel < 1 || channel > 3) return value;
    const float light = bloomedLight(settings_.bloom, value, bloom_, source_.bloomMatte);
    return settings_.bloomOnly ? light : value + light;
  }

  const dvSplatSettings& settings_;
  const dvOutputSpan& out_;
  const dvSplatSource& source_;
  float bloom_;
};

/// Without chromatic shift a row out of reach of the larger kernel is out of reach of everything.
bool rowOutOfReach(const dvSplatSettings& settings, const dvKernelBank& bank,
                   const KernelPair& pair, const dvOutputSpan& out, const dvSplatSource& source) {
  if (settings.chromatic.amount != 0.0F) return false;
  const int reach = std::max(bank[pair.index[0]].centre, bank[pair.index[1]].centre);
  return !reaches(source.x, source.y, reach, out);
}

}  // namespace

void convole(const dvSplatSettings& settings, const dvKernelBank& bank, const dvOutputSpan& out,
             const dvSplatSource& source, const std::vector<int>& channels,
             dvAccumulatorRows& colour, dvAccumulatorRows& weight) {
  if (bank.empty() || source.slice >= colour.size() || source.slice >= weight.size()) return;
  const KernelPair pair = kernelPair(source.coc, bank);
  if (rowOutOfReach(settings, bank, pair, out, source)) return;
  const PixelSplat splat(settings, out, source);
  const auto slice = static_cast<std::size_t>(source.slice);
  for (int pass = 0; pass < pair.count; ++pass) {
    const float share = pair.share[pass] * source.weight;
    if (share <= 0.0F) continue;
    // Entries 0 and 1 are both 1 x 1; the first is never read.
    const std::size_t index = pair.index[pass] == 0 ? 1 : pair.index[pass];
    const dvChannelFloatBuffer& kernel = bank[std::min(index, bank.size() - 1)];
    for (const int channel : channels) {
      const auto c = static_cast<std::size_t>(channel);
      splat.addChannel(kernel, channel, share, colour[slice][c], weight[slice][c]);
    }
  }
}

}  // namespace drevin

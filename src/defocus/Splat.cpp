#include "defocus/Splat.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "defocus/KernelPair.h"

namespace drevin {

namespace {

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
                   const dvKernelPair& pair, const dvOutputSpan& out, const dvSplatSource& source) {
  if (settings.chromatic.amount != 0.0F) return false;
  const int reach = std::max(bank[pair.index[0]].centre, bank[pair.index[1]].centre);
  return !reaches(source.x, source.y, reach, out);
}

}  // namespace

void convole(const dvSplatSettings& settings, const dvKernelBank& bank, const dvOutputSpan& out,
             const dvSplatSource& source, const std::vector<int>& channels,
             dvAccumulatorRows& colour, dvAccumulatorRows& weight) {
  if (bank.empty() || source.slice >= colour.size() || source.slice >= weight.size()) return;
  const dvKernelPair pair = kernelPair(source.coc, bank);
  if (rowOutOfReach(settings, bank, pair, out, source)) return;
  const PixelSplat splat(settings, out, source);
  const auto slice = static_cast<std::size_t>(source.slice);
  for (int pass = 0; pass < pair.count; ++pass) {
    const float share = pair.share[pass] * source.weight;
    if (share <= 0.0F) continue;
    const dvChannelFloatBuffer& kernel = bank[pair.index[pass]];
    for (const int channel : channels) {
      const auto c = static_cast<std::size_t>(channel);
      splat.addChannel(kernel, channel, share, colour[slice][c], weight[slice][c]);
    }
  }
}

}  // namespace drevin

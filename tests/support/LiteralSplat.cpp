#include "support/LiteralSplat.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <optional>

namespace drevin::test {

namespace {

struct Pass {
  int index = 0;
  float blend = 0.0F;
};

std::vector<Pass> passes(float coc, const std::vector<LiteralKernel>& bank) {
  const auto size = static_cast<int>(bank.size());
  const float whole = std::floor(coc);
  if (!(whole >= 0.0F && whole < static_cast<float>(size))) {
    return {{size - 1, 1.0F}};
  }
  const int k = static_cast<int>(whole);
  const auto width = static_cast<float>(bank[static_cast<std::size_t>(k)].side);
  const float w0 = 1.0F - (coc - width) * 0.5F;
  return {{k, w0}, {k + 2, 1.0F - w0}};
}

/// How far a channel moves on both axes.
float shiftOf(const LiteralSettings& settings, const LiteralSource& source, int channel) {
  const float k = settings.chromaticAberration;
  const bool moves = channel == 1 || (channel == 2 && k > 0.0F) || (channel == 3 && k < 0.0F);
  if (k == 0.0F || !moves) {
    return 0.0F;
  }
  const float raw = std::fabs(settings.chromaticOffset[channel - 1] * k);
  const float shift = raw - std::fabs(k) * 0.5F;
  const float s = source.coc * source.chromaticMatte * 0.5F - 1.0F;
  return s > 0.0F ? s * shift * 0.1F : 0.0F;
}

/// The place truncated toward zero; nothing where no picture reaches.
std::optional<int> place(int at, float shift) {
  const float moved = static_cast<float>(at) + shift;
  if (!(std::fabs(moved) < 1e6F)) {
    return std::nullopt;
  }
  return static_cast<int>(moved);
}

float splattedValue(const LiteralSettings& settings, const LiteralSource& source, int channel,
                    float bloomAmount) {
  const float v = source.pixel.at(channel);
  if (channel > 3) {
    return v;
  }
  const float above = std::max(0.0F, v - settings.bloomThreshold);
  const float b = bloomAmount == 0.0F ? 0.0F : above * bloomAmount * source.bloomMatte;
  return settings.outputType == 1 ? b : v + b;
}

void addRow(const LiteralKernel& kernel, int channel, int x, int y, float value, float w,
            const LiteralSource& source, std::vector<LiteralSum>& row) {
  const int reach = (kernel.side - 1) / 2;
  if (std::abs(y - source.y) > reach || x - source.right > reach || source.left - x > reach) {
    return;
  }
  const int start = x - reach;
  const int cut = std::min(0, start - source.left);
  const int dst = std::max(source.left, start);
  int n = kernel.side + cut;
  if (dst + n > source.right) n = source.right - dst;
  const int kernelRow = y + reach - source.y;
  for (int j = 0; j < n; ++j) {
    const int at = kernelRow * kernel.side - cut + j;
    const int column = dst - source.left + j;
    const double weight =
        static_cast<double>(kernel.planes.at(channel)[static_cast<std::size_t>(at)]) *
        static_cast<double>(w);
    LiteralSum& sum = row[static_cast<std::size_t>(column)];
    sum.colour += weight * static_cast<double>(value);
    sum.weight += weight;
    sum.absoluteColour += std::fabs(weight * static_cast<double>(value));
    sum.absoluteWeight += std::fabs(weight);
  }
}

}  // namespace

float literalBloomAmount(const LiteralSettings& settings, int formatWidth, int formatHeight, int x,
                         int y) {
  if (settings.bloom <= 0.0F) {
    return 0.0F;
  }
  float radial = 1.0F;
  if (settings.bloomCurvature > 0.0F) {
    const float hw = 0.5F * static_cast<float>(formatWidth);
    const float hh = 0.5F * static_cast<float>(formatHeight);
    const float across = (1.0F / hw) * std::fabs(static_cast<float>(x) - hw);
    const float up = (1.0F / hh) * std::fabs(static_cast<float>(y) - hh);
    const float rho = std::sqrt(across * across + up * up);
    radial = std::pow(rho, settings.bloomCurvature + 0.001F);
    if (radial < 0.0F) radial = 0.0F;
    if (radial > 1.0F) radial = 1.0F;
  }
  return settings.bloom * radial;
}

void literalSplat(const LiteralSettings& settings, int formatWidth, int formatHeight,
                  const std::vector<LiteralKernel>& bank, const LiteralSource& source,
                  LiteralSums& sums) {
  if (source.slice < 0 || source.slice >= static_cast<int>(sums.size())) {
    return;
  }
  const float amount =
      literalBloomAmount(settings, formatWidth, formatHeight, source.clampedX, source.clampedY);
  for (const Pass& pass : passes(source.coc, bank)) {
    const float w = pass.blend * source.weight;
    if (w <= 0.0F) {
      continue;
    }
    const int index = std::max(1, std::min(pass.index, static_cast<int>(bank.size()) - 1));
    const LiteralKernel& kernel = bank[static_cast<std::size_t>(index)];
    for (const auto& entry : source.pixel) {
      const int channel = entry.first;
      const float shift = shiftOf(settings, source, channel);
      const std::optional<int> x = place(source.x, shift);
      const std::optional<int> y = place(source.sourceY, shift);
      if (kernel.planes.count(channel) != 0 && x && y) {
        addRow(kernel, channel, *x, *y, splattedValue(settings, source, channel, amount), w, source,
               sums[static_cast<std::size_t>(source.slice)].at(channel));
      }
    }
  }
}

}  // namespace drevin::test

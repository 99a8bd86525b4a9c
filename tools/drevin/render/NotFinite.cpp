#include "render/NotFinite.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <variant>

#include "picture/ChannelNames.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

bool isFinite(float value) {
  return std::isfinite(value);
}

bool isFinite(std::uint16_t half) {
  constexpr unsigned kExponent = 0x7C00;
  return (half & kExponent) != kExponent;
}

bool isFinite(std::uint32_t /*number*/) {
  return true;
}

void mark(const Samples& samples, std::vector<bool>& bad) {
  const auto markAll = [&bad](const auto& values) {
    for (std::size_t pixel = 0; pixel < values->size(); ++pixel) {
      if (!isFinite((*values)[pixel])) bad[pixel] = true;
    }
  };
  std::visit(markAll, samples);
}

}  // namespace

std::size_t notFinitePixels(const Picture& input, const std::vector<PlannedChannel>& plan) {
  std::vector<bool> bad(input.box.area());
  for (const PlannedChannel& channel : plan) {
    if (!channel.rendered || channel.source == nullptr) continue;
    const PictureChannel* seen = findChannel(input, channel.hostName);
    if (seen != nullptr) mark(seen->samples, bad);
  }
  std::size_t count = 0;
  for (const bool pixel : bad)
    count += pixel ? 1 : 0;
  return count;
}

std::string notFiniteWarning(const Picture& input, std::size_t count) {
  if (count == 0) return {};
  return std::to_string(count) + (count == 1 ? " pixel of " : " pixels of ") + oneLine(input.path) +
         (count == 1 ? " is" : " are") +
         " not finite (NaN or infinite), and so is what their kernels reach";
}

}  // namespace drevintool

#include "kernel/InputKernel.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "kernel/CatmullRom.h"

namespace drevin {
namespace {

// A place along one axis: the four pixels around it and the fraction between the middle two.
struct Neighbourhood {
  std::array<int, 4> pixels;
  float fraction;
};

// `size` pixels from `first`, at least one; indices past the ends repeat the end pixels.
Neighbourhood neighbourhood(int index, float scale, int first, int size) {
  const float place = (static_cast<float>(index) + 0.5F) * scale;
  const float limit = static_cast<float>(size);
  const auto base = static_cast<std::int64_t>(place < limit ? std::max(place, 0.0F) : limit);
  Neighbourhood around{};
  for (std::size_t i = 0; i < around.pixels.size(); ++i) {
    const std::int64_t pixel = base - 1 + static_cast<std::int64_t>(i);
    around.pixels[i] = first + static_cast<int>(std::clamp<std::int64_t>(pixel, 0, size - 1));
  }
  around.fraction = place - static_cast<float>(base);
  return around;
}

}  // namespace

int inputKernelChannel(const dvKernelInput& input, int wanted) {
  const bool present = std::binary_search(input.channels.begin(), input.channels.end(), wanted);
  return input.missingKernelChannel != 0 && !present ? input.missingKernelChannel : wanted;
}

float sampleInputKernel(const dvKernelInput& input, const dvKernelSampling& sampling, int column,
                        int row, int channel) {
  if (!input.read || sampling.width < 1 || sampling.height < 1) {
    return 0.0F;
  }
  const Neighbourhood x = neighbourhood(column, sampling.scaleX, sampling.left, sampling.width);
  const Neighbourhood y = neighbourhood(row, sampling.scaleY, sampling.bottom, sampling.height);
  std::array<float, 4> across{};
  for (std::size_t i = 0; i < across.size(); ++i) {
    const auto at = [&](std::size_t j) { return input.read(x.pixels[i], y.pixels[j], channel); };
    across[i] = catmullRom(at(0), at(1), at(2), at(3), y.fraction);
  }
  return catmullRom(across[0], across[1], across[2], across[3], x.fraction);
}

}  // namespace drevin

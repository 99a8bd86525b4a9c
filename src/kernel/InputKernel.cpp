#include "kernel/InputKernel.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "kernel/CatmullRom.h"

namespace drevin {

int inputKernelChannel(const dvKernelInput& input, int wanted) {
  const bool present = std::binary_search(input.channels.begin(), input.channels.end(), wanted);
  return input.missingKernelChannel != 0 && !present ? input.missingKernelChannel : wanted;
}

// `size` pixels from `first`, at least one; indices past the ends repeat the end pixels.
dvInputKernelRows::Place dvInputKernelRows::placeOf(int index, float scale, int first, int size) {
  const float place = (static_cast<float>(index) + 0.5F) * scale;
  const float limit = static_cast<float>(size);
  const auto base = static_cast<std::int64_t>(place < limit ? std::max(place, 0.0F) : limit);
  Place around;
  for (std::size_t i = 0; i < around.pixels.size(); ++i) {
    const std::int64_t pixel = base - 1 + static_cast<std::int64_t>(i);
    around.pixels[i] = first + static_cast<int>(std::clamp<std::int64_t>(pixel, 0, size - 1));
  }
  around.fraction = place - static_cast<float>(base);
  return around;
}

dvInputKernelRows::dvInputKernelRows(const dvKernelInput& input, const dvKernelSampling& sampling,
                                     int side, int channel)
    : input_(input), sampling_(sampling), channel_(channel) {
  across_.resize(static_cast<std::size_t>(std::max(side, 0)));
  if (!input.read || sampling.width < 1 || sampling.height < 1) return;
  for (std::size_t column = 0; column < across_.size(); ++column) {
    across_[column] =
        placeOf(static_cast<int>(column), sampling.scaleX, sampling.left, sampling.width);
    columns_.insert(columns_.end(), across_[column].pixels.begin(), across_[column].pixels.end());
  }
  std::sort(columns_.begin(), columns_.end());
  columns_.erase(std::unique(columns_.begin(), columns_.end()), columns_.end());
  for (Place& place : across_) {
    for (int& pixel : place.pixels) {
      const auto found = std::lower_bound(columns_.begin(), columns_.end(), pixel);
      pixel = static_cast<int>(found - columns_.begin());
    }
  }
  down_.resize(columns_.size());
}

const std::vector<float>& dvInputKernelRows::imageRow(int y) {
  const auto [row, isNew] = rows_.try_emplace(y);
  if (isNew) {
    row->second.reserve(columns_.size());
    for (const int x : columns_)
      row->second.push_back(input_.read(x, y, channel_));
  }
  return row->second;
}

void dvInputKernelRows::sample(int row, float* values) {
  if (columns_.empty()) {
    std::fill_n(values, across_.size(), 0.0F);
    return;
  }
  const Place place = placeOf(row, sampling_.scaleY, sampling_.bottom, sampling_.height);
  rows_.erase(rows_.begin(), rows_.lower_bound(place.pixels.front()));
  rows_.erase(rows_.upper_bound(place.pixels.back()), rows_.end());
  std::array<const float*, 4> from{};
  for (std::size_t i = 0; i < from.size(); ++i)
    from[i] = imageRow(place.pixels[i]).data();
  for (std::size_t x = 0; x < down_.size(); ++x)
    down_[x] = catmullRom(from[0][x], from[1][x], from[2][x], from[3][x], place.fraction);
  for (const Place& column : across_) {
    const auto down = [&](std::size_t i) {
      return down_[static_cast<std::size_t>(column.pixels[i])];
    };
    *values++ = catmullRom(down(0), down(1), down(2), down(3), column.fraction);
  }
}

}  // namespace drevin

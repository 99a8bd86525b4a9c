#include "sheet/AreaFilter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace drevintool {
namespace {

// What one result covers of a line: samples from `first` on, with shares that add up to 1.
struct Cover {
  std::size_t first = 0;
  std::vector<double> shares;
};

// Result i of `to` covers [i from / to, (i + 1) from / to) of the samples: whole numbers in units
// of 1 / to, so that no rounding brings in a sample that is not covered.
Cover coverOf(std::int64_t i, std::int64_t from, std::int64_t to) {
  const std::int64_t begin = i * from;
  const std::int64_t end = begin + from;
  Cover cover;
  cover.first = static_cast<std::size_t>(begin / to);
  for (std::int64_t sample = begin / to; sample * to < end; ++sample) {
    const std::int64_t covered = std::min(end, (sample + 1) * to) - std::max(begin, sample * to);
    cover.shares.push_back(static_cast<double>(covered) / static_cast<double>(from));
  }
  return cover;
}

std::vector<Cover> coversOf(int from, int to) {
  std::vector<Cover> covers;
  covers.reserve(static_cast<std::size_t>(to));
  for (int i = 0; i < to; ++i)
    covers.push_back(coverOf(i, from, to));
  return covers;
}

// The mean along lines of samples that lie `stride` apart.
double meanOf(const double* line, std::size_t stride, const Cover& cover) {
  double sum = 0.0;
  for (std::size_t i = 0; i < cover.shares.size(); ++i)
    sum += cover.shares[i] * line[(cover.first + i) * stride];
  return sum;
}

}  // namespace

std::vector<float> areaFiltered(const std::vector<float>& samples, const PixelSize& from,
                                const PixelSize& to) {
  if (from.width == to.width && from.height == to.height) return samples;
  const std::vector<Cover> columns = coversOf(from.width, to.width);
  const std::vector<Cover> rows = coversOf(from.height, to.height);
  const auto width = static_cast<std::size_t>(to.width);
  const auto height = static_cast<std::size_t>(from.height);
  const auto stride = static_cast<std::size_t>(from.width);
  std::vector<double> narrow(width * height);
  std::vector<double> line(stride);
  for (std::size_t y = 0; y < height; ++y) {
    std::copy_n(samples.data() + y * stride, stride, line.begin());
    for (std::size_t x = 0; x < width; ++x)
      narrow[y * width + x] = meanOf(line.data(), 1, columns[x]);
  }
  std::vector<float> result(width * rows.size());
  for (std::size_t y = 0; y < rows.size(); ++y) {
    for (std::size_t x = 0; x < width; ++x)
      result[y * width + x] = static_cast<float>(meanOf(narrow.data() + x, width, rows[y]));
  }
  return result;
}

}  // namespace drevintool

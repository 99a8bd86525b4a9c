#pragma once

/// Pictures made smaller.

#include <vector>

namespace drevintool {

/// Width and height in pixels.
struct PixelSize {
  int width = 0;
  int height = 0;
};

/// `samples`, row-major, of `from` brought to `to` by the area (box) filter: each result is the
/// mean of the samples that its pixel covers, weighted by how much of each it covers, summed in
/// double. So linear light keeps its energy. Samples that are not finite spoil only the results
/// that cover them. A size that is the same copies bits. Sizes are at least 1.
std::vector<float> areaFiltered(const std::vector<float>& samples, const PixelSize& from,
                                const PixelSize& to);

}  // namespace drevintool

#pragma once

/// The values of a channel in figures.

#include <cstdint>
#include <limits>
#include <nlohmann/json_fwd.hpp>

#include "picture/Picture.h"

namespace drevintool {

struct ValueRange {
  std::uint64_t values = 0;
  std::uint64_t nan = 0;
  std::uint64_t infinite = 0;
  double least = std::numeric_limits<double>::infinity();  ///< of the finite ones
  double most = -std::numeric_limits<double>::infinity();

  void add(double value);
  bool anyFinite() const { return least <= most; }
};

/// Of all samples over `window`, which must lie in `box`, the box of the samples.
ValueRange rangeOf(const Samples& samples, const PixelBox& box, const PixelBox& window);

/// {"min", "max", "nan", "infinite"}; min and max are null where no value is finite.
nlohmann::ordered_json rangeJson(const ValueRange& range);

/// The shortest number that reads back to it; a text ("inf", "-inf", "nan") where it is none.
nlohmann::ordered_json depthJson(float depth);

}  // namespace drevintool

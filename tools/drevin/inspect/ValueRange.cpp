#include "inspect/ValueRange.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <nlohmann/json.hpp>

#include "picture/HalfFloat.h"
#include "terminal/NumberText.h"

namespace drevintool {
namespace {

using Json = nlohmann::ordered_json;

double valueOf(std::uint16_t half) {
  return static_cast<double>(floatFromHalf(half));
}

double valueOf(float value) {
  return static_cast<double>(value);
}

double valueOf(std::uint32_t number) {
  return static_cast<double>(number);
}

}  // namespace

void ValueRange::add(double value) {
  ++values;
  if (std::isnan(value)) {
    ++nan;
  } else if (std::isinf(value)) {
    ++infinite;
  } else {
    least = std::min(least, value);
    most = std::max(most, value);
  }
}

ValueRange rangeOf(const Samples& samples, const PixelBox& box, const PixelBox& window) {
  ValueRange range;
  const auto addAll = [&](const auto& values) {
    for (int y = window.y; y < window.t; ++y) {
      const std::size_t row = static_cast<std::size_t>(y - box.y) * box.width();
      for (int x = window.x; x < window.r; ++x)
        range.add(valueOf((*values)[row + static_cast<std::size_t>(x - box.x)]));
    }
  };
  std::visit(addAll, samples);
  return range;
}

Json rangeJson(const ValueRange& range) {
  Json json;
  json["min"] = range.anyFinite() ? Json(tidyNumber(range.least)) : Json();
  json["max"] = range.anyFinite() ? Json(tidyNumber(range.most)) : Json();
  json["nan"] = range.nan;
  json["infinite"] = range.infinite;
  return json;
}

Json depthJson(float depth) {
  if (std::isnan(depth)) return "nan";
  if (std::isinf(depth)) return depth > 0.0F ? "inf" : "-inf";
  return tidyNumber(static_cast<double>(depth));
}

}  // namespace drevintool

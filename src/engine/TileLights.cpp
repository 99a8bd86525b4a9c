#include "engine/TileLights.h"

namespace drevin {

dvTileLights::dvTileLights(const std::vector<dvTilePart>& parts, std::size_t channels)
    : limits_(channels + 1, 0.0F) {
  std::vector<double> sums(channels + 1, 0.0);
  std::size_t count = 0;
  for (const dvTilePart& part : parts) {
    const dvSplatRow& row = part.splats();
    const std::size_t stride = row.stride();
    const float* values = row.values.data() + part.records.begin * stride;
    for (std::size_t r = part.records.begin; r < part.records.end; ++r, values += stride) {
      const auto share = static_cast<double>(row.records[r].near + row.records[r].far);
      for (std::size_t c = 0; c < channels; ++c)
        sums[c] += share * static_cast<double>(std::fabs(values[c]));
      sums[channels] += share;
    }
    count += part.records.end - part.records.begin;
  }
  for (std::size_t c = 0; c <= channels && count > 0; ++c) {
    const float mean = static_cast<float>(sums[c] / static_cast<double>(count));
    const float greatest = c == channels ? dvGreatestShare : dvGreatestTransformed;
    limits_[c] = std::fmin(dvLightRatio * mean, greatest);
  }
}

}  // namespace drevin

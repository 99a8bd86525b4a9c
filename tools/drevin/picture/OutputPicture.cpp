#include "picture/OutputPicture.h"

#include <algorithm>

namespace drevintool {
namespace {

template <typename Sample>
void cutRow(const Sample* row, const PixelBox& from, const PixelBox& box, bool repeatEdges,
            Sample* out) {
  for (int x = box.x; x < box.r; ++x) {
    const int nearest = std::clamp(x, from.x, from.r - 1);
    const bool take = repeatEdges || nearest == x;
    out[x - box.x] = take ? row[nearest - from.x] : Sample{};
  }
}

template <typename Sample>
Samples cut(const std::vector<Sample>& samples, const PixelBox& from, const PixelBox& box,
            bool repeatEdges) {
  auto out = std::make_shared<std::vector<Sample>>(box.area());
  if (from.empty()) return out;
  for (int y = box.y; y < box.t; ++y) {
    const int nearest = std::clamp(y, from.y, from.t - 1);
    if (!repeatEdges && nearest != y) continue;
    const Sample* row = samples.data() + static_cast<std::size_t>(nearest - from.y) * from.width();
    cutRow(row, from, box, repeatEdges,
           out->data() + static_cast<std::size_t>(y - box.y) * box.width());
  }
  return out;
}

}  // namespace

Samples cutSamples(const Picture& picture, const PictureChannel& channel, const PixelBox& box) {
  const bool repeatEdges = !channel.isUint();
  return std::visit(
      [&](const auto& samples) { return cut(*samples, picture.box, box, repeatEdges); },
      channel.samples);
}

}  // namespace drevintool

#include "DDImage/DeepPixel.h"

#include <algorithm>
#include <numeric>

#include "DepthSort.h"
#include "EmbeddedHost/DeepOrder.h"

namespace DD {
namespace Image {

DeepPixel::DeepPixel(const ChannelMap& channels, const float* data, std::size_t dataCount,
                     Ordering ordering)
    : channels_(&channels),
      data_(data),
      dataCount_(dataCount),
      count_(channels.empty() ? 0 : dataCount / channels.size()),
      ordering_(ordering) {
  const bool farFirst = embedded::deepOrder() == embedded::DeepOrder::FarFirst;
  if (ordering != eUnordered) {
    reversed_ = farFirst == (ordering == eZAscending);
    return;
  }
  if (count_ < 2) return;
  const auto range = [this](std::uint32_t i) {
    return embedded::DepthRange{getUnorderedSample(i, Chan_DeepFront),
                                getUnorderedSample(i, Chan_DeepBack)};
  };
  sorted_.resize(count_);
  std::iota(sorted_.begin(), sorted_.end(), 0U);
  std::stable_sort(sorted_.begin(), sorted_.end(), [&](std::uint32_t a, std::uint32_t b) {
    return farFirst ? embedded::isNearer(range(b), range(a))
                    : embedded::isNearer(range(a), range(b));
  });
}

}  // namespace Image
}  // namespace DD

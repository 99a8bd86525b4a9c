#include "EmbeddedHost/DeepInput.h"

#include <algorithm>
#include <utility>

#include "DepthSort.h"
#include "EmbeddedHost/DeepOrder.h"

namespace embedded {

using DD::Image::Box;
using DD::Image::Chan_DeepBack;
using DD::Image::Chan_DeepFront;
using DD::Image::ChannelMap;
using DD::Image::ChannelSet;
using DD::Image::DeepOutputPlane;
using DD::Image::DeepPixel;

namespace {

/// Puts samples that are sorted nearest first in the opposite order. Samples at the same depths
/// keep theirs, so that compositing them does not depend on the order that the host serves.
class Reversal {
 public:
  explicit Reversal(const ChannelMap& channels)
      : channels_(channels.size()),
        front_(static_cast<std::size_t>(channels.chanNo(Chan_DeepFront))),
        back_(static_cast<std::size_t>(channels.chanNo(Chan_DeepBack))) {}

  const std::vector<float>& of(const float* values, std::size_t count) {
    reversed_.clear();
    for (std::size_t end = count; end > 0;) {
      std::size_t begin = end - 1;
      while (begin > 0 && !isNearer(range(values, begin - 1), range(values, begin)))
        --begin;
      reversed_.insert(reversed_.end(), values + begin * channels_, values + end * channels_);
      end = begin;
    }
    return reversed_;
  }

 private:
  DepthRange range(const float* values, std::size_t sample) const {
    const float* at = values + sample * channels_;
    return {at[front_], at[back_]};
  }

  std::size_t channels_;
  std::size_t front_;
  std::size_t back_;
  std::vector<float> reversed_;
};

/// The channels that are asked for and those that the order needs.
ChannelSet withDepths(const ChannelSet& channels) {
  return channels + ChannelSet(DD::Image::Mask_Deep);
}

void addHoles(DeepOutputPlane& plane, int count) {
  for (int i = 0; i < count; ++i)
    plane.addHole();
}

}  // namespace

DeepInput::DeepInput(std::shared_ptr<DeepSource> source)
    : DeepOnlyOp(nullptr), source_(std::move(source)) {
  inputs(0);
}
DeepInput::~DeepInput() = default;

const char* DeepInput::Class() const {
  return "DeepImage";
}
const char* DeepInput::node_help() const {
  return "A deep picture";
}

void DeepInput::append(DD::Image::Hash& hash) {
  source_->append(hash);
  hash.append(static_cast<int>(deepOrder()));
}

void DeepInput::_validate(bool /*forReal*/) {
  _deepInfo = DD::Image::DeepInfo(DD::Image::FormatPair(source_->format()), source_->box(),
                                  source_->channels());
}

bool DeepInput::doDeepEngine(Box box, const ChannelSet& channels, DeepOutputPlane& plane) {
  const bool farFirst = deepOrder() == DeepOrder::FarFirst;
  const ChannelSet read = withDepths(channels);
  plane = DeepOutputPlane(read, box, farFirst ? DeepPixel::eZDescending : DeepPixel::eZAscending);
  const std::size_t size = plane.channels().size();
  Reversal reversal(plane.channels());
  Box filled(box);
  filled.intersect(source_->box());
  DeepRow row;
  for (int y = box.y(); y < box.t(); ++y) {
    if (aborted()) return false;
    if (filled.empty() || y < filled.y() || y >= filled.t()) {
      addHoles(plane, box.w());
      continue;
    }
    source_->readRow(y, filled.x(), filled.r(), read, row);
    addHoles(plane, filled.x() - box.x());
    const float* values = row.values.data();
    for (const std::uint32_t count : row.counts) {
      const float* samples = farFirst ? reversal.of(values, count).data() : values;
      plane.addValues(samples, count * size);
      values += count * size;
    }
    addHoles(plane, box.r() - filled.r());
  }
  return true;
}

void DeepInput::getDeepRequests(Box /*box*/, const ChannelSet& /*channels*/, int /*count*/,
                                std::vector<DD::Image::RequestData>& /*requests*/) {}

}  // namespace embedded

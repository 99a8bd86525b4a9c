#include "host/FlattenOp.h"

#include <algorithm>

#include "DDImage/DeepComposite.h"

namespace deep {

using namespace DD::Image;

namespace {

Op* build(Node* node) {
  return new FlattenOp(node);
}

ChannelSet withAlphaAndDepths(const ChannelSet& channels) {
  return channels + ChannelSet(Mask_Alpha | Mask_Deep);
}

/// Writes a pixel of samples that do not overlap, nearest first, to a column of a row.
void composite(const DeepOutPixel& tidy, const ChannelMap& map, ChannelMask channels, int column,
               Row& row) {
  const DeepPixel pixel = tidy.getPixel(map, DeepPixel::eZAscending);
  float seen = 1.0F;
  for (std::size_t i = 0; i < pixel.getSampleCount(); ++i) {
    for (const Channel z : channels)
      row.writable(z)[column] += seen * pixel.getUnorderedSample(i, z);
    seen *= 1.0F - pixel.getUnorderedSample(i, Chan_Alpha);
  }
}

}  // namespace

const Op::Description FlattenOp::description("HostTestFlatten", build);

FlattenOp::FlattenOp(Node* node) : Iop(node) {
  inputs(1);
}

DeepOp* FlattenOp::deepInput() const {
  return dynamic_cast<DeepOp*>(Op::input(0));
}

bool FlattenOp::test_input(int /*n*/, Op* op) const {
  return dynamic_cast<DeepOp*>(op) != nullptr;
}

Op* FlattenOp::default_input(int /*n*/) const {
  return nullptr;
}

void FlattenOp::_validate(bool for_real) {
  DeepOp* deep = deepInput();
  deep->validate(for_real);
  info_.setFormats(deep->deepInfo().formats());
  info_.set(deep->deepInfo().box());
  info_.channels(deep->deepInfo().channels() - ChannelSet(Mask_Deep | Mask_Z));
}

void FlattenOp::_request(int x, int y, int r, int t, ChannelMask channels, int count) {
  deepInput()->deepRequest(Box(x, y, r, t), withAlphaAndDepths(channels), count);
}

void FlattenOp::engine(int y, int x, int r, ChannelMask channels, Row& row) {
  DeepPlane plane;
  if (!deepInput()->deepEngine(y, x, r, withAlphaAndDepths(channels), plane)) {
    ++failedReads;
    row.erase(channels);
    return;
  }
  for (const Channel z : channels)
    std::fill(row.writable(z) + x, row.writable(z) + r, 0.0F);
  for (int column = x; column < r; ++column) {
    DeepOutPixel tidy;
    CombineOverlappingSamples(plane.channels(), plane.getPixel(y, column), tidy);
    composite(tidy, plane.channels(), channels, column, row);
  }
}

}  // namespace deep

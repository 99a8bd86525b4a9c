/// Output rows of flat inputs: host rows in, imaging code, host rows out.

#include "defocus/DepthView.h"
#include "kernel/FilterShapeView.h"
#include "node/Drevin.h"
#include "node/HostConversions.h"

namespace drevin {

using DD::Image::Channel;
using DD::Image::ChannelSet;
using DD::Image::Mask_RGB;
using DD::Image::Row;

void Drevin::passInputThrough(int y, int x, int r, const ChannelSet& channels, Row& out) {
  if (channels.empty()) return;
  Row row(x, r);
  row.get(input0(), y, x, r, channels);
  out.copy(row, channels, x, r);
}

dvMattes Drevin::mattes() const {
  dvMattes mattes;
  if (!matteChannels_.empty()) mattes.from = input(dvInput::mattes);
  mattes.read = matteChannels_;
  if (bloomMatteUsed_) mattes.bloom = settings_.bloomMatteChannel;
  if (defocusMatteUsed_) mattes.defocus = settings_.defocusMatteChannel;
  if (chromaticMatteUsed_) mattes.chromatic = settings_.chromaticAberrationMatteChannel;
  return mattes;
}

dvSplatFrame Drevin::splatFrame() const {
  return {splatSettings(settings_, format()), &kernelBank_, settings_.correctiveSlices, padding_,
          format().w()};
}

dvFlatPlan Drevin::flatPlan(int left, int right, const ChannelSet& channels) {
  dvFlatPlan plan;
  plan.image = &input0();
  plan.depth = settings_.depthChannel;
  plan.channels = channels;
  plan.numbers = channelNumbers(channels);
  plan.mattes = mattes();
  plan.settings = {blurSettings(settings_, kernelSize_, sliceBoundaries_), splatFrame()};
  // The row above the topmost is read too: it repeats the topmost.
  plan.firstRow = input0().info().y();
  plan.lastRow = input0().info().t();
  plan.left = left;
  plan.right = right;
  plan.aborted = [this] { return aborted(); };
  return plan;
}

ChannelSet Drevin::passUnprocessed(int y, int x, int r, const ChannelSet& channels, Row& out) {
  // A later request may want other channels than the kernels were built for: those pass through.
  // An opening that was cut short leaves no kernels, and its rows are not wanted.
  ChannelSet processed;
  if (!kernelBank_.empty()) {
    processed = channels;
    processed &= kernelChannels_;
  }
  ChannelSet passed(channels);
  passed -= processed;
  passInputThrough(y, x, r, passed, out);
  return processed;
}

void Drevin::defocus(int y, int x, int r, const ChannelSet& channels, Row& out) {
  const ChannelSet processed = passUnprocessed(y, x, r, channels, out);
  if (processed.empty()) return;
  if (picture_.has(y, x, r, processed, dvDeepMode::Both)) {
    picture_.copy(y, x, r, processed, dvDeepMode::Both, out);
    return;
  }
  defocusRow(y, x, r, processed, out);
}

void Drevin::defocusRow(int y, int x, int r, const ChannelSet& channels, Row& out) {
  const dvFlatPlan plan = flatPlan(x, r, channels);
  makeFlatRow(plan, y, [&](std::size_t place) {
    return out.writable(static_cast<Channel>(plan.numbers[place]));
  });
}

void Drevin::depthVisualization(int y, int x, int r, const ChannelSet& channels, Row& out) {
  Row depth(x, r);
  depth.get(input0(), y, x, r, ChannelSet(settings_.depthChannel));
  ChannelSet passed(channels);
  passed -= Mask_RGB;
  ChannelSet shown(channels);
  shown &= Mask_RGB;
  const dvLens lens = lensOf(settings_, kernelSize_);
  const dvPassSettings pass = passSettings(settings_, kernelSize_);
  foreach (z, shown) {
    depthViewRow(depth[settings_.depthChannel], static_cast<int>(z), x, r, lens, pass,
                 out.writable(z));
  }
  passInputThrough(y, x, r, passed, out);
}

void Drevin::kernelVisualization(int y, int x, int r, const ChannelSet& channels, Row& out) {
  out.erase(channels);
  ChannelSet shown(channels);
  shown &= kernelChannels_;
  foreach (z, shown) {
    filterShapeRow(heroKernel_, static_cast<int>(z), y, x, r, out.writable(z));
  }
}

void Drevin::getPassValue(const float& coc, const int& region, Channel channel, float* out) {
  drevin::getPassValue(coc, static_cast<dvFocusRegion>(region), static_cast<int>(channel),
                       passSettings(settings_, kernelSize_), out);
}

void Drevin::convole(const int& clampedX, const int& clampedY, const int& outLeft, const int& outY,
                     const int& outRight, const int& srcX, const int& srcY, const float& coc,
                     const unsigned long& slice, const float& weight, float* pixel,
                     std::vector<std::vector<float*>>& colourAcc,
                     std::vector<std::vector<float*>>& weightAcc, const ChannelSet& channels,
                     float& bloomMatte, float& chromaticMatte) {
  ChannelSet splatted(channels);
  splatted &= kernelChannels_;
  const dvSplatSource source{clampedX, clampedY, srcX,  srcY,       coc,
                             slice,    weight,   pixel, bloomMatte, chromaticMatte};
  drevin::convole(splatSettings(settings_, format()), kernelBank_, {outLeft, outY, outRight},
                  source, channelNumbers(splatted), colourAcc, weightAcc);
}

}  // namespace drevin

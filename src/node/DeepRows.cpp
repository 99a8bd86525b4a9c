/// Output rows of deep inputs.

#include "DDImage/DeepComposite.h"
#include "DDImage/DeepInfo.h"
#include "DDImage/DeepPlane.h"
#include "defocus/FloatRules.h"
#include "node/DeepPixels.h"
#include "node/Drevin.h"
#include "node/HostConversions.h"

namespace drevin {

using DD::Image::Box;
using DD::Image::Chan_Alpha;
using DD::Image::Chan_DeepBack;
using DD::Image::Chan_DeepFront;
using DD::Image::Chan_Z;
using DD::Image::Channel;
using DD::Image::ChannelSet;
using DD::Image::DeepOp;
using DD::Image::DeepOutPixel;
using DD::Image::DeepPixel;
using DD::Image::DeepPlane;
using DD::Image::Mask_RGB;
using DD::Image::Row;

namespace {

dvFocusOutput focusOutput(const DrevinSettings& settings) {
  return static_cast<dvFocusOutput>(settings.focusOutput);
}

/// What a defocus of `channels` reads of the deep samples.
ChannelSet samplesFor(const ChannelSet& channels, DeepOp& deep) {
  ChannelSet read(channels);
  read &= deep.deepInfo().channels();
  read -= Chan_Z;
  read += Chan_Alpha;
  read += Chan_DeepFront;
  read += Chan_DeepBack;
  return read;
}

/// Tells of every splatted channel whether its values are those of the samples or the flat
/// picture's.
void planChannels(const ChannelSet& channels, dvDeepPlan& plan) {
  int place = 0;
  for (const int number : channelNumbers(channels)) {
    const auto z = static_cast<Channel>(number);
    if (!plan.samplesRead.contains(z)) {
      plan.flatRead += z;
      plan.channels.push_back({number, dvDeepChannel::flat});
      continue;
    }
    std::size_t inSample = 0;
    while (plan.layout.channels[inSample] != number)
      ++inSample;
    plan.splatted.push_back(inSample);
    plan.channels.push_back({number, place++});
  }
}

/// One channel of one pixel's visualization.
float depthValue(const std::vector<dvDepthSample>& samples, Channel z,
                 const dvDeepSettings& settings, const dvPassSettings& pass) {
  return deepDepthValue(samples, static_cast<int>(z), settings, pass);
}

}  // namespace

dvDeepSettings Drevin::deepSettings(dvDeepMode mode) const {
  dvDeepSettings deep;
  deep.lens = lensOf(settings_, kernelSize_);
  deep.slices = settings_.correctiveSlices;
  deep.sliceStarts = sliceBoundaries_;
  deep.useBackDepth = settings_.depthChannel == Chan_DeepBack;
  deep.mode = mode;
  return deep;
}

std::vector<dvDeepMode> Drevin::deepModes() const {
  if (!settings_.integrateFrontAndBackSeparately) return {dvDeepMode::Both};
  switch (focusOutput(settings_)) {
    case dvFocusOutput::Front:
      return {dvDeepMode::Front};
    case dvFocusOutput::Back:
      return {dvDeepMode::Back};
    case dvFocusOutput::Both:
      break;
  }
  return {dvDeepMode::Front, dvDeepMode::Back};
}

dvDeepPlan Drevin::deepPlan(int left, int right, const ChannelSet& channels,
                            const std::vector<dvDeepMode>& modes) {
  dvDeepPlan plan;
  plan.left = left;
  plan.right = right;
  plan.formatHeight = format().h();
  plan.frame = splatFrame();
  plan.aborted = [this] { return aborted(); };
  plan.image = &input0();
  plan.deep = dynamic_cast<DeepOp*>(Op::input(dvInput::deep));
  if (plan.deep != nullptr) plan.samplesRead = samplesFor(channels, *plan.deep);
  plan.layout = deepLayout(plan.samplesRead);
  planChannels(channels, plan);
  plan.mattes = mattes();
  for (const dvDeepMode mode : modes)
    plan.modes.push_back(deepSettings(mode));
  plan.background = deepBlur(dvInfinitelyFar, deepSettings(dvDeepMode::Both));
  return plan;
}

void Drevin::deepDefocus(int y, int x, int r, const ChannelSet& channels, Row& out, int mode) {
  const ChannelSet processed = passUnprocessed(y, x, r, channels, out);
  if (processed.empty()) return;
  const auto wanted = static_cast<dvDeepMode>(mode);
  if (picture_.has(y, x, r, processed, wanted)) {
    picture_.copy(y, x, r, processed, wanted, out);
    return;
  }
  const dvDeepPlan plan = deepPlan(x, r, processed, {wanted});
  // Source rows below and above the picture repeat its first and last one, which are read once.
  std::unique_ptr<dvDeepLine> line;
  int lineY = 0;
  const auto lineAt = [&](int row) {
    if (line == nullptr || row != lineY) line = std::make_unique<dvDeepLine>(plan, row);
    lineY = row;
    return line.get();
  };
  makeDeepRow(plan, 0, y, lineAt, [&](std::size_t place) {
    return out.writable(static_cast<Channel>(plan.channels[place].number));
  });
}

void Drevin::defocusDeepInput(int y, int x, int r, const ChannelSet& channels, Row& out) {
  if (settings_.integrateFrontAndBackSeparately) {
    integrateFrontAndBack(y, x, r, channels, out);
  } else {
    deepDefocus(y, x, r, channels, out, static_cast<int>(dvDeepMode::Both));
  }
}

void Drevin::integrateFrontAndBack(int y, int x, int r, const ChannelSet& channels, Row& out) {
  const ChannelSet processed = passUnprocessed(y, x, r, channels, out);
  Row front(x, r);
  Row back(x, r);
  for (const dvDeepMode mode : deepModes()) {
    deepDefocus(y, x, r, processed, mode == dvDeepMode::Front ? front : back,
                static_cast<int>(mode));
  }
  const dvFocusOutput wanted = focusOutput(settings_);
  // An alpha that is not processed is the input's; where none was asked for, the front covers
  // nothing.
  const Row& covering = processed.contains(Chan_Alpha) ? front : out;
  const float* cover = channels.contains(Chan_Alpha) ? covering[Chan_Alpha] : nullptr;
  foreach (z, processed) {
    if (wanted != dvFocusOutput::Both) {
      out.copy(wanted == dvFocusOutput::Front ? front : back, ChannelSet(z), x, r);
      continue;
    }
    float* target = out.writable(z);
    for (int i = x; i < r; ++i) {
      const float room = cover == nullptr ? 1.0F : 1.0F - cover[i];
      target[i] = front[z][i] + room * back[z][i];
    }
  }
}

void Drevin::deepDepthVisualization(int y, int x, int r, const ChannelSet& channels, Row& out) {
  ChannelSet shown(channels);
  shown &= Mask_RGB;
  ChannelSet passed(channels);
  passed -= Mask_RGB;
  auto* deep = dynamic_cast<DeepOp*>(node_input(dvInput::deep, OUTPUT_OP, nullptr));
  ChannelSet read;
  deep_in_channels(read);
  DeepPlane plane;
  if (deep != nullptr && deep->deepEngine(Box(x, y, r, y + 1), read, plane)) {
    const dvDeepSettings settings = deepSettings(dvDeepMode::Both);
    const dvPassSettings pass = passSettings(settings_, kernelSize_);
    const ChannelSet& has = plane.channels();
    for (int i = x; i < r; ++i) {
      if (!plane.box().contains(Box(i, y, i + 1, y + 1))) continue;
      DeepOutPixel merged;
      CombineOverlappingSamples(plane.channels(), plane.getPixel(y, i), merged);
      const DeepPixel tidy = merged.getPixel(plane.channels(), DeepPixel::eZAscending);
      const std::vector<dvDepthSample> samples =
          depthSamples(dvHostPixel(tidy, has), settings.useBackDepth);
      foreach (z, shown)
        out.writable(z)[i] = depthValue(samples, z, settings, pass);
    }
  }
  passInputThrough(y, x, r, passed, out);
}

}  // namespace drevin

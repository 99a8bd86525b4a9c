#include "inspect/CostPrediction.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "EmbeddedHost/Render.h"
#include "depth/DepthChoice.h"
#include "picture/FloatSamples.h"
#include "render/ChannelPlan.h"
#include "render/HostPicture.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

using DD::Image::Knob;

double valueOf(const Node& node, const char* control) {
  const Knob* knob = node.knob(control);
  return knob == nullptr ? 0.0 : knob->get_value();
}

// How many pixels of the picture one of the small picture stands for, in each direction.
int strideFor(const Picture& picture) {
  constexpr double kEnoughPixels = 100000.0;
  const double pixels = static_cast<double>(picture.box.area());
  return std::max(1, static_cast<int>(std::lround(std::sqrt(pixels / kEnoughPixels))));
}

FloatSamples everyNth(const Picture& picture, const PictureChannel& channel, int stride) {
  const FloatSamples all = floatSamples(channel.samples);
  auto some = std::make_shared<std::vector<float>>();
  const auto step = static_cast<std::size_t>(stride);
  for (std::size_t y = 0; y < picture.box.height(); y += step) {
    for (std::size_t x = 0; x < picture.box.width(); x += step)
      some->push_back((*all)[y * picture.box.width() + x]);
  }
  return some;
}

int divided(std::size_t length, int stride) {
  const auto step = static_cast<std::size_t>(stride);
  return static_cast<int>((length + step - 1) / step);
}

// The channels that a render changes, and the depth.
Picture smallPicture(const Picture& picture, const Node& node, int stride) {
  Picture small = picture;
  small.channels.clear();
  small.width = std::max(1, picture.width / stride);
  small.height = std::max(1, picture.height / stride);
  small.box.x = picture.box.x / stride;
  small.box.y = picture.box.y / stride;
  small.box.r = small.box.x + divided(picture.box.width(), stride);
  small.box.t = small.box.y + divided(picture.box.height(), stride);
  const PictureChannel* depth = chosenDepth(picture, node);
  for (const PlannedChannel& planned : planChannels(picture, node, {})) {
    if (planned.source == nullptr || (!planned.rendered && planned.source != depth)) continue;
    small.channels.push_back(
        {planned.fileName, planned.hostName, everyNth(picture, *planned.source, stride)});
  }
  return small;
}

// What makes the picture, without the kernels, whose cost does not grow with it.
double defocusSeconds(const embedded::RenderResult& result) {
  double seconds = 0.0;
  for (const embedded::Stage& stage : result.stages) {
    const bool once =
        stage.name == "Aperture" || stage.name == "Kernels" || stage.name == "Size estimate";
    if (!once) seconds += stage.seconds;
  }
  return seconds;
}

// Of the quickest of some rounds; nothing if the render fails.
std::optional<double> measured(Node& node, const Picture& small, int stride) {
  constexpr int kRounds = 3;
  embedded::RenderOptions options;
  options.channels = renderedSet(planChannels(small, node, {}));
  // The blur of a lens follows the width of the format by itself.
  const bool lens = valueOf(node, "realWorldLens") != 0.0;
  options.proxyScale = lens ? 1.0F : 1.0F / static_cast<float>(stride);
  double least = std::numeric_limits<double>::infinity();
  for (int round = 0; round < kRounds; ++round) {
    throwIfInterrupted();
    const embedded::RenderResult result = embedded::render(node, options);
    if (result.status != embedded::RenderStatus::Done) return std::nullopt;
    least = std::min(least, defocusSeconds(result));
  }
  return least;
}

std::uint64_t memoryFor(const Picture& picture, double blur) {
  constexpr double kProgram = 20e6;
  constexpr double kWork = 45.0;
  constexpr double kManyPixels = 8.3e6;
  constexpr double kWorkBeyond = 19.0;
  constexpr double kForBlur = 0.5e6;
  constexpr double kResult = 16.0;
  double bytes = 0.0;
  for (const PictureChannel& channel : picture.channels) {
    const bool shared = std::holds_alternative<FloatSamples>(channel.samples);
    bytes += shared ? 4.0 : channel.isUint() ? 8.0 : 6.0;
  }
  const auto pixels = static_cast<double>(picture.box.area());
  const double work =
      kWork * std::min(pixels, kManyPixels) + kWorkBeyond * std::max(0.0, pixels - kManyPixels);
  return static_cast<std::uint64_t>(kProgram + (bytes + kResult) * pixels + work + kForBlur * blur);
}

}  // namespace

std::optional<PredictedCost> predictCost(const AskedRender& asked, const Picture& picture,
                                         const PredictedBlur& blur) {
  constexpr double kTwiceTheCost = 44.0;
  AskedNode planning(asked, picture, {});
  constexpr double kLensBloom = 1.0;
  if (valueOf(planning.node(), "outputType") > kLensBloom) return std::nullopt;
  const int stride = strideFor(picture);
  const Picture small = smallPicture(picture, planning.node(), stride);
  embedded::Image image = hostImage(small);
  addMissingColours(image);
  AskedNode asking(asked, picture, std::move(image));
  useCircularAperture(asking.node());
  const std::optional<double> seconds = measured(asking.node(), small, stride);
  if (!seconds) return std::nullopt;
  const double largest = blur.largestKernel();
  const double share = static_cast<double>(small.box.area()) * (kTwiceTheCost + largest / stride) /
                       (static_cast<double>(picture.box.area()) * (kTwiceTheCost + largest));
  return PredictedCost{*seconds / share, memoryFor(picture, largest)};
}

}  // namespace drevintool
